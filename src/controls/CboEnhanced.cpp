#include "controls/CboEnhanced.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QWheelEvent>
#include <algorithm>

#include "controls/CboEnhancedPrivate.h"
#include "controls/ListAccessible.h"
#include "platform/Accessibility.h"
#include "platform/ControlEvent.h"
#include "platform/DisabledLook.h"
#include "platform/WidgetControl.h"
#include "support/Boxes.h"
#include "support/Conversions.h"
#include "support/modGlobals.h"

namespace tarvik {

namespace {

constexpr Single CaptionGap = 100;  // between label and list
constexpr Single LabelTop = 50;     // brings the label's line down to the list's text

/// Passes the wheel to its parent unless it has the focus.
class DropDownList : public QComboBox {
 public:
  explicit DropDownList(QWidget *parent) : QComboBox(parent) { OfferAccessible<DropDownList, ListAccessible>(); }

 protected:
  void wheelEvent(QWheelEvent *event) override {
    if (hasFocus())
      QComboBox::wheelEvent(event);
    else
      event->ignore();
  }
};

bool IsDigit(char ch) { return ch >= '0' && ch <= '9'; }

}  // namespace

CboEnhanced::CboEnhanced(QWidget *parent) : CboEnhanced(parent, RunTimeSite()) { BeginForm(); }

CboEnhanced::CboEnhanced(QWidget *parent, ControlSite &site)
    : FormControl(parent, site, Private::Properties(), [this](const PropertyBag &bag) { ReadProperties(bag); }),
      m(std::make_unique<Private>(*this)) {
  setFocusProxy(m->cbo);
  // A QFormLayout label passes the focus only to a buddy with a focus policy of its own.
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

CboEnhanced::~CboEnhanced() = default;

CboEnhanced::Private::Private(CboEnhanced &objControl)
    : control(objControl),
      site(objControl.Site()),
      cbo(new DropDownList(&control)),
      lblCaption(new FieldLabel(&control)) {
  cbo->setObjectName(QStringLiteral("cbo"));
  lblCaption->setObjectName(QStringLiteral("lblCaption"));
  lblCaption->setBuddy(cbo);
  lblCaption->lower();
  cbo->setFocusPolicy(Qt::StrongFocus);
  connect(cbo, &QComboBox::currentIndexChanged, &control, [this] {
    if (fProgramChange) return;
    TellIndex();
    RunUserEvent(control, "Click", [this] { cbo_Click(); });
  });
}

void CboEnhanced::AddItemData(const std::string &strItem, Long lngItemData, Long lngGroupData, Boolean fGroupDefault) {
  // QComboBox selects the first item that is added to an empty list.
  {
    const ScopedFlag byProgram(*this, m->fProgramChange);
    const int intBefore = m->cbo->currentIndex();
    m->cbo->addItem(QString::fromStdString(strItem));
    m->cbo->setCurrentIndex(intBefore);
  }
  m->arrItems.push_back({lngItemData, lngGroupData, fGroupDefault});
}

void CboEnhanced::Clear() {
  {
    const ScopedFlag byProgram(*this, m->fProgramChange);
    m->cbo->clear();
  }
  m->arrItems.clear();
  m->TellIndex();
}

void CboEnhanced::Private::SetListIndexQuietly(Long lngIndex) {
  const ScopedFlag guard(control, fInternalChange);
  const bool fChanges = lngIndex != control.ListIndex() && lngIndex >= -1 && lngIndex < control.ListCount();
  if (!fChanges) return;
  {
    const ScopedFlag byProgram(control, fProgramChange);
    cbo->setCurrentIndex(lngIndex);
  }
  TellIndex();
  cbo_Click();
}

bool CboEnhanced::Private::SelectFirst(const std::function<bool(const Item &)> &matches) {
  const auto found = std::find_if(arrItems.begin(), arrItems.end(), matches);
  if (found == arrItems.end()) return false;
  IgnoreErrors([&] { SetListIndexQuietly(static_cast<Long>(found - arrItems.begin())); });
  return true;
}

Boolean CboEnhanced::SetListIndexByGroupData(Long lngGroupData) {
  const bool fFound = m->SelectFirst(
      [&](const Private::Item &item) { return item.lngGroupData == lngGroupData && item.fGroupDefault; });
  if (!fFound) IgnoreErrors([&] { ShowBox("Group not found", BoxIcon::Stop); });
  return fFound;
}

Boolean CboEnhanced::SetListIndexByItemData(Long lngItemData) {
  return m->SelectFirst([&](const Private::Item &item) { return item.lngItemData == lngItemData; });
}

const CboEnhanced::Private::Item *CboEnhanced::Private::Selected() const {
  const Long lngIndex = control.ListIndex();
  return fListEnabled && lngIndex >= 0 ? &arrItems[static_cast<std::size_t>(lngIndex)] : nullptr;
}

Long CboEnhanced::GetCurrGroupData(Long lngDefault) const {
  const Private::Item *item = m->Selected();
  return item ? item->lngGroupData : lngDefault;
}

Long CboEnhanced::GetCurrItemData(Long lngDefault) const {
  const Private::Item *item = m->Selected();
  return item ? item->lngItemData : lngDefault;
}

Boolean CboEnhanced::Enabled() const { return OwnEnabled(*this); }

void CboEnhanced::SetEnabled(Boolean fEnable) {
  if (m->fListEnabled != fEnable) {
    if (!fEnable) IgnoreErrors([&] { m->SetListIndexQuietly(-1); });
    m->fListEnabled = fEnable;
    m->ShowColours();
    m->cbo->setEnabled(fEnable);
    m->lblCaption->setEnabled(fEnable);
  }
  if (OwnEnabled(*this) != fEnable) setEnabled(fEnable);
  IgnoreErrors([&] { m->PropChanged("Enabled"); });
}

void CboEnhanced::Private::ShowColours() {
  QPalette colours = control.palette();
  if (!fListEnabled) {
    const DisabledLook look = DisabledLookOf(colours);
    for (const auto role : {QPalette::Base, QPalette::Button}) colours.setColor(role, look.back);
    for (const auto role : {QPalette::Text, QPalette::ButtonText})
      colours.setColor(QPalette::Disabled, role, look.text);
  }
  cbo->setPalette(colours);
}

void CboEnhanced::SetFocus() { GiveFocus(*this); }

Long CboEnhanced::ListIndex() const { return m->cbo->currentIndex(); }

Long CboEnhanced::ListCount() const { return static_cast<Long>(m->arrItems.size()); }

void CboEnhanced::SetListIndex(Long lngIndex) {
  if (lngIndex < ListCount())
    m->SetListIndexQuietly(lngIndex);
  else if (ListCount() > 0)
    m->SetListIndexQuietly(0);
}

std::string CboEnhanced::TagX() const { return m->strTagX; }

void CboEnhanced::SetTagX(const std::string &strTag) {
  m->strTagX = strTag;
  m->strSavedIndexes.clear();
  for (std::size_t i = 0; i < strTag.size(); ++i) m->strSavedIndexes += "0 ";
  m->PropChanged("TagX");
}

std::optional<std::string_view> CboEnhanced::Private::SavedEntry(Integer intPos) const {
  if (intPos < 1) return std::nullopt;
  std::string_view strRest = strSavedIndexes;
  for (Integer i = 1; i < intPos; ++i) {
    const auto blank = strRest.find(' ');
    if (blank == std::string_view::npos) return std::nullopt;
    strRest.remove_prefix(blank + 1);
  }
  return strRest.substr(0, strRest.find(' '));
}

void CboEnhanced::SaveListIndex(Integer intPos) {
  const std::string &strTemplate = m->strTagX;
  const auto place = static_cast<std::size_t>(intPos) - 1;
  if (intPos < 1 || place >= strTemplate.size() || !IsDigit(strTemplate[place])) return;
  const auto strEntry = m->SavedEntry(intPos);
  if (!strEntry || ListIndex() < 0) return;
  m->strSavedIndexes.replace(static_cast<std::size_t>(strEntry->data() - m->strSavedIndexes.data()), strEntry->size(),
                             std::to_string(ListIndex()));
}

void CboEnhanced::RecallListIndex(Integer intPos) {
  const auto strEntry = m->SavedEntry(intPos);
  if (strEntry && IsNumeric(*strEntry, '.')) IgnoreErrors([&] { m->SetListIndexQuietly(CLng(*strEntry)); });
}

void CboEnhanced::EnableAndRecall(Boolean fEnabledState, Integer intPos) {
  SetEnabled(fEnabledState);
  if (fEnabledState) RecallListIndex(intPos);
}

std::string CboEnhanced::ItemText(Long lngIndex) const { return m->cbo->itemText(lngIndex).toStdString(); }

Long CboEnhanced::ItemData(Long lngIndex) const {
  return lngIndex >= 0 && lngIndex < ListCount() ? m->arrItems[static_cast<std::size_t>(lngIndex)].lngItemData : 0;
}

std::string CboEnhanced::Text() const { return m->cbo->currentText().toStdString(); }

void CboEnhanced::Private::cbo_Click() {
  if (control.ListIndex() == -1) return;
  if (gobjPanel() && !fInternalChange) gobjPanel()->SetTabState(ePageIsDirty, eCurrPage);
  control.Click.Raise();
}

void CboEnhanced::Private::TellIndex() {
  const Long lngIndex = control.ListIndex();
  if (lngIndex == lngToldIndex) return;
  lngToldIndex = lngIndex;
  Q_EMIT control.currentIndexChanged(lngIndex);
  Q_EMIT control.currentTextChanged(control.currentText());
}

void CboEnhanced::setCurrentIndex(int intIndex) {
  RunUserEvent(*this, "setCurrentIndex", [&] { SetListIndex(intIndex); });
}

QString CboEnhanced::currentText() const { return m->cbo->currentText(); }

std::string CboEnhanced::Caption() const { return m->lblCaption->text().toStdString(); }

void CboEnhanced::SetCaption(const std::string &strCaption) {
  const bool fHadRoom = m->HasCaptionRoom();
  m->lblCaption->setText(QString::fromStdString(strCaption));
  m->NoteCaption(m->HasCaptionRoom() && !fHadRoom);
  TellNameChanged(*m->cbo);
  if (strCaption.empty()) SetCaptionWidth(0);
  m->PropChanged("Caption");
}

Long CboEnhanced::CaptionAlignment() const { return m->lngCaptionAlignment; }

void CboEnhanced::SetCaptionAlignment(Long lngAlignment) {
  m->lngCaptionAlignment = lngAlignment;
  const Qt::Alignment horizontal = lngAlignment == 1   ? Qt::AlignRight
                                   : lngAlignment == 2 ? Qt::AlignHCenter
                                                       : Qt::AlignLeft;
  m->lblCaption->setAlignment(horizontal | Qt::AlignVCenter);
  m->PropChanged("CaptionAlignment");
}

Single CboEnhanced::CaptionWidth() const { return m->sngCaptionWidth; }

void CboEnhanced::SetCaptionWidth(Single sngWidth) {
  const bool fHadRoom = m->HasCaptionRoom();
  m->sngCaptionWidth = sngWidth;
  SetOwnVisible(*m->lblCaption, sngWidth > 1);
  if (sngWidth > 1) m->sngLabelWidth = sngWidth;
  m->NoteCaption(m->HasCaptionRoom() && !fHadRoom);
  IgnoreErrors([&] { m->PropChanged("CaptionWidth", true); });
}

const PropertyTable &CboEnhanced::Private::Properties() {
  using C = CboEnhanced;
  using Row = PropertyRow<CboEnhanced>;
  static const PropertyTable arrProperties{
      Row::Stored("Caption", "", &C::Caption, &C::SetCaption),
      Row::Stored("CaptionAlignment", Long{0}, &C::CaptionAlignment, &C::SetCaptionAlignment),
      Row::Stored("CaptionWidth", DefaultCaptionWidth, &C::CaptionWidth, &C::SetCaptionWidth),
      Row::Stored("Enabled", True, &C::Enabled, &C::SetEnabled),
      Row::Stored("TagX", "", &C::TagX, &C::SetTagX),
      Row::Passing("ListIndex", Long{-1}, &C::ListIndex, &C::SetListIndex),
      Row::ReadOnly("ListCount", Long{0}, &C::ListCount),
      Row::ReadOnly("Text", "", &C::Text),
  };
  return arrProperties;
}

bool CboEnhanced::event(QEvent *event) {
  if (event->type() == QEvent::LayoutRequest) updateGeometry();
  return FormControl::event(event);
}

void CboEnhanced::InitProperties() {
  m->lblCaption->clear();
  m->lngCaptionAlignment = 0;
  m->sngCaptionWidth = Private::DefaultCaptionWidth;
  m->strTagX.clear();
}

void CboEnhanced::ReadProperties(const PropertyBag &bag) {
  m->fReadingProperties = True;
  // A value of the wrong type ends the reading and leaves the flag set: the control reports no changes from then on.
  IgnoreErrors([&] {
    for (const ControlProperty &property : Private::Properties())
      if (property.IsRead()) property.Assign(*this, bag);
    m->fReadingProperties = False;
  });
}

void CboEnhanced::WriteProperties(PropertyBag &bag) const {
  if (!Site().UserMode()) WriteStored(*this, Private::Properties(), bag);
}

void CboEnhanced::Private::PropChanged(const char *strProperty, bool fResize) {
  if (site.UserMode() || fReadingProperties) return;
  site.PropertyChanged(strProperty);
  if (fResize) LayOut();
}

void CboEnhanced::Resize(Single sngWidth) {
  // Pixels are rounded; converting them back would lose the exact width that the program set.
  m->intWidthAtResize = width();
  m->sngWidth = sngWidth;
  m->LayOut();
}

void CboEnhanced::Private::TakeWidthOfForm() {
  intWidthAtResize.reset();
  sngWidth = PixelsToTwips(control, control.width());
  LayOut();
  const ScopedFlag resizing(control, fInResize);
  control.resize(control.width(), TwipsToPixels(control, layout.sngHeight));
}

void CboEnhanced::SetListHeight(Single sngHeight) { m->sngListHeight = sngHeight; }

bool CboEnhanced::Private::HasCaptionRoom() const {
  if (sngCaptionWidth < 1) return false;
  // At fixed places an empty caption keeps its room so that lists line up; in a QLayout the rows line up anyway.
  return !(lblCaption->text().isEmpty() && StandsInLayout(control));
}

Single CboEnhanced::Private::CaptionRoom() const { return HasCaptionRoom() ? sngLabelWidth + CaptionGap : 0; }

void CboEnhanced::Private::NoteCaption(bool fAppears) {
  control.updateGeometry();
  const bool fLaidOut = layout.sngHeight > 0;
  // At run time the list moves with the next layout only. The label is resized at once, and a label that was just shown
  // must not be covered until then.
  if (fLaidOut && fAppears && !fReadingProperties)
    ShowLayout(Arranged());
  else
    lblCaption->resize(TwipsToPixels(control, sngLabelWidth), lblCaption->height());
}

CboEnhanced::Private::Layout CboEnhanced::Private::Arranged() const {
  const Single sngLeft = CaptionRoom();
  return {sngListHeight,
          {sngLeft, 0, sngWidth - sngLeft, sngListHeight},
          {0, LabelTop, sngLabelWidth, sngListHeight - LabelTop}};
}

void CboEnhanced::Private::LayOut() {
  layout = Arranged();
  ShowLayout(layout);
}

void CboEnhanced::Private::ShowLayout(const Layout &places) {
  // The label starts lower than the list; the bottom margin aligns its text with the list's line.
  lblCaption->setContentsMargins(0, 0, 0, TwipsToPixels(control, LabelTop));
  cbo->setGeometry(TwipsToPixels(control, places.list));
  lblCaption->setGeometry(TwipsToPixels(control, places.label));
}

void CboEnhanced::resizeEvent(QResizeEvent *event) {
  QWidget::resizeEvent(event);
  if (m->fInResize) return;
  if (m->intWidthAtResize == width())
    m->ShowLayout(m->layout);
  else
    m->TakeWidthOfForm();
}

void CboEnhanced::changeEvent(QEvent *event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) m->ShowColours();
  if (event->type() == QEvent::EnabledChange && OwnEnabled(*this) != m->fListEnabled)
    SetPropertyValue("Enabled", QVariant(static_cast<bool>(OwnEnabled(*this))));
  if (event->type() != QEvent::FontChange) return;
  if (m->intWidthAtResize)
    m->ShowLayout(m->layout);
  else
    m->TakeWidthOfForm();
}

QSize CboEnhanced::sizeHint() const {
  return {TwipsToPixels(*this, m->CaptionRoom()) + m->cbo->sizeHint().width(), TwipsToPixels(*this, m->sngListHeight)};
}

QSize CboEnhanced::minimumSizeHint() const {
  return {TwipsToPixels(*this, m->CaptionRoom()) + m->cbo->minimumSizeHint().width(),
          TwipsToPixels(*this, m->sngListHeight)};
}

}  // namespace tarvik
