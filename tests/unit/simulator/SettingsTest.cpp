#include "common/Settings.h"

#include <gtest/gtest.h>

namespace tarvik::driver {
namespace {

using Bytes = std::vector<Byte>;

TEST(ChannelLevels, OffsetComesFirstAndAmplitudeSecondInFormat0) {
  ChannelLevels levels;
  levels.Set(eLevelHighLow, eTypeVoltage, -0.75, -1.75);
  EXPECT_EQ(std::make_pair(-1.25, 1.0), levels.Get(eLevelOffsetAmplitude));
  levels.Set(eLevelOffsetAmplitude, eTypeVoltage, 1.0, 3.0);
  EXPECT_EQ(2.5, levels.dblHigh);
  EXPECT_EQ(-0.5, levels.dblLow);
  EXPECT_EQ(std::make_pair(2.5, -0.5), levels.Get(eLevelHighLow));
}

TEST(ChannelLevels, ReadAndWrittenBackInFormat0AreTheSame) {
  ChannelLevels levels;
  levels.Set(eLevelHighLow, eTypeCurrent, 0.0625, -0.03125);
  const auto [dblOffset, dblAmplitude] = levels.Get(eLevelOffsetAmplitude);
  ChannelLevels again;
  again.Set(eLevelOffsetAmplitude, eTypeCurrent, dblOffset, dblAmplitude);
  EXPECT_EQ(levels, again);
}

TEST(ChannelLevels, RefuseAnUnknownFormat) {
  ChannelLevels levels;
  EXPECT_THROW(levels.Set(2, eTypeVoltage, 1, 0), Rejected);
  EXPECT_THROW(levels.Get(-1), Rejected);
  EXPECT_EQ(ChannelLevels{}, levels);
}

TEST(ChannelTiming, DelayBlockDecidesOverThePulseType) {
  ChannelTiming timing;
  timing.SetDoubleDelay(300e-9);
  EXPECT_TRUE(timing.IsDouble());
  EXPECT_EQ(300e-9, timing.DelayInForce());
  timing.SetSingleDelay(5e-9);
  EXPECT_FALSE(timing.IsDouble());
  EXPECT_EQ(5e-9, timing.DelayInForce());
}

TEST(ChannelTiming, SecondPulseMovesBehindTheFirstWhenTheChannelBecomesDouble) {
  ChannelTiming timing;
  timing.dblWidth = 400e-9;
  timing.SetPulseType(eTypeDouble);
  EXPECT_EQ(400e-9, timing.DelayInForce());
}

TEST(ChannelTiming, CoupledTrailingEdgeFollowsTheLeadingEdge) {
  ChannelTiming timing;
  timing.dblTrailing = 7e-9;
  timing.dblLeading = 3e-9;
  EXPECT_EQ(3e-9, timing.TrailingInForce());
  timing.fCoupled = false;
  EXPECT_EQ(7e-9, timing.TrailingInForce());
}

TEST(ModeSettings, OpenSelectorsKeepWhatTheInstrumentHas) {
  ModeSettings mode;
  mode.SetPeriod(eSourceOscillator, eKeepSlope);
  mode.SetArming(eKeepArmingSource, eKeepSlope);
  EXPECT_EQ(ModeSettings{}, mode);
}

TEST(ModeSettings, PllTakesPeriodOrFrequencyWhileItArms) {
  ModeSettings mode;
  mode.SetArming(eArmPll, eKeepSlope);
  mode.SetPll(ePllPeriod, 0.5e-6);
  EXPECT_DOUBLE_EQ(2e6, mode.dblPllFrequency);
  mode.SetPll(ePllFrequency, 3e6);
  EXPECT_EQ(3e6, mode.dblPllFrequency);
  mode.SetPll(eKeepSlope, 7);
  EXPECT_EQ(3e6, mode.dblPllFrequency);
  mode.SetArming(eArmExternal, eKeepSlope);
  mode.SetPll(ePllFrequency, 9e6);
  EXPECT_EQ(3e6, mode.dblPllFrequency);
}

TEST(ModeSettings, GoingToContinuousFreesThePll) {
  ModeSettings mode;
  mode.SetMode(eTriggerTriggered, ePulseBurst);
  mode.SetArming(eArmPll, eKeepSlope);
  mode.SetMode(eTriggerContinuous, ePulseStream);
  EXPECT_EQ(eArmExternal, mode.lngArmSource);
}

TEST(PatternRow, StartsWith16Zeros) {
  const PatternRow row;
  EXPECT_EQ(16, row.Length());
  EXPECT_EQ((Bytes{0, 0}), row.Read());
}

TEST(PatternRow, TakesExactlyTheBitsOfTheLength) {
  PatternRow row;
  row.Write(Bytes{0xFF, 0xFF}, 16);
  row.Write(Bytes{0x00, 0x00}, 9);
  EXPECT_EQ(9, row.Length());
  EXPECT_EQ((Bytes{0x00, 0x00}), row.Read());
  row.Write(Bytes{0xA5}, 8);
  EXPECT_EQ((Bytes{0xA5}), row.Read());
  row.Write(Bytes{0xFF}, 3);
  EXPECT_EQ((Bytes{0xE0}), row.Read());
  row.Write(Bytes{0xFF}, 1);
  EXPECT_EQ((Bytes{0x80}), row.Read());
}

TEST(PatternRow, HoldsAllOf16384Bits) {
  PatternRow row;
  Bytes bytes(2048, 0x5A);
  bytes.back() = 0x01;
  row.Write(bytes, 16384);
  EXPECT_EQ(bytes, row.Read());
}

TEST(PatternRow, RefusesLengthsOutOfRangeAndTooFewBytes) {
  PatternRow row;
  EXPECT_THROW(row.Write(Bytes{1}, 0), Rejected);
  EXPECT_THROW(row.Write(Bytes(2049), 16385), Rejected);
  EXPECT_THROW(row.Write(Bytes{1}, 9), Rejected);
  EXPECT_EQ(PatternRow{}, row);
}

TEST(Settings, OneChannelInstrumentHasNoSecondRowButAStrobe) {
  InstrumentDescription one;
  one.lngChannels = 1;
  Settings settings;
  EXPECT_THROW(settings.Row(2, one), Rejected);
  EXPECT_NO_THROW(settings.Row(3, one));
  EXPECT_THROW(settings.Row(0, one), Rejected);
  EXPECT_THROW(settings.Row(4, one), Rejected);
  EXPECT_EQ(settings.RowInForce(2, one).Read(), std::vector<Byte>(2, 0)) << "a missing row reads as zeros";
  EXPECT_THROW(settings.RowInForce(4, one), Rejected);
}

}  // namespace
}  // namespace tarvik::driver
