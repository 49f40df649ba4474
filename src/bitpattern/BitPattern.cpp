#include "bitpattern/BitPattern.h"

#include <iterator>

#include "bitpattern/BitPatternPrivate.h"
#include "controls/FrameEnhanced.h"
#include "engrspin/EngrSpin.h"
#include "platform/CommandButton.h"
#include "platform/ControlEvent.h"
#include "platform/KeyCodes.h"
#include "platform/OptionButton.h"
#include "platform/QtHost.h"
#include "platform/ToolPopup.h"
#include "support/Conversions.h"
#include "support/RunReported.h"
#include "support/modGlobals.h"
#include "support/modUtils.h"
#include "support/modUtilsGen.h"

namespace tarvik {

namespace {

constexpr const char *ModuleName = "BitPattern";

constexpr const char *NumericalCaption = "Numerical";
constexpr const char *GraphicalCaption = "Graphical";

/// Shorter patterns fit into the view, so the scroll bar is disabled.
constexpr Integer MinScrollLength = 5;
constexpr Integer LeftButton = 1;

constexpr Long ToolChannels[] = {eChan1, eChan2, eBoth, eStrobe};

}  // namespace

BitPattern::BitPattern(QWidget *parent) : BitPattern(parent, RunTimeSite()) {}

BitPattern::BitPattern(QWidget *parent, ControlSite &site)
    : QWidget(parent), m(std::make_unique<Private>(*this, site)) {}

BitPattern::Private::Private(BitPattern &objEditor, ControlSite &objSite) : editor(objEditor), site(objSite) {
  EnsureQtHost();
  CreateControls();
  store.SetLength(CLng(esLast->Value()));
  TakeForm({});
  picWave->Place = [this] {
    return WavePicture::PlaceInPattern{QString::fromStdString(PlaceInWords()), ActualAddress(), store.Length()};
  };
  ConnectControls();
  SetWaveformRange();
  // The first drawing must not mark the page dirty.
  view->Draw(ActualAddress());
}

BitPattern::~BitPattern() = default;

void BitPattern::GetRz(BooleanArray &fRz) const {
  fRz[1] = m->store.RowOf(eChan1)->fRz;
  fRz[2] = m->store.RowOf(eChan2)->fRz;
}

void BitPattern::SetRz(const BooleanArray &fRz, Boolean fSetGroup) {
  const Boolean fRz1 = fRz[1], fRz2 = fRz[2];
  m->store.RowOf(eChan1)->fRz = fRz1;
  m->store.RowOf(eChan2)->fRz = fRz2;
  if (fSetGroup) {
    m->grpChannelRzOrNrz[0]->SetArrayIndex(fRz1 ? 0 : 1);
    m->grpChannelRzOrNrz[1]->SetArrayIndex(fRz2 ? 2 : 3);
  }
  m->RedrawPattern();
}

void BitPattern::EnableChannel2(Boolean fEnable) {
  m->store.EnableChan2(fEnable);
  tarvik::SetEnabled(*m->grpChannelRzOrNrz[1], fEnable);
  tarvik::SetEnabled(*m->toolPopup[1], fEnable);
  tarvik::SetEnabled(*m->toolPopup[2], fEnable);
}

Long BitPattern::GetPatternArraySize() const { return m->store.GetPatternArraySize(); }

Long BitPattern::GetPatternLength() const { return m->store.Length(); }

Boolean BitPattern::GetPattern(Long eChannel, ByteArray &arr, Long &lngArraySize) const {
  return m->store.GetPattern(eChannel, arr, lngArraySize);
}

void BitPattern::SetPatternInit() { m->store.SetPatternInit(); }

Boolean BitPattern::SetPattern(Long eChannel, const ByteArray &arr, Long lngNumBits) {
  Boolean fResult;
  RunReported(ModuleName, "SetPattern", [&] { fResult = m->DeliverPattern(eChannel, arr, lngNumBits); });
  return fResult;
}

Boolean BitPattern::Private::DeliverPattern(Long eChannel, const ByteArray &arr, Long lngNumBits) {
  if (!store.TakePattern(eChannel, arr)) return False;
  // Twice, so that OldValue equals the new length: otherwise the pattern seems to have grown, and its generator would
  // overwrite the delivered bits.
  esLast->SetValue(lngNumBits);
  esLast->SetValue(lngNumBits);
  esLast_AfterUpdate();
  return True;
}

Boolean BitPattern::Enabled() const { return OwnEnabled(*this); }

Boolean BitPattern::Visible() const { return OwnVisible(*this); }

void BitPattern::SetVisible(Boolean fShow) { setVisible(fShow); }

void BitPattern::SetFocus() { GiveFocus(*this); }

void BitPattern::SetEnabled(Boolean fEnable) {
  setEnabled(fEnable);
  m->site.PropertyChanged("Enabled");
}

Long BitPattern::Private::ToolIndexToChannel(Long lngIndex) {
  if (lngIndex >= 0 && lngIndex < static_cast<Long>(std::size(ToolChannels))) return ToolChannels[lngIndex];
  ShowStopMessage("Invalid case");
  return eChan1;
}

Long BitPattern::Private::ActualAddress() const { return CLng(esAddress->Value()); }

std::string BitPattern::Private::PlaceInWords() const {
  const std::string strAddress = "address " + std::to_string(ActualAddress()) + " of " + std::to_string(store.Length());
  const Long lngCode = view->Selected();
  if (!store.RowOf(lngCode)) return "no row selected, " + strAddress;
  Long lngValue = 0;
  store.ReadChannelBit(lngCode, ActualAddress(), lngValue);
  if (lngCode == eBoth)
    return "Both channels, " + strAddress + ", channel 1 bit " + std::to_string(lngValue & 1) + ", channel 2 bit " +
           std::to_string(lngValue >> 1);
  const std::string strRow = lngCode == eStrobe ? "Strobe" : lngCode == eChan1 ? "Channel 1" : "Channel 2";
  return strRow + ", " + strAddress + ", bit " + std::to_string(lngValue);
}

void BitPattern::Private::RedrawPattern() {
  view->Draw(ActualAddress());
  picWave->TellPlace();
  if (PanelReference *panel = gobjPanel()) panel->SetTabState(ePageIsDirty, eCurrPage);
}

void BitPattern::Private::SetWaveformRange() {
  if (fInRange) return;
  fInRange = True;
  // After a failure it stays set: the fields are not synchronized again before the next scroll.
  if (RunReported(ModuleName, "SetWaveformRange", [this] { UpdateRange(); })) fInRange = False;
}

void BitPattern::Private::UpdateRange() {
  if (esLast->Value() < esAddress->Value()) esAddress->SetValue(esLast->Value());
  if (esLast->Value() != esAddress->Max()) esAddress->SetMax(esLast->Value());
  if (esLast->Value() != HScroll1->Max()) {
    HScroll1->SetMin(1);
    HScroll1->SetMax(CInt(esLast->Value()));
    HScroll1->SetLargeChange(static_cast<Integer>(view->CellsPerView()));
  }
  tarvik::SetEnabled(*HScroll1, HScroll1->Max() >= MinScrollLength);
  if (esAddress->Value() != HScroll1->Value()) {
    HScroll1->SetValue(CInt(esAddress->Value()));
    RedrawPattern();
  }
}

void BitPattern::Private::SelectAndRedraw(Long lngCode) {
  view->Select(lngCode);
  RedrawPattern();
}

void BitPattern::Private::HandKeysToPicture() {
  // After selecting a row the keys work on it. The button took the focus first, which ended an entry in the address
  // field.
  picWave->setFocus(Qt::OtherFocusReason);
}

void BitPattern::Private::toolPopup_ButtonClick(Long lngIndex) {
  HandKeysToPicture();
  SelectAndRedraw(ToolIndexToChannel(lngIndex));
}

void BitPattern::Private::toolPopup_ButtonMenuClick(Long lngIndex, const std::string &strKey) {
  const Long lngCode = ToolIndexToChannel(lngIndex);
  HandKeysToPicture();
  view->Select(lngCode);
  operations.RunByKey(strKey, lngCode, ActualAddress());
  RedrawPattern();
}

void BitPattern::Private::cmdNumOrGraph_Click() {
  const bool fToDigits = cmdNumOrGraph->Caption() == NumericalCaption;
  cmdNumOrGraph->SetCaption(fToDigits ? GraphicalCaption : NumericalCaption);
  for (const Long lngCode : {eChan1, eChan2, eStrobe}) store.RowOf(lngCode)->fNumeric = fToDigits;
  RedrawPattern();
}

void BitPattern::Private::optChannelRzNrz_Click() {
  editor.SetRz(BooleanArray(1, {optChannelRzNrz[0]->Value(), optChannelRzNrz[2]->Value()}), False);
  editor.RzChange.Raise();
}

void BitPattern::Private::esAddress_AfterUpdate() { SetWaveformRange(); }

void BitPattern::Private::esLast_AfterUpdate() {
  store.SetLength(CLng(esLast->Value()));
  if (esLast->OldValue() < store.Length()) operations.Grow(CLng(esLast->OldValue()));
  SetWaveformRange();
}

void BitPattern::Private::HScroll1_Change() {
  fInRange = True;
  esAddress->SetValue(HScroll1->Value());
  RedrawPattern();
  fInRange = False;
}

void BitPattern::Private::HScroll1_GotFocus() { SetFocusIfEnabled(*picWave); }

void BitPattern::Private::MoveTo(Double dblAddress) {
  esAddress->SetValue(dblAddress);
  SetWaveformRange();
}

void BitPattern::Private::StepSelection(Long lngCode) {
  if (lngCode >= eChan1 && lngCode <= eStrobe) view->Select(lngCode);
  RedrawPattern();
}

void BitPattern::Private::KeyDownOnRow(Integer intKeyCode) {
  switch (intKeyCode) {
    case KeyLeft: MoveTo(ActualAddress() - 1); break;
    case KeyHome: MoveTo(1); break;
    case KeyRight: MoveTo(ActualAddress() + 1); break;
    case KeyEnd: MoveTo(esLast->Value()); break;
    case KeyUp: StepSelection(view->Selected() / 2); break;
    case KeyDown: StepSelection(view->Selected() * 2); break;
    default: break;
  }
}

void BitPattern::Private::picWave_KeyDown(Integer &intKeyCode) {
  if (m_fInKeyDown) return;
  const ScopedFlag guard(editor, m_fInKeyDown);
  if (view->Selected() != 0) KeyDownOnRow(intKeyCode);
  if (intKeyCode >= KeyPageUp && intKeyCode <= KeyDown) intKeyCode = 0;
}

void BitPattern::Private::picWave_KeyPress(char32_t character) {
  if (m_fInKeyPress || view->Selected() == 0) return;
  const ScopedFlag guard(editor, m_fInKeyPress);
  const bool fDigit = character >= U'0' && character <= U'3';
  const bool fSign = character == U'+' || character == U'-';
  if (!fDigit && !fSign) return;

  constexpr Long ToggleValue = 4;
  const Long lngAddress = ActualAddress();
  const Long lngValue = fDigit ? static_cast<Long>(character - U'0') : ToggleValue;
  Boolean fDone;
  store.WriteChannelBit(view->Selected(), lngAddress, lngValue, fDone);
  if (fDone) esAddress->SetValue(lngAddress + 1);
  SetWaveformRange();
}

void BitPattern::Private::picWave_MouseDown(Integer intButton, Single sngX, Single sngY) {
  if (intButton != LeftButton) return;
  for (const Long lngCode : ToolChannels) {
    const bool fOfChannel2 = lngCode == eChan2 || lngCode == eBoth;
    if (fOfChannel2 && !store.Chan2Enabled()) continue;
    if (view->SelectRowAt(lngCode, sngX, sngY)) RedrawPattern();
  }
}

}  // namespace tarvik
