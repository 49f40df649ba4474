#include "panel/Form.h"

#include <QEvent>
#include <QVariant>

#include "bitpattern/BitPattern.h"
#include "controls/CboEnhanced.h"
#include "controls/FrameEnhanced.h"
#include "engrspin/EngrSpin.h"
#include "platform/Accessibility.h"
#include "platform/CheckBox.h"
#include "platform/CommandButton.h"
#include "platform/ControlSite.h"
#include "platform/Highlight.h"
#include "platform/ListView.h"
#include "platform/OptionButton.h"
#include "platform/PictureBox.h"
#include "platform/PlainControls.h"
#include "platform/PropertyBag.h"
#include "platform/ToolPopup.h"
#include "support/Conversions.h"

namespace tarvik {

namespace {

QString Text(const PropertyBag &bag, const char *strKey) {
  return QString::fromStdString(bag.ReadProperty(strKey, ""));
}

QWidget *MakeFrame(QWidget *parent, const ControlDesign &design) {
  auto *frame = new FrameEnhanced(parent, RunTimeSite());
  frame->ReadProperties(design.Properties());
  return frame;
}

QWidget *MakeOption(QWidget *parent, const ControlDesign &design) {
  auto *button = design.Index() == NoIndex ? new OptionButton(parent) : new OptionButton(parent, design.Index());
  button->setText(Text(design.Properties(), "Caption"));
  button->SetTag(design.Properties().ReadProperty("Tag", ""));
  if (design.Properties().ReadProperty("Value", False)) button->SetDesignValue(True);
  return button;
}

QWidget *MakeField(QWidget *parent, const ControlDesign &design) {
  auto *field = new EngrSpin(parent, RunTimeSite());
  field->ReadProperties(design.Properties());
  return field;
}

QWidget *MakeList(QWidget *parent, const ControlDesign &design) {
  auto *list = new CboEnhanced(parent, RunTimeSite());
  list->ReadProperties(design.Properties());
  return list;
}

QWidget *MakeCheck(QWidget *parent, const ControlDesign &design) {
  auto *check = new CheckBox(parent);
  check->setText(Text(design.Properties(), "Caption"));
  return check;
}

QWidget *MakeButton(QWidget *parent, const ControlDesign &design) {
  auto *button = new CommandButton(parent);
  button->SetCaption(design.Properties().ReadProperty("Caption", ""));
  return button;
}

QWidget *MakeText(QWidget *parent, const ControlDesign &design) {
  auto *label = new Label(parent);
  label->setText(Text(design.Properties(), "Caption"));
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(design.Properties().ReadProperty("WordWrap", False));
  label->setAlignment(Qt::AlignLeft | (label->wordWrap() ? Qt::AlignTop : Qt::AlignVCenter));
  return label;
}

template <class T>
QWidget *MakePicture(QWidget *parent, const ControlDesign &design) {
  auto *picture = new T(parent);
  picture->SetBackColor(static_cast<Colour>(design.Properties().ReadProperty("BackColor", Long{0xFFFFFF})));
  picture->SetForeColor(static_cast<Colour>(design.Properties().ReadProperty("ForeColor", Long{0})));
  return picture;
}

/// "Menu" holds "key=text" entries, separated by "|".
QWidget *MakeMenu(QWidget *parent, const ControlDesign &design) {
  auto *popup = new ToolPopup(parent, ToolPopup::Face::MenuOnly);
  popup->SetCaption(design.Properties().ReadProperty("Caption", ""));
  std::vector<ToolPopup::Entry> arrEntries;
  for (const std::string &strEntry : Split(design.Properties().ReadProperty("Menu", ""), '|')) {
    const std::size_t pos = strEntry.find('=');
    arrEntries.emplace_back(strEntry.substr(0, pos), strEntry.substr(pos + 1));
  }
  popup->SetEntries(std::move(arrEntries));
  return popup;
}

/// "Columns" holds the headers, "ColumnWidths" the widths of all but the last, each separated by "|".
QWidget *MakeListView(QWidget *parent, const ControlDesign &design) {
  auto *list = new ListView(parent);
  list->SetColumns(Split(design.Properties().ReadProperty("Columns", ""), '|'));
  if (design.Properties().Contains("ColumnWidths")) {
    std::vector<Single> arrWidths;
    for (const std::string &strWidth : Split(design.Properties().ReadProperty("ColumnWidths", ""), '|'))
      arrWidths.push_back(static_cast<Single>(CLng(std::string_view(strWidth))));
    list->SetColumnWidths(std::move(arrWidths));
  }
  return list;
}

template <class T>
QWidget *MakePlain(QWidget *parent, const ControlDesign &) {
  return new T(parent);
}

using Maker = QWidget *(*)(QWidget *, const ControlDesign &);

Maker MakerFor(ControlKind eKind) {
  switch (eKind) {
    case ControlKind::Frame: return MakeFrame;
    case ControlKind::Option: return MakeOption;
    case ControlKind::Field: return MakeField;
    case ControlKind::List: return MakeList;
    case ControlKind::Check: return MakeCheck;
    case ControlKind::Button: return MakeButton;
    case ControlKind::Text: return MakeText;
    case ControlKind::Display: return MakePlain<DisplayField>;
    case ControlKind::DisplayBox: return MakePlain<DisplayBox>;
    case ControlKind::Picture: return MakePicture<PictureBox>;
    case ControlKind::Highlight: return MakePicture<Highlight>;
    case ControlKind::Menu: return MakeMenu;
    case ControlKind::ListView: return MakeListView;
    case ControlKind::Pattern: return MakePlain<BitPattern>;
    case ControlKind::Container: return MakePlain<PlainContainer>;
  }
  return nullptr;
}

/// Fields, lists and buttons derive their accessible name from their caption, which can change; a name in the form
/// overrides it. The others get theirs here: the form's name, else the caption, else the tool tip.
void GiveAccessibleName(QWidget &widget, const ControlDesign &design) {
  const PropertyBag &bag = design.Properties();
  const QString strGiven = Text(bag, "AccessibleName");
  switch (design.Kind()) {
    case ControlKind::Field:
    case ControlKind::List:
    case ControlKind::Button:
      if (!strGiven.isEmpty()) widget.setAccessibleName(strGiven);
      return;
    case ControlKind::Frame:
    case ControlKind::Container:
    case ControlKind::Text: return;
    default: break;
  }
  const QString strCaption = PlainCaption(Text(bag, "Caption"));
  const QString strOwn = !strGiven.isEmpty() ? strGiven : !strCaption.isEmpty() ? strCaption : Text(bag, "ToolTip");
  widget.setAccessibleName(NameInBoxes(strOwn, widget));
}

}  // namespace

Form::Form(QWidget &page, const FormTable &table) : m_page(page) {
  for (const ControlDesign &design : table) {
    m_arrMade.push_back({design.Name(), design.Index(), Make(design), design.Place()});
    Place(m_arrMade.back());
    // A child made after its page was shown stays hidden until it is shown itself.
    if (QWidget &made = *m_arrMade.back().widget;
        page.isVisible() && !made.testAttribute(Qt::WA_WState_ExplicitShowHide))
      made.show();
  }
  page.installEventFilter(this);
}

QWidget *Form::Make(const ControlDesign &design) {
  QWidget *widget = MakerFor(design.Kind())(ParentFor(design.ContainerName()), design);
  const PropertyBag &bag = design.Properties();
  widget->setObjectName(QString::fromStdString(design.FullName()));
  widget->setToolTip(Text(bag, "ToolTip"));
  GiveAccessibleName(*widget, design);
  auto *control = dynamic_cast<Control *>(widget);
  if (!bag.ReadProperty("Enabled", True)) control->SetEnabled(False);
  if (!bag.ReadProperty("Visible", True)) control->SetVisible(False);
  return widget;
}

QWidget *Form::ParentFor(const std::string &strContainer) const {
  if (strContainer.empty()) return &m_page;
  QWidget *container = Find(strContainer);
  auto *frame = dynamic_cast<FrameEnhanced *>(container);
  return frame ? frame->Container() : container;
}

QWidget *Form::Find(const std::string &strFullName) const {
  for (const Made &made : m_arrMade)
    if (made.widget->objectName().toStdString() == strFullName) return made.widget;
  Q_ASSERT_X(false, "Form", strFullName.c_str());
  return nullptr;
}

void Form::Place(const Made &made) {
  const QRect rect = TwipsToPixels(*made.widget, made.place);
  if (auto *field = dynamic_cast<EngrSpin *>(made.widget)) {
    field->move(rect.topLeft());
    field->Resize(made.place.sngWidth, made.place.sngHeight);
  } else if (auto *list = dynamic_cast<CboEnhanced *>(made.widget)) {
    // Its size is rounded by itself, not from its edges: one pixel less would cut off the lower border.
    list->move(rect.topLeft());
    list->resize(TwipsToPixels(*list, made.place.sngWidth), TwipsToPixels(*list, made.place.sngHeight));
    list->SetListHeight(made.place.sngHeight);
    list->Resize(made.place.sngWidth);
  } else {
    made.widget->setGeometry(rect);
  }
}

bool Form::eventFilter(QObject *watched, QEvent *event) {
  if (event->type() == QEvent::FontChange) {
    PlaceAll();
    // With a style sheet the controls get their font after the page has got its own.
    QMetaObject::invokeMethod(this, &Form::PlaceAll, Qt::QueuedConnection);
  }
  return QObject::eventFilter(watched, event);
}

void Form::PlaceAll() {
  for (const Made &made : m_arrMade) Place(made);
  Placed.Raise();
}

}  // namespace tarvik
