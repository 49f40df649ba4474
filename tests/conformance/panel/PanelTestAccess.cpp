#include "PanelTestAccess.h"

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

namespace tarvik {

using paneltest::BadLine;
using paneltest::Json;
using paneltest::Words;

Json PanelTestAccess::PresetsHigh(const TarvikGUI &panel) {
  const auto &presets = panel.m_levelsPage->m_arrPresets;
  return {presets[0].sdblHigh, presets[1].sdblHigh};
}

Json PanelTestAccess::PresetsLow(const TarvikGUI &panel) {
  const auto &presets = panel.m_levelsPage->m_arrPresets;
  return {presets[0].sdblLow, presets[1].sdblLow};
}

const std::vector<PanelTestAccess::NamedProcedure> &PanelTestAccess::PanelProcedures() {
  static const std::vector<NamedProcedure> arrProcedures{
      {"SetTabState",
       [](TarvikGUI &panel, Words &words) -> Json {
         const auto eState = static_cast<TabStates>(words.Number());
         panel.SetTabState(eState, static_cast<TabNumEnum>(words.Number()));
         return nullptr;
       }},
      {"NeedsUpload",
       [](TarvikGUI &panel, Words &words) -> Json {
         const Boolean fAll = words.Flag();
         const Boolean fContinue = words.Flag();
         return static_cast<bool>(panel.NeedsUpload(fAll, fContinue, words.Number()));
       }},
      {"EnableControlsForChannels",
       [](TarvikGUI &panel, Words &words) -> Json {
         panel.EnableControlsForChannels(words.Number());
         return nullptr;
       }},
      {"InstrStartStop",
       [](TarvikGUI &panel, Words &words) -> Json {
         const bool fNoRow = words.Peek().strText == "-";
         ListItem *row = nullptr;
         if (fNoRow)
           words.Take();
         else
           row = panel.m_instrPage->lvwInstruments.Item(words.Number() - 1);
         panel.m_instrPage->InstrStartStop(row, words.Flag());
         return nullptr;
       }},
      {"GetCheckedInstrNum",
       [](TarvikGUI &panel, Words &) -> Json {
         Long lngNumber = 0;
         const bool fFound = panel.m_instrPage->GetCheckedInstrNum(lngNumber);
         return Json::array({fFound, lngNumber});
       }},
      {"UncheckAllInstruments",
       [](TarvikGUI &panel, Words &) -> Json { return panel.m_instrPage->UncheckAllInstruments(), nullptr; }},
      {"cmdRefresh_Click",
       [](TarvikGUI &panel, Words &) -> Json { return panel.m_instrPage->cmdRefresh_Click(), nullptr; }},
      {"cmdUpload_Click", [](TarvikGUI &panel, Words &) -> Json { return panel.cmdUpload_Click(), nullptr; }},
      {"cmdDownload_Click", [](TarvikGUI &panel, Words &) -> Json { return panel.cmdDownload_Click(), nullptr; }},
      {"cmdCheckErrors_Click", [](TarvikGUI &panel, Words &) -> Json { return panel.cmdCheckErrors_Click(), nullptr; }},
      {"cmdCheckWarnings_Click",
       [](TarvikGUI &panel, Words &) -> Json { return panel.cmdCheckWarnings_Click(), nullptr; }},
      {"cmdResetInstr_Click",
       [](TarvikGUI &panel, Words &) -> Json { return panel.m_configPage->cmdResetInstr_Click(), nullptr; }},
      {"cmdSelfTest_Click",
       [](TarvikGUI &panel, Words &) -> Json { return panel.m_configPage->cmdSelfTest_Click(), nullptr; }},
      {"cmdCalibrate_Click",
       [](TarvikGUI &panel, Words &) -> Json { return panel.m_configPage->cmdCalibrate_Click(), nullptr; }},
      {"cmdPeriodOrFreq_Click",
       [](TarvikGUI &panel, Words &) -> Json { return panel.m_timingPage->cmdPeriodOrFreq_Click(), nullptr; }},
  };
  return arrProcedures;
}

const std::vector<PanelTestAccess::NamedProcedure> &PanelTestAccess::PageProcedures() {
  static const std::vector<NamedProcedure> arrProcedures{
      {"SetTrailEdgeMode",
       [](TarvikGUI &panel, Words &words) -> Json {
         const auto intChan = static_cast<Integer>(words.Number());
         const Boolean fTeEqLe = words.Flag();
         const Boolean fLocked = words.Flag();
         panel.m_timingPage->SetTrailEdgeMode(intChan, fTeEqLe, fLocked, words.Flag());
         return nullptr;
       }},
      {"GetWidestWidth",
       [](TarvikGUI &panel, Words &words) -> Json {
         Double dblWidth = 0;
         const bool fAny = panel.m_timingPage->GetWidestWidth(words.Number(), dblWidth);
         return Json::array({fAny, dblWidth});
       }},
      {"SetTimingRanges",
       [](TarvikGUI &panel, Words &words) -> Json {
         return panel.m_timingPage->SetTimingRanges(words.Flag()), nullptr;
       }},
      {"SetPeriodOrFreq",
       [](TarvikGUI &panel, Words &words) -> Json {
         const Boolean fToggle = words.Flag();
         return panel.m_timingPage->SetPeriodOrFreq(fToggle, words.Flag()), nullptr;
       }},
      {"SetChannelOutput",
       [](TarvikGUI &panel, Words &words) -> Json {
         const auto intChan = static_cast<Integer>(words.Number());
         const Boolean fState = words.Flag();
         panel.m_timingPage->SetChannelOutput(intChan, fState, words.Flag());
         return nullptr;
       }},
      {"LockWidths", [](TarvikGUI &panel, Words &) -> Json { return panel.m_timingPage->LockWidths(), nullptr; }},
      {"DrawTiming", [](TarvikGUI &panel, Words &) -> Json { return panel.m_timingPage->DrawTiming(), nullptr; }},
      {"toolPopupTEdge_ButtonMenuClick",
       [](TarvikGUI &panel, Words &words) -> Json {
         const auto intIndex = static_cast<Integer>(words.Number());
         panel.m_timingPage->toolPopupTEdge_ButtonMenuClick(intIndex, words.Text());
         return nullptr;
       }},
      {"UpdateModePage", [](TarvikGUI &panel, Words &) -> Json { return panel.m_modePage->UpdateModePage(), nullptr; }},
      {"UpdatePulseType",
       [](TarvikGUI &panel, Words &) -> Json { return panel.m_modePage->UpdatePulseType(), nullptr; }},
      {"SetRzFromFlags",
       [](TarvikGUI &panel, Words &words) -> Json {
         const Boolean fRz1 = words.Flag();
         const Boolean fRz2 = words.Flag();
         const Boolean fSetGroup = words.Flag();
         panel.m_state.mfRz.SetRzFromFlags(fRz1, fRz2, fSetGroup, words.Flag());
         return nullptr;
       }},
      {"ConvertLevelField",
       [](TarvikGUI &panel, Words &words) -> Json {
         LevelsPage &page = *panel.m_levelsPage;
         const bool fHigh = words.Text() == "High";
         const auto intIndex = static_cast<Integer>(words.Number());
         std::string strUnits = words.Text();
         page.ConvertLevelField(fHigh ? page.esLevelHigh[intIndex] : page.esLevelLo[intIndex], intIndex, strUnits);
         return nullptr;
       }},
      {"optTrigLevelExtIn_Click",
       [](TarvikGUI &panel, Words &words) -> Json {
         return panel.m_trigLevPage->optTrigLevelExtIn_Click(static_cast<Integer>(words.Number())), nullptr;
       }},
      {"optTrigLevelClkIn_Click",
       [](TarvikGUI &panel, Words &words) -> Json {
         return panel.m_trigLevPage->optTrigLevelClkIn_Click(static_cast<Integer>(words.Number())), nullptr;
       }},
      {"BitPattern1.SetRz",
       [](TarvikGUI &panel, Words &words) -> Json {
         const Boolean fRz1 = words.Flag();
         const Boolean fRz2 = words.Flag();
         panel.m_patternPage->Editor().SetRz(BooleanArray(1, {fRz1, fRz2}), words.Flag());
         return nullptr;
       }},
  };
  return arrProcedures;
}

const std::vector<PanelTestAccess::NamedProcedure> &PanelTestAccess::Transfers() {
  static const std::vector<NamedProcedure> arrProcedures{
      {"DownloadMode", [](TarvikGUI &panel, Words &) -> Json { return panel.m_modePage->DownloadMode(), nullptr; }},
      {"DownloadTiming",
       [](TarvikGUI &panel, Words &) -> Json { return panel.m_timingPage->DownloadTiming(), nullptr; }},
      {"DownloadLevels",
       [](TarvikGUI &panel, Words &) -> Json { return panel.m_levelsPage->DownloadLevels(), nullptr; }},
      {"DownloadPattern",
       [](TarvikGUI &panel, Words &) -> Json { return panel.m_patternPage->DownloadPattern(), nullptr; }},
      {"DownloadLimits",
       [](TarvikGUI &panel, Words &) -> Json { return panel.m_limitsPage->DownloadLimits(), nullptr; }},
      {"DownloadTrigLevels",
       [](TarvikGUI &panel, Words &) -> Json { return panel.m_trigLevPage->DownloadTrigLevels(), nullptr; }},
      {"DownloadConfig",
       [](TarvikGUI &panel, Words &) -> Json { return panel.m_configPage->DownloadConfig(), nullptr; }},
      {"UploadMode",
       [](TarvikGUI &panel, Words &) -> Json {
         Boolean fOk;
         panel.m_modePage->UploadMode(fOk);
         return static_cast<bool>(fOk);
       }},
      {"UploadTiming",
       [](TarvikGUI &panel, Words &) -> Json {
         Boolean fOk;
         panel.m_timingPage->UploadTiming(fOk);
         return static_cast<bool>(fOk);
       }},
      {"UploadLevels",
       [](TarvikGUI &panel, Words &) -> Json {
         Boolean fOk;
         panel.m_levelsPage->UploadLevels(fOk);
         return static_cast<bool>(fOk);
       }},
      {"UploadLimits",
       [](TarvikGUI &panel, Words &) -> Json {
         Boolean fOk;
         panel.m_limitsPage->UploadLimits(fOk);
         return static_cast<bool>(fOk);
       }},
      {"UploadTrigLevels",
       [](TarvikGUI &panel, Words &) -> Json {
         Boolean fOk;
         panel.m_trigLevPage->UploadTrigLevels(fOk);
         return static_cast<bool>(fOk);
       }},
      {"UploadConfig",
       [](TarvikGUI &panel, Words &) -> Json {
         Boolean fOk;
         panel.m_configPage->UploadConfig(fOk);
         return static_cast<bool>(fOk);
       }},
      {"UploadRz",
       [](TarvikGUI &panel, Words &) -> Json {
         Boolean fOk;
         panel.m_patternPage->UploadRz(fOk);
         return static_cast<bool>(fOk);
       }},
      {"UploadPattern",
       [](TarvikGUI &panel, Words &) -> Json {
         Boolean fOk;
         panel.m_patternPage->UploadPattern(fOk);
         return static_cast<bool>(fOk);
       }},
  };
  return arrProcedures;
}

Json PanelTestAccess::Invoke(TarvikGUI &panel, const std::string &strProcedure, Words &arguments) {
  for (const auto *arrProcedures : {&PanelProcedures(), &PageProcedures(), &Transfers()})
    for (const NamedProcedure &named : *arrProcedures)
      if (strProcedure == named.strName) return named.procedure(panel, arguments);
  throw BadLine("unknown procedure " + strProcedure);
}

}  // namespace tarvik
