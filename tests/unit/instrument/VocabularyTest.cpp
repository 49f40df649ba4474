#include "instrument/Vocabulary.h"

#include <gmock/gmock.h>

#include <type_traits>
#include <vector>

#include "instrument/KolvenDriver.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using Numbers = std::vector<Long>;

template <class Value, class... Types>
constexpr bool AreCarriedAs() {
  return (std::is_same_v<std::underlying_type_t<Types>, Value> && ...);
}

static_assert(
    AreCarriedAs<Long, TriggerMode, PulseMode, PulseType, SignalFormat, PeriodSource, Slope, VxiLine, ArmingSource,
                 PllFormat, KeptSelector, PllReferenceSource, OutputLevel, OutputType, OutputPolarity, ChannelMath,
                 EdgeCoupling, AuxOutput, OutLevel, VxiTriggerSource, PatternRowNumber, Functionality, InstrCommands,
                 LevelFormatEnum, PeriodPrecedence, kolven::TransactionCommand>());
static_assert(AreCarriedAs<Integer, InstrKind>());

TEST(Vocabulary, ModeAndTriggerHaveTheDriversNumbers) {
  EXPECT_THAT((Numbers{eTriggerContinuous, eTriggerTriggered, eTriggerGated, eTriggerExtWidth}),
              ElementsAre(0, 1, 2, 3));
  EXPECT_THAT((Numbers{ePulseStream, ePulseBurst, ePulsePattern}), ElementsAre(0, 1, 2));
  EXPECT_THAT((Numbers{eTypeSingle, eTypeDouble}), ElementsAre(1, 2));
  EXPECT_THAT((Numbers{eFormatNrz, eFormatRz}), ElementsAre(0, 1));
  EXPECT_THAT((Numbers{eSourceOscillator, eSourcePll, eSourceClkIn}), ElementsAre(0, 1, 2));
  EXPECT_THAT((Numbers{eSlopeFalling, eSlopeRising, eSlopeBoth}), ElementsAre(0, 1, 2));
  EXPECT_THAT((Numbers{eArmPll, eArmExternal, eArmManual}), ElementsAre(1, 3, 4));
  EXPECT_THAT((Numbers{eVxiEclt0, eVxiEclt1, eVxiTtlt0, eVxiTtlt7}), ElementsAre(5, 6, 7, 14));
  EXPECT_THAT((Numbers{ePllPeriod, ePllFrequency}), ElementsAre(0, 1));
  EXPECT_THAT((Numbers{eKeepArmingSource, eKeepSlope, eKeepPllFormat}), ElementsAre(0, 3, 3));
  EXPECT_THAT((Numbers{ePllRefClkIn, ePllRefInternal}), ElementsAre(0, 1));
}

TEST(Vocabulary, LevelsAndOutputsHaveTheDriversNumbers) {
  EXPECT_THAT((Numbers{eLevelOffsetAmplitude, eLevelHighLow}), ElementsAre(0, 1));
  EXPECT_THAT((Numbers{eTypeVoltage, eTypeCurrent}), ElementsAre(0, 1));
  EXPECT_THAT((Numbers{ePolarityNormal, ePolarityComplement}), ElementsAre(0, 1));
  EXPECT_THAT((Numbers{eMathSeparate, eMathAdded}), ElementsAre(0, 1));
  EXPECT_THAT((Numbers{eEdgesIndependent, eEdgesCoupled}), ElementsAre(0, 1));
  EXPECT_THAT((Numbers{eOutTrigger, eOutStrobe}), ElementsAre(1, 2));
  EXPECT_THAT((Numbers{eOutLevelTTL, eOutLevelECL}), ElementsAre(0, 1));
  EXPECT_THAT((Numbers{eVxiSourceTrigger, eVxiSourceStrobe}), ElementsAre(1, 2));
  EXPECT_THAT((Numbers{ePatternChan1, ePatternChan2, ePatternStrobe}), ElementsAre(1, 2, 3));
}

TEST(Vocabulary, CapabilityBitsHaveTheDriversNumbers) {
  EXPECT_THAT((Numbers{eLacksTrailingEdge, eLacksImpedance, eLacksLoadCompensation, eLacksChannelMath, eLacksComplement,
                       eLacksVxiSource, eLacksVxiEnable, eLacksVxiLines, eLacksAnyVxi, eLacksFreeLeadingEdge}),
              ElementsAre(4, 64, 128, 256, 512, 1024, 2048, 4096, 7168, 16384));
  EXPECT_EQ(AllFunctionality, 24516);
}

TEST(Vocabulary, CommandsFormatsAndPrecedencesHaveTheirNumbers) {
  using namespace kolven;
  EXPECT_THAT((Numbers{TransactionBegin, TransactionCommit, TransactionAbort}), ElementsAre(0, 1, 2));
  EXPECT_THAT((Numbers{ICReset, ICSelftest, ICCalibrate, ICRefresh, ICOptions}), ElementsAre(0, 1, 2, 3, 4));
  EXPECT_THAT((Numbers{eFormatTTL, eFormatHighLow, eFormatOffsetAmpl, eFormatECL}), ElementsAre(0, 1, 2, 3));
  EXPECT_THAT((Numbers{ePrePeriod, ePreFrequency, ePreWidth, ePreDelay}), ElementsAre(0, 1, 2, 3));
  EXPECT_THAT((Numbers{eKindBox, eKindSlot, eKindSlotOnController}), ElementsAre(1, 2, 3));
}

}  // namespace
}  // namespace tarvik::test
