#include "ProgramFixture.h"

namespace tarvik::test {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;

class OutputsOff : public Program {
 protected:
  void Open() const { User().OpenFirst(); }
  void PressKey() const { QTest::keyClick(window.get(), Qt::Key_F12); }
};

TEST_F(OutputsOff, OneKeySwitchesAllOffAsksNothingAndTellsWhatItDid) {
  Start();
  Open();
  driver.TakeTrace();
  host.arrEntries.clear();
  PressKey();
  const auto arrCalls = driver.TakeTrace();
  EXPECT_THAT(arrCalls, Contains(HasSubstr(".SetOutput(")).Times(2));
  EXPECT_THAT(arrCalls, Contains(HasSubstr(".SetComplementOutput(")).Times(2));
  EXPECT_THAT(host.TakeBoxes(), IsEmpty());
  EXPECT_THAT(Message(),
              MatchesRegex("All outputs of channels 1 and 2 were switched off at [0-9][0-9]:[0-9][0-9]:[0-9][0-9]\\."));
}

TEST_F(OutputsOff, OfAnInstrumentWithOneChannelTellsOfThatChannel) {
  driver.Configure("Alpha", {{"channels", 1}});
  Start();
  Open();
  PressKey();
  EXPECT_THAT(Message(), HasSubstr("All outputs of channel 1 were switched off"));
}

TEST_F(OutputsOff, WithoutASessionSaysPlainlyThatNothingHappened) {
  Start();
  driver.TakeTrace();
  PressKey();
  EXPECT_THAT(driver.TakeTrace(), IsEmpty());
  EXPECT_THAT(host.TakeBoxes(), IsEmpty());
  EXPECT_EQ(Message(), "No instrument is open: no output was switched.");
}

TEST_F(OutputsOff, OneThatFailsIsNotToldAsDone) {
  Start();
  Open();
  driver.FailMatching("IChannelLevels.SetOutput", 1, {-2147221503, "relay stuck"});
  PressKey();
  EXPECT_THAT(Message(), HasSubstr("Not every output could be switched off at "));
}

TEST_F(OutputsOff, WorksWhileANumberIsBeingTyped) {
  Start();
  Open();
  User().ShowPage(ePageTiming);
  User().TypeWithoutEnter("esWidth(0)", "60");
  User().PressIn("esWidth(0)", Qt::Key_F12);
  EXPECT_THAT(Message(), HasSubstr("were switched off at "));
  EXPECT_EQ(User().Field("esWidth(0)").findChild<QLineEdit *>()->text(), "60");
}

}  // namespace
}  // namespace tarvik::test
