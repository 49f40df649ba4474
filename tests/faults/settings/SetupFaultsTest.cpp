#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "InstrumentSession.h"
#include "SetupSamples.h"
#include "settings/SetupTransfer.h"

namespace tarvik::test {
namespace {

using testing::IsEmpty;
using testing::Not;

const DriverFailure TheFailure{Refused, "driver failed"};

/// A session with an instrument that holds other settings than those to be sent.
struct SetupFaults : testing::Test {
  void Open() {
    session.Open();
    session.instr->LetWarningsEnabled(True);
    before = Held();
    session.Forget();
  }
  tarvik::Setup Held() {
    tarvik::Setup setup;
    EXPECT_TRUE(ReadSetup(*session.instr, setup));
    return setup;
  }
  /// The driver calls of a transfer when all goes well.
  template <class Transfer>
  std::size_t CountCalls(Transfer transfer) {
    Open();
    EXPECT_TRUE(transfer());
    return session.driver.TakeTrace().size();
  }

  InstrumentSession session;
  tarvik::Setup before;
};

/// A setup that an instrument takes and tells back just as it was sent.
tarvik::Setup SentSetup(const tarvik::Setup &held) {
  tarvik::Setup sent = SampleSetup();
  sent.Instrument = held.Instrument;
  sent.Mode.PulseMode = ePulsePattern;
  sent.Mode.PllPeriodOrFreq = 0;
  sent.Mode.PllFormat = ePllPeriod;
  sent.Mode.BurstLength = held.Mode.BurstLength;
  sent.Timing.fDoublePulse = {False, False};
  sent.Timing.dblTrailing[1] = sent.Timing.dblLeading[1];
  return Canonical(sent);
}

TEST_F(SetupFaults, WhicheverCallOfALoadFailsTheInstrumentTakesAllOrNothing) {
  const std::size_t calls = CountCalls([&] { return WriteSetup(*session.instr, SentSetup(before)).fDone; });
  ASSERT_EQ(calls, 123U);
  std::size_t unchanged = 0;
  for (std::size_t k = 1; k <= calls; ++k) {
    SCOPED_TRACE(k);
    Open();
    const tarvik::Setup sent = SentSetup(before);
    session.driver.FailAt(static_cast<int>(k), TheFailure);
    const SetupWritten written = WriteSetup(*session.instr, sent);
    session.driver.ClearFaults();
    EXPECT_FALSE(session.InTransaction());
    EXPECT_FALSE(session.driver.Find("Alpha")->copy.has_value()) << "a transaction stayed open at the driver";
    EXPECT_EQ(session.host.intPointer, 0);
    const std::vector<std::string> arrBoxes = session.host.TakeBoxes();
    if (written.fDone) {
      EXPECT_EQ(Held(), sent);
    } else {
      ++unchanged;
      EXPECT_EQ(Held(), before);
      EXPECT_TRUE(!written.strReasons.empty() || !arrBoxes.empty()) << "nobody was told";
    }
    EXPECT_TRUE(WriteSetup(*session.instr, sent).fDone) << "the second try";
    EXPECT_EQ(Held(), sent);
  }
  std::cout << calls << " calls failed once each: " << unchanged << " loads refused with the instrument unchanged, "
            << calls - unchanged << " complete all the same\n";
  // Not the abort before the begin and the polls of warnings behind the commit.
  EXPECT_EQ(unchanged, 120U);
}

TEST_F(SetupFaults, WhicheverCallOfAReadFailsTheSetupIsAsItWas) {
  tarvik::Setup read;
  const std::size_t calls = CountCalls([&] { return ReadSetup(*session.instr, read); });
  for (std::size_t k = 1; k <= calls; ++k) {
    SCOPED_TRACE(k);
    Open();
    tarvik::Setup setup = SampleSetup();
    session.driver.FailAt(static_cast<int>(k), TheFailure);
    const bool fRead = ReadSetup(*session.instr, setup);
    session.driver.ClearFaults();
    EXPECT_THAT(session.host.TakeBoxes(), Not(IsEmpty()));
    if (fRead) {
      // Only the options may be missing.
      EXPECT_EQ(setup.Instrument.strInstOptions, " - ");
    } else {
      EXPECT_EQ(setup, SampleSetup());
    }
  }
  std::cout << calls << " calls failed once each\n";
}

}  // namespace
}  // namespace tarvik::test
