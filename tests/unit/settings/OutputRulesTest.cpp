#include "settings/OutputRules.h"

#include <gtest/gtest.h>

namespace tarvik::test {
namespace {

TEST(OutputRules, EvenOptionsTurnOnAndOddOnesOff) {
  for (const Integer intOn : {Integer{0}, Integer{2}}) EXPECT_TRUE(TurnsOutputOn(intOn)) << intOn;
  for (const Integer intOff : {Integer{1}, Integer{3}}) EXPECT_FALSE(TurnsOutputOn(intOff)) << intOff;
}

TEST(OutputRules, ASwitchOfAChannelThatTheInstrumentLacksIsNotSent) {
  EXPECT_TRUE(CanSwitchOutput(1, 1));
  EXPECT_FALSE(CanSwitchOutput(2, 1));
  for (const Integer intChan : {Integer{1}, Integer{2}}) EXPECT_TRUE(CanSwitchOutput(intChan, 2)) << intChan;
}

TEST(OutputRules, WithoutASessionTheInstrumentClassAnswersForEachChannel) {
  for (const Integer intChan : {Integer{1}, Integer{2}}) EXPECT_TRUE(CanSwitchOutput(intChan, 0)) << intChan;
}

}  // namespace
}  // namespace tarvik::test
