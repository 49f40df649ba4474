#include "Procedures.h"

#include <vector>

#include "bitpattern/BitPattern.h"
#include "panel/CapabilityGate.h"
#include "panel/ConfigPage.h"
#include "panel/InstrPage.h"
#include "panel/LevelsPage.h"
#include "panel/LimitsPage.h"
#include "panel/ModePage.h"
#include "panel/OptionsPage.h"
#include "panel/PatternPage.h"
#include "panel/TimingPage.h"
#include "panel/TrigLevPage.h"

namespace tarvik::paneltest {

namespace {

using Panel = TarvikGUI::Panel;

struct NamedProcedure {
  const char *strName;
  Json (*procedure)(Panel &, Words &);
};

const std::vector<NamedProcedure> &PanelProcedures() {
  static const std::vector<NamedProcedure> arrProcedures{
      {"SetTabState",
       [](Panel &panel, Words &words) -> Json {
         const auto eState = static_cast<TabStates>(words.Number());
         panel.SetTabState(eState, static_cast<TabNumEnum>(words.Number()));
         return nullptr;
       }},
      {"NeedsUpload",
       [](Panel &panel, Words &words) -> Json {
         const Boolean fAll = words.Flag();
         const Boolean fContinue = words.Flag();
         return static_cast<bool>(panel.NeedsUpload(fAll, fContinue, words.Number()));
       }},
      {"EnableControlsForChannels",
       [](Panel &panel, Words &words) -> Json {
         panel.EnableControlsForChannels(words.Number());
         return nullptr;
       }},
      {"InstrStartStop",
       [](Panel &panel, Words &words) -> Json {
         const bool fNoRow = words.Peek().strText == "-";
         ListItem *row = nullptr;
         if (fNoRow)
           words.Take();
         else
           row = panel.instrPage->lvwInstruments.Item(words.Number() - 1);
         panel.instrPage->InstrStartStop(row, words.Flag());
         return nullptr;
       }},
      {"GetCheckedInstrNum",
       [](Panel &panel, Words &) -> Json {
         Long lngNumber = 0;
         const bool fFound = panel.instrPage->GetCheckedInstrNum(lngNumber);
         return Json::array({fFound, lngNumber});
       }},
      {"UncheckAllInstruments",
       [](Panel &panel, Words &) -> Json { return panel.instrPage->UncheckAllInstruments(), nullptr; }},
      {"cmdRefresh_Click", [](Panel &panel, Words &) -> Json { return panel.instrPage->cmdRefresh_Click(), nullptr; }},
      {"cmdUpload_Click", [](Panel &panel, Words &) -> Json { return panel.cmdUpload_Click(), nullptr; }},
      {"cmdDownload_Click", [](Panel &panel, Words &) -> Json { return panel.cmdDownload_Click(), nullptr; }},
      {"cmdCheckErrors_Click", [](Panel &panel, Words &) -> Json { return panel.cmdCheckErrors_Click(), nullptr; }},
      {"cmdCheckWarnings_Click", [](Panel &panel, Words &) -> Json { return panel.cmdCheckWarnings_Click(), nullptr; }},
      {"cmdResetInstr_Click",
       [](Panel &panel, Words &) -> Json { return panel.configPage->cmdResetInstr_Click(), nullptr; }},
      {"cmdSelfTest_Click",
       [](Panel &panel, Words &) -> Json { return panel.configPage->cmdSelfTest_Click(), nullptr; }},
      {"cmdCalibrate_Click",
       [](Panel &panel, Words &) -> Json { return panel.configPage->cmdCalibrate_Click(), nullptr; }},
      {"cmdPeriodOrFreq_Click",
       [](Panel &panel, Words &) -> Json { return panel.timingPage->cmdPeriodOrFreq_Click(), nullptr; }},
  };
  return arrProcedures;
}

const std::vector<NamedProcedure> &PageProcedures() {
  static const std::vector<NamedProcedure> arrProcedures{
      {"SetTrailEdgeMode",
       [](Panel &panel, Words &words) -> Json {
         const auto intChan = static_cast<Integer>(words.Number());
         const Boolean fTeEqLe = words.Flag();
         const Boolean fLocked = words.Flag();
         panel.timingPage->SetTrailEdgeMode(intChan, fTeEqLe, fLocked, words.Flag());
         return nullptr;
       }},
      {"GetWidestWidth",
       [](Panel &panel, Words &words) -> Json {
         Double dblWidth = 0;
         const bool fAny = panel.timingPage->GetWidestWidth(words.Number(), dblWidth);
         return Json::array({fAny, dblWidth});
       }},
      {"SetTimingRanges",
       [](Panel &panel, Words &words) -> Json { return panel.timingPage->SetTimingRanges(words.Flag()), nullptr; }},
      {"SetPeriodOrFreq",
       [](Panel &panel, Words &words) -> Json {
         const Boolean fToggle = words.Flag();
         return panel.timingPage->SetPeriodOrFreq(fToggle, words.Flag()), nullptr;
       }},
      {"SetChannelOutput",
       [](Panel &panel, Words &words) -> Json {
         const auto intChan = static_cast<Integer>(words.Number());
         const Boolean fState = words.Flag();
         panel.timingPage->SetChannelOutput(intChan, fState, words.Flag());
         return nullptr;
       }},
      {"LockWidths", [](Panel &panel, Words &) -> Json { return panel.timingPage->LockWidths(), nullptr; }},
      {"DrawTiming", [](Panel &panel, Words &) -> Json { return panel.timingPage->DrawTiming(), nullptr; }},
      {"toolPopupTEdge_ButtonMenuClick",
       [](Panel &panel, Words &words) -> Json {
         const auto intIndex = static_cast<Integer>(words.Number());
         panel.timingPage->toolPopupTEdge_ButtonMenuClick(intIndex, words.Text());
         return nullptr;
       }},
      {"UpdateModePage", [](Panel &panel, Words &) -> Json { return panel.modePage->UpdateModePage(), nullptr; }},
      {"UpdatePulseType", [](Panel &panel, Words &) -> Json { return panel.modePage->UpdatePulseType(), nullptr; }},
      {"SetRzFromFlags",
       [](Panel &panel, Words &words) -> Json {
         const Boolean fRz1 = words.Flag();
         const Boolean fRz2 = words.Flag();
         const Boolean fSetGroup = words.Flag();
         panel.state.mfRz.SetRzFromFlags(fRz1, fRz2, fSetGroup, words.Flag());
         return nullptr;
       }},
      {"ConvertLevelField",
       [](Panel &panel, Words &words) -> Json {
         LevelsPage &page = *panel.levelsPage;
         const bool fHigh = words.Text() == "High";
         const auto intIndex = static_cast<Integer>(words.Number());
         std::string strUnits = words.Text();
         auto &field = page.Controls().Get<EngrSpin>(fHigh ? "esLevelHigh" : "esLevelLo", intIndex);
         page.ConvertLevelField(field, intIndex, strUnits);
         return nullptr;
       }},
      {"optTrigLevelExtIn_Click",
       [](Panel &panel, Words &words) -> Json {
         return panel.trigLevPage->optTrigLevelExtIn_Click(static_cast<Integer>(words.Number())), nullptr;
       }},
      {"optTrigLevelClkIn_Click",
       [](Panel &panel, Words &words) -> Json {
         return panel.trigLevPage->optTrigLevelClkIn_Click(static_cast<Integer>(words.Number())), nullptr;
       }},
      {"BitPattern1.SetRz",
       [](Panel &panel, Words &words) -> Json {
         const Boolean fRz1 = words.Flag();
         const Boolean fRz2 = words.Flag();
         panel.patternPage->Editor().SetRz(BooleanArray(1, {fRz1, fRz2}), words.Flag());
         return nullptr;
       }},
  };
  return arrProcedures;
}

const std::vector<NamedProcedure> &Transfers() {
  static const std::vector<NamedProcedure> arrProcedures{
      {"DownloadMode", [](Panel &panel, Words &) -> Json { return panel.modePage->DownloadMode(), nullptr; }},
      {"DownloadTiming", [](Panel &panel, Words &) -> Json { return panel.timingPage->DownloadTiming(), nullptr; }},
      {"DownloadLevels", [](Panel &panel, Words &) -> Json { return panel.levelsPage->DownloadLevels(), nullptr; }},
      {"DownloadPattern", [](Panel &panel, Words &) -> Json { return panel.patternPage->DownloadPattern(), nullptr; }},
      {"DownloadLimits", [](Panel &panel, Words &) -> Json { return panel.limitsPage->DownloadLimits(), nullptr; }},
      {"DownloadTrigLevels",
       [](Panel &panel, Words &) -> Json { return panel.trigLevPage->DownloadTrigLevels(), nullptr; }},
      {"DownloadConfig", [](Panel &panel, Words &) -> Json { return panel.configPage->DownloadConfig(), nullptr; }},
      {"UploadMode",
       [](Panel &panel, Words &) -> Json {
         Boolean fOk;
         panel.modePage->UploadMode(fOk);
         return static_cast<bool>(fOk);
       }},
      {"UploadTiming",
       [](Panel &panel, Words &) -> Json {
         Boolean fOk;
         panel.timingPage->UploadTiming(fOk);
         return static_cast<bool>(fOk);
       }},
      {"UploadLevels",
       [](Panel &panel, Words &) -> Json {
         Boolean fOk;
         panel.levelsPage->UploadLevels(fOk);
         return static_cast<bool>(fOk);
       }},
      {"UploadLimits",
       [](Panel &panel, Words &) -> Json {
         Boolean fOk;
         panel.limitsPage->UploadLimits(fOk);
         return static_cast<bool>(fOk);
       }},
      {"UploadTrigLevels",
       [](Panel &panel, Words &) -> Json {
         Boolean fOk;
         panel.trigLevPage->UploadTrigLevels(fOk);
         return static_cast<bool>(fOk);
       }},
      {"UploadConfig",
       [](Panel &panel, Words &) -> Json {
         Boolean fOk;
         panel.configPage->UploadConfig(fOk);
         return static_cast<bool>(fOk);
       }},
      {"UploadRz",
       [](Panel &panel, Words &) -> Json {
         Boolean fOk;
         panel.patternPage->UploadRz(fOk);
         return static_cast<bool>(fOk);
       }},
      {"UploadPattern",
       [](Panel &panel, Words &) -> Json {
         Boolean fOk;
         panel.patternPage->UploadPattern(fOk);
         return static_cast<bool>(fOk);
       }},
  };
  return arrProcedures;
}

}  // namespace

Json PresetsHigh(const TarvikGUI::Panel &panel) {
  const auto &presets = panel.levelsPage->Presets();
  return {presets[0].sdblHigh, presets[1].sdblHigh};
}

Json PresetsLow(const TarvikGUI::Panel &panel) {
  const auto &presets = panel.levelsPage->Presets();
  return {presets[0].sdblLow, presets[1].sdblLow};
}

Json Invoke(TarvikGUI::Panel &panel, const std::string &strProcedure, Words &arguments) {
  for (const auto *arrProcedures : {&PanelProcedures(), &PageProcedures(), &Transfers()})
    for (const NamedProcedure &named : *arrProcedures)
      if (strProcedure == named.strName) return named.procedure(panel, arguments);
  throw BadLine("unknown procedure " + strProcedure);
}

}  // namespace tarvik::paneltest
