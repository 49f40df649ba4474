#include <benchmark/benchmark.h>

#include <QApplication>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <vector>

#include "NothingDriver.h"
#include "automation/Activation.h"
#include "instrument/clsInstrInterface.h"
#include "panel/TarvikGUI.h"
#include "platform/CommandButton.h"
#include "platform/ListView.h"
#include "support/Host.h"

namespace {

using namespace tarvik;

/// A host that has nobody in front of it.
class NobodyHost : public Host {
 public:
  BoxAnswer MsgBox(const std::string &strText, BoxIcon, BoxButtons buttons, const std::string &) override {
    std::printf("unexpected box: %s\n", strText.c_str());
    return buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::Yes;
  }
  std::string InputBox(const std::string &, const std::string &, const std::string &) override { return {}; }
  void Beep() override {}
  Integer MousePointer() const override { return m_intPointer; }
  void SetMousePointer(Integer intPointer) override { m_intPointer = intPointer; }
  std::string GetSetting(const std::string &, const std::string &, const std::string &,
                         const std::string &strDefault) override {
    return strDefault;
  }
  void SaveSetting(const std::string &, const std::string &, const std::string &, const std::string &) override {}
  char DecimalSeparator() const override { return '.'; }
  void DoEvents() override {}

 private:
  Integer m_intPointer = PointerDefault;
};

constexpr TabNumEnum Pages[] = {ePageMode,   ePageTiming,  ePageLevels, ePagePattern,
                                ePageLimits, ePageTrigLev, ePageConfig};

/// A panel in session with the driver that does nothing.
class Session {
 public:
  Session() {
    SetHost(&m_host);
    automation::RegisterClass(kolven::DriverProgId, [] { return MakeNothingDriver(); });
    m_panel.resize(m_panel.sizeHint());
    m_panel.show();
    QCoreApplication::sendPostedEvents();
    auto *list = m_panel.findChild<ListView *>(QStringLiteral("lvwInstruments"));
    list->DblClick.Raise();
    list->Add("InstrNum1", "One")->SetSelected(True);
    list->DblClick.Raise();
    // Painting is no part of a transfer.
    m_panel.setUpdatesEnabled(false);
  }
  ~Session() { automation::RegisterClass(kolven::DriverProgId, {}); }
  Session(const Session &) = delete;
  Session &operator=(const Session &) = delete;

  void Upload() {
    for (const TabNumEnum ePage : Pages) m_panel.SetTabState(ePageIsDirty, ePage);
    m_upload->Click.Raise();
  }
  void Download() { m_download->Click.Raise(); }

 private:
  NobodyHost m_host;
  TarvikGUI m_panel;
  // The button's own look while it is down is no part of a transfer either.
  CommandButton *m_upload = m_panel.findChild<CommandButton *>(QStringLiteral("cmdUpload"));
  CommandButton *m_download = m_panel.findChild<CommandButton *>(QStringLiteral("cmdDownload"));
};

Session &TheSession() {
  static Session session;
  return session;
}

/// The calls of a whole upload in their order, from the records alone.
void BareUpload() {
  clsInstrInterface &instr = *InstrInterface();
  instr.TransactionStart(True);
  udtModeInfo mode;
  mode.PulseType = {1, 1};
  instr.SetMode(mode);
  udtTimingInfo timing;
  instr.SetTiming(timing);
  udtLevelInfo levels;
  instr.SetLevels(levels);
  udtLimitsInfo limits;
  instr.SetLimits(limits);
  udtTrgLevelsInfo trigger;
  instr.SetTriggerLevels(trigger);
  Double dblFreq = 5e6;
  Long eSource = 1;
  instr.PllRefSource(dblFreq, eSource, False);
  instr.SetRz(BooleanArray(1, {True, True}));
  instr.TransactionFinish(True);
  instr.CheckWarnings(False);
  ByteArray arr(1, std::vector<Byte>(2));
  for (const Long eRow : {1, 2, 3}) instr.SetPatternArray(eRow, arr, 16);
}

/// The calls of a whole download in their order, into records alone.
void BareDownload() {
  clsInstrInterface &instr = *InstrInterface();
  udtModeInfo mode;
  instr.GetMode(mode);
  udtTimingInfo timing;
  instr.GetTiming(timing);
  udtLevelInfo levels;
  instr.GetLevels(levels);
  ByteArray arr(1);
  Long lngLength = 0;
  for (const Long eRow : {1, 2, 3}) instr.GetPatternArray(eRow, arr, lngLength);
  BooleanArray fRz(1, {False, False});
  instr.GetRz(fRz);
  udtLimitsInfo limits;
  instr.GetLimits(limits);
  udtTrgLevelsInfo trigger;
  instr.GetTriggerLevels(trigger);
  udtInstrInfo info;
  instr.GetInstrInfo(info);
  viInfo record;
  std::string strName;
  instr.GetViInfo(1, record, strName);
  Double dblFreq = 0;
  Long eSource = 0;
  instr.PllRefSource(dblFreq, eSource, True);
  instr.CheckWarnings(False);
}

template <class Step>
void Measure(benchmark::State &state, Step &&step) {
  TheSession();
  for (auto _ : state) step();
}

void UploadBare(benchmark::State &state) {
  Measure(state, [] { BareUpload(); });
}
void UploadPanel(benchmark::State &state) {
  Measure(state, [] { TheSession().Upload(); });
}
void DownloadBare(benchmark::State &state) {
  Measure(state, [] { BareDownload(); });
}
void DownloadPanel(benchmark::State &state) {
  Measure(state, [] { TheSession().Download(); });
}

BENCHMARK(UploadBare)->Repetitions(5)->ReportAggregatesOnly();
BENCHMARK(UploadPanel)->Repetitions(5)->ReportAggregatesOnly();
BENCHMARK(DownloadBare)->Repetitions(5)->ReportAggregatesOnly();
BENCHMARK(DownloadPanel)->Repetitions(5)->ReportAggregatesOnly();

/// Keeps the medians, for the ratios.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run> &runs) override {
    for (const Run &run : runs)
      if (run.aggregate_name == "median") m_medians[run.run_name.function_name] = run.GetAdjustedCPUTime();
    ConsoleReporter::ReportRuns(runs);
  }
  void PrintRatio(const char *strWhat, const char *strPanel, const char *strBare) {
    std::printf("ratio %s, panel / bare driver calls: %.2f (at most 1.5)\n", strWhat,
                m_medians[strPanel] / m_medians[strBare]);
  }

 private:
  std::map<std::string, double> m_medians;
};

}  // namespace

int main(int argc, char **argv) {
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  QApplication app(argc, argv);
  benchmark::Initialize(&argc, argv);
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatio("upload", "UploadPanel", "UploadBare");
  reporter.PrintRatio("download", "DownloadPanel", "DownloadBare");
  std::fflush(stdout);
  // The panel's own end has nothing to be measured any more.
  std::_Exit(0);
}
