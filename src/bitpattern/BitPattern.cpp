#include "bitpattern/BitPattern.h"

#include <iterator>

#include "bitpattern/HScrollBar.h"
#include "bitpattern/WavePicture.h"
#include "bitpattern/WaveformView.h"
#include "controls/FrameEnhanced.h"
#include "engrspin/EngrSpin.h"
#include "platform/CommandButton.h"
#include "platform/ControlEvent.h"
#include "platform/KeyCodes.h"
#include "platform/OptionButton.h"
#include "platform/QtHost.h"
#include "platform/ToolPopup.h"
#include "support/Conversions.h"
#include "support/modErrorLog.h"
#include "support/modGlobals.h"
#include "support/modUtils.h"
#include "support/modUtilsGen.h"

namespace tarvik {

namespace {

constexpr const char *ModuleName = "BitPattern";

constexpr const char *NumericalCaption = "Numerical";
constexpr const char *GraphicalCaption = "Graphical";

/// From this length on there is something to scroll.
constexpr Integer MinScrollLength = 5;
constexpr Integer LeftButton = 1;

constexpr Long ToolChannels[] = {eChan1, eChan2, eBoth, eStrobe};

}  // namespace

BitPattern::BitPattern(QWidget *parent, ControlSite &site, const BitPatternForm &form)
    : QWidget(parent), m_site(site), m_form(form) {
  EnsureQtHost();
  CreateControls();
  m_store.SetLength(CLng(esLast->Value()));
  m_view = std::make_unique<WaveformView>(*picWave, m_store, m_form.sngScrollHeight);
  picWave->Place = [this] {
    return WavePicture::PlaceInPattern{QString::fromStdString(PlaceInWords()), ActualAddress(), m_store.Length()};
  };
  ConnectControls();
  SetWaveformRange();
  // The first picture is drawn without the mark that every later one makes.
  m_view->Draw(ActualAddress());
}

BitPattern::~BitPattern() = default;

void BitPattern::GetRz(BooleanArray &fRz) const {
  fRz[1] = m_store.RowOf(eChan1)->fRz;
  fRz[2] = m_store.RowOf(eChan2)->fRz;
}

void BitPattern::SetRz(const BooleanArray &fRz, Boolean fSetGroup) {
  const Boolean fRz1 = fRz[1], fRz2 = fRz[2];
  m_store.RowOf(eChan1)->fRz = fRz1;
  m_store.RowOf(eChan2)->fRz = fRz2;
  if (fSetGroup) {
    grpChannelRzOrNrz[0]->SetArrayIndex(fRz1 ? 0 : 1);
    grpChannelRzOrNrz[1]->SetArrayIndex(fRz2 ? 2 : 3);
  }
  RedrawPattern();
}

void BitPattern::EnableChannel2(Boolean fEnable) {
  m_store.EnableChan2(fEnable);
  tarvik::SetEnabled(*grpChannelRzOrNrz[1], fEnable);
  tarvik::SetEnabled(*toolPopup[1], fEnable);
  tarvik::SetEnabled(*toolPopup[2], fEnable);
}

Long BitPattern::GetPatternArraySize() const { return m_store.GetPatternArraySize(); }

Long BitPattern::GetPatternLength() const { return m_store.Length(); }

Boolean BitPattern::GetPattern(Long eChannel, ByteArray &arr, Long &lngArraySize) const {
  return m_store.GetPattern(eChannel, arr, lngArraySize);
}

void BitPattern::SetPatternInit() { m_store.SetPatternInit(); }

Boolean BitPattern::SetPattern(Long eChannel, const ByteArray &arr, Long lngNumBits) {
  try {
    return DeliverPattern(eChannel, arr, lngNumBits);
  } catch (const RunTimeError &error) {
    LogError(ModuleName, "SetPattern", error.Number(), error.Description());
    return False;
  }
}

Boolean BitPattern::DeliverPattern(Long eChannel, const ByteArray &arr, Long lngNumBits) {
  if (!m_store.TakePattern(eChannel, arr)) return False;
  // Twice, so that the field's old value is the new length too: no growth is seen, and no generator runs over
  // what was just delivered.
  esLast->SetValue(lngNumBits);
  esLast->SetValue(lngNumBits);
  esLast_AfterUpdate();
  return True;
}

Boolean BitPattern::Enabled() const { return OwnEnabled(*this); }

Boolean BitPattern::Visible() const { return OwnVisible(*this); }

void BitPattern::SetFocus() { GiveFocus(*this); }

void BitPattern::SetEnabled(Boolean fEnable) {
  setEnabled(fEnable);
  m_site.PropertyChanged("Enabled");
}

Long BitPattern::ToolIndexToChannel(Long lngIndex) {
  if (lngIndex >= 0 && lngIndex < static_cast<Long>(std::size(ToolChannels))) return ToolChannels[lngIndex];
  ShowStopMessage("Invalid case");
  return eChan1;
}

Long BitPattern::ActualAddress() const { return CLng(esAddress->Value()); }

std::string BitPattern::PlaceInWords() const {
  const std::string strAddress =
      "address " + std::to_string(ActualAddress()) + " of " + std::to_string(m_store.Length());
  const Long lngCode = m_view->Selected();
  if (!m_store.RowOf(lngCode)) return "no row selected, " + strAddress;
  Long lngValue = 0;
  m_store.ReadChannelBit(lngCode, ActualAddress(), lngValue);
  if (lngCode == eBoth)
    return "Both channels, " + strAddress + ", channel 1 bit " + std::to_string(lngValue & 1) + ", channel 2 bit " +
           std::to_string(lngValue >> 1);
  const std::string strRow = lngCode == eStrobe ? "Strobe" : lngCode == eChan1 ? "Channel 1" : "Channel 2";
  return strRow + ", " + strAddress + ", bit " + std::to_string(lngValue);
}

void BitPattern::RedrawPattern() {
  m_view->Draw(ActualAddress());
  picWave->TellPlace();
  if (PanelReference *panel = gobjPanel()) panel->SetTabState(ePageIsDirty, eCurrPage);
}

void BitPattern::SetWaveformRange() {
  if (fInRange) return;
  fInRange = True;
  try {
    UpdateRange();
  } catch (const RunTimeError &error) {
    // fInRange stays set: until the next scroll the fields are left alone.
    LogError(ModuleName, "SetWaveformRange", error.Number(), error.Description());
    return;
  }
  fInRange = False;
}

void BitPattern::UpdateRange() {
  if (esLast->Value() < esAddress->Value()) esAddress->SetValue(esLast->Value());
  if (esLast->Value() != esAddress->Max()) esAddress->SetMax(esLast->Value());
  if (esLast->Value() != HScroll1->Max()) {
    HScroll1->SetMin(1);
    HScroll1->SetMax(CInt(esLast->Value()));
    HScroll1->SetLargeChange(static_cast<Integer>(m_view->CellsPerView()));
  }
  tarvik::SetEnabled(*HScroll1, HScroll1->Max() >= MinScrollLength);
  if (esAddress->Value() != HScroll1->Value()) {
    HScroll1->SetValue(CInt(esAddress->Value()));
    RedrawPattern();
  }
}

void BitPattern::SelectAndRedraw(Long lngCode) {
  m_view->Select(lngCode);
  RedrawPattern();
}

void BitPattern::HandKeysToPicture() {
  // A row is selected to work on it. The button has had the focus first, so that an address that was being typed
  // counts.
  picWave->setFocus(Qt::OtherFocusReason);
}

void BitPattern::toolPopup_ButtonClick(Long lngIndex) {
  HandKeysToPicture();
  SelectAndRedraw(ToolIndexToChannel(lngIndex));
}

void BitPattern::toolPopup_ButtonMenuClick(Long lngIndex, const std::string &strKey) {
  const Long lngCode = ToolIndexToChannel(lngIndex);
  HandKeysToPicture();
  m_view->Select(lngCode);
  m_operations.RunByKey(strKey, lngCode, ActualAddress());
  RedrawPattern();
}

void BitPattern::cmdNumOrGraph_Click() {
  const bool fToDigits = cmdNumOrGraph->Caption() == NumericalCaption;
  cmdNumOrGraph->SetCaption(fToDigits ? GraphicalCaption : NumericalCaption);
  for (const Long lngCode : {eChan1, eChan2, eStrobe}) m_store.RowOf(lngCode)->fNumeric = fToDigits;
  RedrawPattern();
}

void BitPattern::optChannelRzNrz_Click() {
  SetRz(BooleanArray(1, {optChannelRzNrz[0]->Value(), optChannelRzNrz[2]->Value()}), False);
  RzChange.Raise();
}

void BitPattern::esAddress_AfterUpdate() { SetWaveformRange(); }

void BitPattern::esLast_AfterUpdate() {
  m_store.SetLength(CLng(esLast->Value()));
  if (esLast->OldValue() < m_store.Length()) m_operations.Grow(CLng(esLast->OldValue()));
  SetWaveformRange();
}

void BitPattern::HScroll1_Change() {
  fInRange = True;
  esAddress->SetValue(HScroll1->Value());
  RedrawPattern();
  fInRange = False;
}

void BitPattern::HScroll1_GotFocus() { SetFocusIfEnabled(*picWave); }

void BitPattern::MoveTo(Double dblAddress) {
  esAddress->SetValue(dblAddress);
  SetWaveformRange();
}

void BitPattern::StepSelection(Long lngCode) {
  if (lngCode >= eChan1 && lngCode <= eStrobe) m_view->Select(lngCode);
  RedrawPattern();
}

void BitPattern::KeyDownOnRow(Integer intKeyCode) {
  switch (intKeyCode) {
    case KeyLeft: MoveTo(ActualAddress() - 1); break;
    case KeyHome: MoveTo(1); break;
    case KeyRight: MoveTo(ActualAddress() + 1); break;
    case KeyEnd: MoveTo(esLast->Value()); break;
    case KeyUp: StepSelection(m_view->Selected() / 2); break;
    case KeyDown: StepSelection(m_view->Selected() * 2); break;
    default: break;
  }
}

void BitPattern::picWave_KeyDown(Integer &intKeyCode) {
  if (m_fInKeyDown) return;
  const EntryGuard guard(*this, m_fInKeyDown);
  if (m_view->Selected() != 0) KeyDownOnRow(intKeyCode);
  if (intKeyCode >= KeyPageUp && intKeyCode <= KeyDown) intKeyCode = 0;
}

void BitPattern::picWave_KeyPress(char32_t character) {
  if (m_fInKeyPress || m_view->Selected() == 0) return;
  const EntryGuard guard(*this, m_fInKeyPress);
  const bool fDigit = character >= U'0' && character <= U'3';
  const bool fSign = character == U'+' || character == U'-';
  if (!fDigit && !fSign) return;

  constexpr Long ToggleValue = 4;
  const Long lngAddress = ActualAddress();
  const Long lngValue = fDigit ? static_cast<Long>(character - U'0') : ToggleValue;
  Boolean fDone;
  m_store.WriteChannelBit(m_view->Selected(), lngAddress, lngValue, fDone);
  if (fDone) esAddress->SetValue(lngAddress + 1);
  SetWaveformRange();
}

void BitPattern::picWave_MouseDown(Integer intButton, Single sngX, Single sngY) {
  if (intButton != LeftButton) return;
  for (const Long lngCode : ToolChannels) {
    const bool fOfChannel2 = lngCode == eChan2 || lngCode == eBoth;
    if (fOfChannel2 && !m_store.Chan2Enabled()) continue;
    if (m_view->SelectRowAt(lngCode, sngX, sngY)) RedrawPattern();
  }
}

}  // namespace tarvik
