#include <array>

#include "LongRun.h"
#include "SimulatorSession.h"
#include "WidgetEnvironment.h"
#include "panel/UndoHistory.h"

namespace tarvik::test {

/// Those of the rack that the list shows and that open; the last one has one channel.
constexpr std::array Instruments{"VP-210", "VP-220", "VP-110"};
constexpr long ResidentBound = 2 * 1024 * 1024;
/// Which texts the fields show at the end makes a difference of a few.
constexpr long AllocationBound = 20;

struct ManyPanelSessions : testing::Test {
  /// Opens an instrument, downloads, finds the width of the session before, types another one, uploads, closes.
  void Run(long n) {
    const std::size_t lngInstrument = static_cast<std::size_t>(n) % Instruments.size();
    session.Open(Instruments[lngInstrument]);
    session->Click("cmdDownload");
    session->ShowPage(ePageTiming);
    if (dblSent[lngInstrument] > 0) ASSERT_DOUBLE_EQ(session->Field("esWidth(0)").Value(), dblSent[lngInstrument]);
    const long lngNanoseconds = 50 + n % 7;
    dblSent[lngInstrument] = static_cast<Double>(lngNanoseconds) * 1e-9;
    session->Type("esWidth(0)", std::to_string(lngNanoseconds) + "n");
    session->Click("cmdUpload");
    // Its check box once more.
    session.Open(Instruments[lngInstrument]);
    ASSERT_FALSE(SimulatorSession::Instr().IsOnline(True));
    ASSERT_EQ(session.host.TakeBoxes(), std::vector<std::string>());
    // As a program's message loop does when it turns.
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  LongRun RunAll() {
    return RunSessions(SessionCount("TARVIK_LONG_PANEL_SESSIONS", 40), "libtarviksimulator",
                       [this](long n) { Run(n); });
  }

  SimulatorSession session;
  std::array<Double, Instruments.size()> dblSent{};
};

TEST_F(ManyPanelSessions, LeaveNothingBehindInThePanelOrInTheDriver) {
  // The steps that can be undone are kept, until there are too many of them.
  session.panel->SetUndoEnabled(False);
  const LongRun run = RunAll();
  EXPECT_LE(run.late.lngAllocations, run.early.lngAllocations + AllocationBound);
  EXPECT_EQ(run.late.lngDriver, run.early.lngDriver);
  EXPECT_LE(run.late.lngResident, run.early.lngResident + ResidentBound);
}

TEST_F(ManyPanelSessions, GrowByTheStepsThatCanBeUndoneAndNoFurther) {
  const LongRun run = RunAll();
  EXPECT_EQ(run.late.lngDriver, run.early.lngDriver);
  EXPECT_LE(run.late.lngResident, run.early.lngResident + ResidentBound + static_cast<long>(UndoHistory::MaxBytes));
}

}  // namespace tarvik::test
