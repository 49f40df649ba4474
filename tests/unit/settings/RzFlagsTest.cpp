#include "settings/RzFlags.h"

#include <gtest/gtest.h>

namespace tarvik::test {
namespace {

struct Heard {
  Long eType1, eType2;
  bool fRz1, fRz2;
  bool fSetGroup, fUpdateCombos;
  bool operator==(const Heard &) const = default;
};

class RzFlagsTest : public testing::Test {
 protected:
  RzFlagsTest() {
    flags.Changed.Connect([this](const RzFlags::Change &change) {
      arrHeard.push_back(
          {change.eType[1], change.eType[2], flags[1], flags[2], change.fSetGroup, change.fUpdateCombos});
    });
  }

  RzFlags flags;
  std::vector<Heard> arrHeard;
};

TEST_F(RzFlagsTest, StartAsNonReturnToZero) {
  EXPECT_FALSE(flags[1]);
  EXPECT_FALSE(flags[2]);
  EXPECT_TRUE(arrHeard.empty());
}

TEST_F(RzFlagsTest, AreInForceWhenAListenerIsTold) {
  flags.SetRzFromFlags(True, False, False, True);
  EXPECT_EQ(arrHeard, (std::vector<Heard>{{1, 0, true, false, false, true}}));
}

TEST_F(RzFlagsTest, PassOnWhichSidesAreWritten) {
  flags.SetRzState(0, 1, True, False);
  EXPECT_EQ(arrHeard, (std::vector<Heard>{{0, 1, false, true, true, false}}));
}

TEST_F(RzFlagsTest, AnUnknownFormatIsNonReturnToZeroAndPassedOnAsItIs) {
  flags.SetRzState(7, 1, True, True);
  EXPECT_EQ(arrHeard, (std::vector<Heard>{{7, 1, false, true, true, true}}));
}

TEST_F(RzFlagsTest, TellAlsoOfAWriteThatChangesNothing) {
  flags.SetRzFromFlags(False, False, True, True);
  EXPECT_EQ(arrHeard.size(), 1U);
}

TEST_F(RzFlagsTest, ReadByReferenceAreInForceAndToldByTheNextWrite) {
  flags.Array()[2] = True;
  EXPECT_TRUE(flags[2]);
  EXPECT_TRUE(arrHeard.empty());
}

TEST_F(RzFlagsTest, OtherChannelsAreABoundsFailure) {
  EXPECT_THROW(static_cast<void>(flags[0]), RunTimeError);
  EXPECT_THROW(static_cast<void>(flags[3]), RunTimeError);
}

TEST_F(RzFlagsTest, AListenerMayChangeThemWhileItIsTold) {
  // As an editor does whose option raises its click while the flags are written to it.
  int intEchoes = 0;
  flags.Changed.Connect([&](const RzFlags::Change &change) {
    if (change.fSetGroup) {
      ++intEchoes;
      flags.SetRzFromFlags(flags[1], flags[2], False, True);
    }
  });
  flags.SetRzState(1, 0, True, False);
  EXPECT_EQ(intEchoes, 1);
  EXPECT_EQ(arrHeard, (std::vector<Heard>{{1, 0, true, false, true, false}, {1, 0, true, false, false, true}}));
}

}  // namespace
}  // namespace tarvik::test
