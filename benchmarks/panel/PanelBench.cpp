#include <benchmark/benchmark.h>

#include <QApplication>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "NothingDriver.h"
#include "Ratios.h"
#include "instrument/clsInstrInterface.h"
#include "panel/TarvikGUI.h"
#include "platform/CommandButton.h"
#include "platform/ListView.h"
#include "support/Host.h"

namespace {

using namespace tarvik;

/// A host without a user.
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

constexpr int Repetitions = 15;
/// Seconds of one repetition.
constexpr double ShortTime = 0.02;
/// Nanoseconds that the panel may add to the driver calls of a whole transfer, so that nobody notices them.
constexpr double PanelsShare = 100'000;

/// A panel in session with the driver that does nothing.
class Session {
 public:
  Session() {
    SetHost(&m_host);
    m_panel.resize(m_panel.sizeHint());
    m_panel.show();
    QCoreApplication::processEvents();     // its first frame
    QCoreApplication::sendPostedEvents();  // its start
    auto *list = m_panel.findChild<ListView *>(QStringLiteral("lvwInstruments"));
    list->DblClick.Raise();
    list->Add("InstrNum1", "One")->SetSelected(True);
    list->DblClick.Raise();
    // Painting is not measured.
    m_panel.setUpdatesEnabled(false);
  }
  Session(const Session &) = delete;
  Session &operator=(const Session &) = delete;

  void Upload() {
    m_panel.SetTabState(ePageIsDirty, eAllPages);
    for (const TabNumEnum ePage : {ePageInstr, ePageOptions}) m_panel.SetTabState(ePageIsCurrent, ePage);
    m_upload->Click.Raise();
  }
  void Download() { m_download->Click.Raise(); }
  long DriverCalls() const { return m_driver.Calls(); }

 private:
  NobodyHost m_host;
  bench::NothingDriver m_driver;
  TarvikGUI m_panel;
  // Raised directly: painting the pressed button is no part of a transfer.
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
  static ByteArray arr(1);
  arr.ReDim(1, 2);
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
  // Kept between transfers, as the page keeps its own.
  static ByteArray arr(1);
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

/// One benchmark for each side of a transfer.
void Register(const char *strName, void (*step)()) {
  benchmark::RegisterBenchmark(strName,
                               [step](benchmark::State &state) {
                                 for (auto _ : state) step();
                               })
      ->Repetitions(Repetitions)
      ->MinTime(ShortTime);
}

/// Both sides must make the same number of driver calls; otherwise the comparison is meaningless.
bool CallsAgree(const char *strTransfer, void (*bare)(), void (*panel)()) {
  const auto calls = [](void (*step)()) {
    const long lngBefore = TheSession().DriverCalls();
    step();
    return TheSession().DriverCalls() - lngBefore;
  };
  const long lngBare = calls(bare), lngPanel = calls(panel);
  std::printf("driver calls of a whole %s: bare %ld, panel %ld\n", strTransfer, lngBare, lngPanel);
  return lngBare == lngPanel;
}

void PanelUpload() { TheSession().Upload(); }
void PanelDownload() { TheSession().Download(); }

}  // namespace

int main(int argc, char **argv) {
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  QApplication app(argc, argv);
  TheSession();
  if (!CallsAgree("upload", BareUpload, PanelUpload) || !CallsAgree("download", BareDownload, PanelDownload)) return 2;
  Register("UploadBare", BareUpload);
  Register("UploadPanel", PanelUpload);
  Register("DownloadBare", BareDownload);
  Register("DownloadPanel", PanelDownload);
  const int intResult = bench::RunWithBounds(
      argc, argv, {{"UploadPanel", "UploadBare", 1, PanelsShare}, {"DownloadPanel", "DownloadBare", 1, PanelsShare}});
  std::fflush(stdout);
  // Skips destructors: the panel's teardown is not measured.
  std::_Exit(intResult);
}
