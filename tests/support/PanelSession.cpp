#include "PanelSession.h"

#include "ValueText.h"

namespace tarvik::test {

Boolean KeepingInstr::SetMode(const udtModeInfo &ModeInfo) {
  mode = ModeInfo;
  return fAnswer = clsInstrInterface::SetMode(ModeInfo);
}

Boolean KeepingInstr::SetTiming(const udtTimingInfo &TimingInfo) {
  timing = TimingInfo;
  return fAnswer = clsInstrInterface::SetTiming(TimingInfo);
}

Boolean KeepingInstr::SetLimits(const udtLimitsInfo &LimitsInfo) {
  limits = LimitsInfo;
  return fAnswer = clsInstrInterface::SetLimits(LimitsInfo);
}

Boolean KeepingInstr::GetMode(udtModeInfo &ModeInfo) { return fAnswer = clsInstrInterface::GetMode(ModeInfo); }

Boolean KeepingInstr::GetTiming(udtTimingInfo &TimingInfo) {
  return fAnswer = clsInstrInterface::GetTiming(TimingInfo);
}

Boolean KeepingInstr::Output(Integer intChan, Boolean fState, Boolean fIsComplement) {
  arrOutputs.push_back(std::to_string(intChan) + (fState ? " on" : " off") + (fIsComplement ? " inverse" : ""));
  return fAnswer = clsInstrInterface::Output(intChan, fState, fIsComplement);
}

Boolean KeepingInstr::SetPatternArray(Long eChan, ByteArray &arr, Long lngPatternLen) {
  arrRows.push_back("write " + std::to_string(eChan) + " " + ToHex(arr.Elements()) + " " +
                    std::to_string(lngPatternLen));
  return fAnswer = clsInstrInterface::SetPatternArray(eChan, arr, lngPatternLen);
}

Boolean KeepingInstr::GetPatternArray(Long eChan, ByteArray &arr, Long &lngPatternLen) {
  arrRows.push_back("read " + std::to_string(eChan));
  const Boolean fRead = clsInstrInterface::GetPatternArray(eChan, arr, lngPatternLen);
  // The instruments count the bytes from 1, the stand-in from 0.
  arr = ByteArray(1, arr.Elements());
  return fRead;
}

PanelSession::PanelSession(const Start &start) {
  gobjInstr().reset();
  driver.Add("Alpha", start.config);
  instr = std::make_shared<KeepingInstr>();
  gobjInstr() = instr;
  host.settings[{"Config", "AutoDownload"}] = start.fAutoDownload ? "1" : "0";
  host.settings[{"Config", "AutoOutputOnOff"}] = start.fAutoOutput ? "1" : "0";
  host.settings[{"Config", "WorkWithBoxes"}] = "1";
  panel = std::make_unique<TarvikGUI>();
  SitDownAt(*panel);
  panel->resize(panel->sizeHint());
  ShowAndStart(*panel);
  if (start.fOpen) Open();
  Forget();
}

PanelSession::~PanelSession() {
  panel.reset();
  gobjInstr().reset();
}

void PanelSession::Forget() {
  host.arrEntries.clear();
  driver.arrTrace.clear();
  instr->arrOutputs.clear();
  instr->arrRows.clear();
}

}  // namespace tarvik::test
