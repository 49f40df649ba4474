// Creation, places and looks of the editor's controls.
#include <QEvent>
#include <QFocusEvent>
#include <QGroupBox>

#include "bitpattern/BitPatternPrivate.h"
#include "controls/FrameEnhanced.h"
#include "engrspin/EngrSpin.h"
#include "platform/CommandButton.h"
#include "platform/ControlSite.h"
#include "platform/DisabledLook.h"
#include "platform/OptionButton.h"
#include "platform/PlainControls.h"
#include "platform/PropertyBag.h"
#include "platform/ToolPopup.h"

namespace tarvik {

namespace {

constexpr Colour FormColour = 0xC0C0C0;
constexpr Colour PictureColour = 0x000000;
constexpr Colour TraceColour = 0xC7D863;

constexpr Single FormWidth = 6945, FormHeight = 3735;
constexpr Single PictureLeft = 1680, PictureTop = 480;

struct ToolRow {
  const char *strCaption;
  const char *strToolTip;
  Single sngTop;
};

constexpr ToolRow ToolRows[] = {
    {"Channel1 ", "Select the row of channel 1; the arrow opens its operations", 600},
    {"Channel2 ", "Select the row of channel 2; the arrow opens its operations", 1080},
    {"Both ", "Select the row of both channels; the arrow opens their operations", 1560},
    {"Strobe ", "Select the row of the strobe; the arrow opens its operations", 2040},
};
constexpr Single ToolLeft = 120, ToolWidth = 1455, ToolHeight = 330;

constexpr TwipsRect NumOrGraphPlace{120, 0, 1335, 375};
constexpr TwipsRect AddressPlace{2040, 120, 2175, 300};
constexpr TwipsRect LastPlace{4680, 120, 2175, 300};
constexpr TwipsRect GroupPlaces[] = {{1680, 2790, 2505, 780}, {4350, 2790, 2505, 780}};
/// Within the group: return to zero, non-return to zero.
constexpr TwipsRect OptionPlaces[] = {{240, 330, 960, 315}, {1320, 330, 1080, 315}};
constexpr const char *OptionCaptions[] = {"RZ", "NRZ"};
constexpr const char *OptionToolTips[] = {"Pulses return to zero within each address", "Levels hold over each address"};

PropertyBag FieldProperties(const char *strCaption, Double dblSmallest) {
  return {{"Caption", std::string(strCaption)},
          {"CaptionWidth", 1200.0},
          {"DefaultValue", dblSmallest},
          {"Min", dblSmallest},
          {"Max", static_cast<Double>(MaxPatternLength)},
          {"MinExponent", Long{0}},
          {"MaxExponent", Long{0}},
          {"NumberFormat", std::string("#")},
          {"SpinCtlVisible", False}};
}

EngrSpin *MakeField(QWidget *parent, const char *strName, const char *strToolTip, const PropertyBag &bag) {
  auto *field = new EngrSpin(parent, RunTimeSite());
  field->setObjectName(QString::fromLatin1(strName));
  field->setToolTip(QString::fromLatin1(strToolTip));
  field->ReadProperties(bag);
  return field;
}

QString Indexed(const char *strName, int intIndex) {
  return QStringLiteral("%1(%2)").arg(QLatin1String(strName)).arg(intIndex);
}

}  // namespace

void BitPattern::Private::CreateControls() {
  // The grey is fixed, so the text colours must not follow a dark theme.
  QPalette colours = editor.palette();
  const QColor grey = ToQColor(FormColour);
  colours.setColor(QPalette::Window, grey);
  colours.setColor(QPalette::WindowText, Qt::black);
  colours.setColor(QPalette::Disabled, QPalette::WindowText, DisabledText(Qt::black, grey));
  editor.setPalette(colours);
  editor.setAutoFillBackground(true);

  cmdNumOrGraph = new CommandButton(&editor);
  cmdNumOrGraph->setObjectName(QStringLiteral("cmdNumOrGraph"));
  cmdNumOrGraph->SetCaption("Numerical");
  cmdNumOrGraph->setToolTip(QStringLiteral("Toggle between numerical and graphical pattern views"));
  esAddress = MakeField(&editor, "esAddress", "Address that the keys write and the operations start from",
                        FieldProperties("Actual Address", 1));
  esLast = MakeField(&editor, "esLast", "Addresses in the pattern, 2 to 16384", FieldProperties("Length (Last)", 2));

  CreateToolPopups();
  CreatePicture();
  CreateGroup(0, " Channel 1 ");
  CreateGroup(1, " Channel 2 ");

  auto *lblTip = new Label(&editor);
  lblTip->setObjectName(QStringLiteral("lblTip"));
  lblTip->setText(QStringLiteral("Label1"));
  lblTip->hide();
}

void BitPattern::Private::TakeForm(const BitPatternForm &sizes) {
  form = sizes;
  picWave->SetScale(form.sngPictureWidth, form.sngPictureHeight);
  view = std::make_unique<WaveformView>(*picWave, store, form.sngScrollHeight);
  HScroll1->SetLargeChange(static_cast<Integer>(view->CellsPerView()));
  PlaceControls();
}

void BitPattern::Private::CreateToolPopups() {
  std::vector<ToolPopup::Entry> arrEntries;
  for (const auto &operation : PatternOperations::Operations())
    arrEntries.emplace_back(operation.strKey, operation.strCaption);
  for (std::size_t i = 0; i < toolPopup.size(); ++i) {
    toolPopup[i] = new ToolPopup(&editor);
    toolPopup[i]->setObjectName(Indexed("toolPopup", static_cast<int>(i)));
    toolPopup[i]->SetCaption(ToolRows[i].strCaption);
    toolPopup[i]->setToolTip(QString::fromLatin1(ToolRows[i].strToolTip));
    toolPopup[i]->SetEntries(arrEntries);
  }
}

void BitPattern::Private::CreatePicture() {
  picWave = new WavePicture(&editor);
  picWave->setObjectName(QStringLiteral("picWave"));
  picWave->SetBackColor(PictureColour);
  picWave->SetForeColor(TraceColour);
  picWave->setAccessibleName(QStringLiteral("Pattern"));
  picWave->setToolTip(QStringLiteral("A click selects the row; keys write bits at the actual address"));
  picWave->setAccessibleDescription(
      QStringLiteral("Left, Right, Home and End move the address, Up and Down select the row, "
                     "0 to 3 write bits, plus and minus toggle them"));

  HScroll1 = new HScrollBar(picWave);
  HScroll1->setObjectName(QStringLiteral("HScroll1"));
  HScroll1->setAccessibleName(QStringLiteral("Actual Address"));
  HScroll1->setToolTip(QStringLiteral("Move along the addresses"));
  // Starts at the first address, so that creating the editor raises no change that would mark the page dirty.
  HScroll1->SetMin(1);
}

void BitPattern::Private::CreateGroup(Integer intGroup, const char *strCaption) {
  auto *group = new FrameEnhanced(&editor, RunTimeSite());
  grpChannelRzOrNrz[static_cast<std::size_t>(intGroup)] = group;
  group->setObjectName(Indexed("grpChannelRzOrNrz", intGroup));
  group->ReadProperties({{"Caption", std::string(strCaption)}});
  for (std::size_t i = 0; i < std::size(OptionCaptions); ++i) {
    const auto intIndex = static_cast<Integer>(2 * intGroup + static_cast<Integer>(i));
    auto *option = new OptionButton(group->Container(), intIndex);
    optChannelRzNrz[static_cast<std::size_t>(intIndex)] = option;
    option->setObjectName(Indexed("optChannelRzNrz", intIndex));
    option->setText(QString::fromLatin1(OptionCaptions[i]));
    option->setToolTip(QString::fromLatin1(OptionToolTips[i]));
    option->setAccessibleName(QString::fromLatin1(strCaption).trimmed() + QLatin1Char(' ') + option->text());
    option->SetDesignValue(i == 0);
  }
}

void BitPattern::Private::ConnectControls() {
  cmdNumOrGraph->Click.Connect([this] { cmdNumOrGraph_Click(); });
  esAddress->AfterUpdate.Connect([this] { esAddress_AfterUpdate(); });
  esLast->AfterUpdate.Connect([this] { esLast_AfterUpdate(); });
  HScroll1->Change.Connect([this] { HScroll1_Change(); });
  HScroll1->GotFocus.Connect([this] { HScroll1_GotFocus(); });
  picWave->KeyDown.Connect([this](Integer &intKeyCode) { picWave_KeyDown(intKeyCode); });
  picWave->KeyPress.Connect([this](char32_t character) { picWave_KeyPress(character); });
  picWave->MouseDown.Connect(
      [this](Integer intButton, Single sngX, Single sngY) { picWave_MouseDown(intButton, sngX, sngY); });
  for (std::size_t i = 0; i < toolPopup.size(); ++i) {
    const auto lngIndex = static_cast<Long>(i);
    toolPopup[i]->ButtonClick.Connect([this, lngIndex] { toolPopup_ButtonClick(lngIndex); });
    toolPopup[i]->ButtonMenuClick.Connect(
        [this, lngIndex](const std::string &strKey) { toolPopup_ButtonMenuClick(lngIndex, strKey); });
  }
  for (OptionButton *option : optChannelRzNrz) option->Click.Connect([this] { optChannelRzNrz_Click(); });
}

void BitPattern::Private::PlaceControls() {
  const auto place = [this](QWidget *widget, const TwipsRect &rect) {
    widget->setGeometry(TwipsToPixels(editor, rect));
  };
  const auto move = [](EngrSpin *field, const TwipsRect &rect) {
    field->Move(rect.sngLeft, rect.sngTop, rect.sngWidth, rect.sngHeight);
  };
  place(cmdNumOrGraph, NumOrGraphPlace);
  move(esAddress, AddressPlace);
  move(esLast, LastPlace);
  for (std::size_t i = 0; i < toolPopup.size(); ++i)
    place(toolPopup[i], {ToolLeft, ToolRows[i].sngTop, ToolWidth, ToolHeight});
  place(picWave, {PictureLeft, PictureTop, form.sngPictureWidth, form.sngPictureHeight});
  HScroll1->Move({0, form.sngPictureHeight - form.sngScrollHeight, form.sngPictureWidth, form.sngScrollHeight});
  for (std::size_t i = 0; i < optChannelRzNrz.size(); ++i) {
    place(grpChannelRzOrNrz[i / 2], GroupPlaces[i / 2]);
    place(optChannelRzNrz[i], OptionPlaces[i % 2]);
  }
}

void BitPattern::focusInEvent(QFocusEvent *event) { m->picWave->setFocus(event->reason()); }

QSize BitPattern::sizeHint() const { return TwipsToPixels(*this, TwipsRect{0, 0, FormWidth, FormHeight}).size(); }

void BitPattern::changeEvent(QEvent *event) {
  QWidget::changeEvent(event);
  // Everything placed in twips grows with the font.
  if (event->type() == QEvent::FontChange && m) m->PlaceControls();
}

}  // namespace tarvik
