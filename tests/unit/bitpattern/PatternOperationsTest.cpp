#include "bitpattern/PatternOperations.h"

#include <gmock/gmock.h>

#include "BitText.h"
#include "RecordingHost.h"
#include "TestName.h"
#include "support/modGlobals.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char *Bounds2To16384 = "box stop: Please enter a number between 2 and 16384";
constexpr const char *Bounds7To14 = "box stop: Please enter a number between 7 and 14";

/// An instrument that marks what it was asked for.
class MarkingInstr : public InstrReference {
 public:
  Boolean GetVerboseErrorMsg() override { return False; }
  Boolean CalcPRBS(Long lngStartAddr, Long lngLastAddr, Long lngBase, ByteArray &arr) override {
    arrCalls.push_back({lngStartAddr, lngLastAddr, lngBase, arr.LowerBound(), arr.Count()});
    if (!fOnline) return False;
    if (arrHandBack) {
      arr = *arrHandBack;
      return True;
    }
    for (Long a = lngStartAddr; a <= lngLastAddr; ++a) SetBit(arr, a);
    return True;
  }

  bool fOnline = true;
  std::optional<ByteArray> arrHandBack;
  std::vector<std::vector<Long>> arrCalls;
};

class PatternOperationsTest : public testing::Test {
 protected:
  PatternOperationsTest() { gobjInstr() = m_instr; }
  ~PatternOperationsTest() override { gobjInstr().reset(); }

  std::string Chan1() { return BitsOf(m_store.Chan1(), m_store.Length()); }
  std::string Chan2() { return BitsOf(m_store.Chan2(), m_store.Length()); }
  std::string Strobe() { return BitsOf(m_store.Strobe(), m_store.Length()); }
  std::vector<Long> Generator(Long lngCode) {
    return {m_store.RowOf(lngCode)->lngGenerator, m_store.RowOf(lngCode)->lngGenParam};
  }
  void GrowTo(Long lngLength) {
    const Long lngOld = m_store.Length();
    m_store.SetLength(lngLength);
    m_operations.Grow(lngOld);
  }

  RecordingHost m_host;
  std::shared_ptr<MarkingInstr> m_instr = std::make_shared<MarkingInstr>();
  PatternStore m_store;
  PatternOperations m_operations{m_store};
};

TEST_F(PatternOperationsTest, MenuHasNineOperationsInOrder) {
  std::vector<std::string> arrKeys, arrCaptions;
  for (const auto &operation : PatternOperations::Operations()) {
    arrKeys.emplace_back(operation.strKey);
    arrCaptions.emplace_back(operation.strCaption);
  }
  EXPECT_THAT(arrKeys, ElementsAre("Fill0", "Fill1", "Invert", "SetFirstBitOnly", "SetLastBitOnly", "InsertBit",
                                   "DeleteBit", "Clock/n", "PRBS"));
  EXPECT_THAT(arrCaptions, ElementsAre("Fill 0", "Fill1", "Invert", "Set First Bit Only", "Set Last Bit Only",
                                       "Insert Bit", "Delete Bit", "Clock / n", "PRBS 2^n - 1"));
}

TEST_F(PatternOperationsTest, UnknownKeyIsAnInvalidCase) {
  m_operations.RunByKey("fill0", 1, 1);
  EXPECT_THAT(m_host.TakeLines(), ElementsAre("box stop: Invalid case"));
}

TEST_F(PatternOperationsTest, FillStopsShortOfASingleLastByte) {
  m_store.SetLength(16);
  m_operations.RunByKey("Fill1", 1, 3);
  EXPECT_EQ(Chan1(), "00111111 00000000");
}

TEST_F(PatternOperationsTest, FillOnBothFillsBothChannelsAndNotesBoth) {
  m_store.SetLength(8);
  m_operations.SetGenerator(4, 3, 5);
  m_operations.SetGenerator(8, 2, 0);
  m_operations.RunByKey("Fill1", 4, 6);
  EXPECT_EQ(Chan1(), "00000111");
  EXPECT_EQ(Chan2(), "00000111");
  EXPECT_EQ(Strobe(), "00000000");
  EXPECT_THAT(Generator(1), ElementsAre(0, 0));
  EXPECT_THAT(Generator(2), ElementsAre(0, 0));
  EXPECT_THAT(Generator(8), ElementsAre(2, 0));
}

TEST_F(PatternOperationsTest, InvertInsertAndDeleteKeepTheGenerator) {
  m_store.SetLength(8);
  m_operations.SetGenerator(1, 3, 4);
  for (const char *strKey : {"Invert", "InsertBit", "DeleteBit"}) {
    m_operations.RunByKey(strKey, 1, 2);
    EXPECT_THAT(Generator(1), ElementsAre(3, 4)) << strKey;
  }
}

TEST_F(PatternOperationsTest, FirstAndLastBitOnlyDoNotLookAtTheAddress) {
  m_store.SetLength(11);
  m_operations.RunByKey("Fill1", 8, 1);
  m_operations.RunByKey("SetFirstBitOnly", 8, 7);
  EXPECT_EQ(Strobe(), "10000000 000");
  EXPECT_THAT(Generator(8), ElementsAre(1, 0));
  m_operations.RunByKey("SetLastBitOnly", 8, 7);
  EXPECT_EQ(Strobe(), "00000000 001");
  EXPECT_THAT(Generator(8), ElementsAre(2, 0));
}

TEST_F(PatternOperationsTest, ClockOfTwoAndThree) {
  m_store.SetLength(6);
  m_host.arrInputAnswers = {"2"};
  m_operations.RunByKey("Clock/n", 1, 1);
  EXPECT_EQ(Chan1(), "101010");
  EXPECT_THAT(Generator(1), ElementsAre(3, 2));
  m_host.arrInputAnswers = {"3"};
  m_operations.RunByKey("Clock/n", 1, 1);
  EXPECT_EQ(Chan1(), "100100");
  EXPECT_THAT(Generator(1), ElementsAre(3, 3));
}

TEST_F(PatternOperationsTest, ClockFromAnAddressKeepsThePhaseOfAddressOne) {
  m_store.SetLength(6);
  m_operations.RunByKey("Fill1", 1, 1);
  m_host.arrInputAnswers = {"4"};
  m_operations.RunByKey("Clock/n", 1, 4);
  EXPECT_EQ(Chan1(), "111011");
}

TEST_F(PatternOperationsTest, ClockClearsByTheSplitOfAFill) {
  m_store.SetLength(16);
  m_operations.RunByKey("Fill1", 1, 1);
  m_host.arrInputAnswers = {"4"};
  m_operations.RunByKey("Clock/n", 1, 3);
  EXPECT_EQ(Chan1(), "11001100 11111111") << "the last byte was not cleared";
}

TEST_F(PatternOperationsTest, ClockAsksUntilTheEntryIsGood) {
  m_store.SetLength(6);
  m_host.arrInputAnswers = {"1", "16385", "abc", " ", "1e400", "2.4"};
  m_operations.RunByKey("Clock/n", 1, 1);
  EXPECT_THAT(m_host.TakeBoxes(),
              ElementsAre(Bounds2To16384, Bounds2To16384, Bounds2To16384, Bounds2To16384, Bounds2To16384));
  EXPECT_EQ(Chan1(), "101010");
  EXPECT_THAT(Generator(1), ElementsAre(3, 2));
}

TEST_F(PatternOperationsTest, DialogsHaveTheirPromptAndTitle) {
  m_operations.RunByKey("Clock/n", 1, 1);
  m_operations.RunByKey("PRBS", 1, 1);
  ASSERT_EQ(m_host.arrEntries.size(), 2u);
  EXPECT_EQ(m_host.arrEntries[0].strText, "Enter the value for 'n': ");
  EXPECT_EQ(m_host.arrEntries[0].strTitle, "Clock/n");
  EXPECT_EQ(m_host.arrEntries[0].strDefault, "");
  EXPECT_EQ(m_host.arrEntries[1].strText, "Enter the value for 'n': ");
  EXPECT_EQ(m_host.arrEntries[1].strTitle, "PRBS 2^n-1");
}

TEST_F(PatternOperationsTest, CancelKeepsPatternAndGenerator) {
  m_store.SetLength(8);
  m_operations.RunByKey("SetFirstBitOnly", 1, 1);
  m_operations.RunByKey("Clock/n", 1, 1);
  m_operations.RunByKey("PRBS", 1, 1);
  EXPECT_EQ(Chan1(), "10000000");
  EXPECT_THAT(Generator(1), ElementsAre(1, 0));
  EXPECT_THAT(m_instr->arrCalls, IsEmpty());
}

TEST_F(PatternOperationsTest, PrbsComesFromTheInstrument) {
  m_store.SetLength(20);
  m_host.arrInputAnswers = {"6", "15", "7"};
  m_operations.RunByKey("PRBS", 4, 5);
  EXPECT_THAT(m_host.TakeBoxes(), ElementsAre(Bounds7To14, Bounds7To14));
  EXPECT_THAT(m_instr->arrCalls, ElementsAre(ElementsAre(5, 20, 7, 1, 2048), ElementsAre(5, 20, 7, 1, 2048)));
  EXPECT_EQ(Chan1(), "00001111 11111111 1111");
  EXPECT_EQ(Chan2(), "00001111 11111111 1111");
  EXPECT_EQ(Strobe(), "00000000 00000000 0000");
  EXPECT_THAT(Generator(1), ElementsAre(4, 7));
}

TEST_F(PatternOperationsTest, PrbsOfflineKeepsThePatternAndNotesTheGenerator) {
  m_instr->fOnline = false;
  m_store.SetLength(8);
  m_host.arrInputAnswers = {"14"};
  m_operations.RunByKey("PRBS", 8, 1);
  EXPECT_EQ(Strobe(), "00000000");
  EXPECT_THAT(Generator(8), ElementsAre(4, 14));
  EXPECT_THAT(m_host.TakeBoxes(), IsEmpty());
}

TEST_F(PatternOperationsTest, PrbsWithoutAnyInstrumentClassChangesNothing) {
  gobjInstr().reset();
  m_store.SetLength(8);
  m_operations.Prbs(1, 1, 7);
  EXPECT_EQ(Chan1(), "00000000");
}

TEST_F(PatternOperationsTest, ArrayHandedBackInAnotherSizeCannotShrinkTheStream) {
  m_store.SetLength(24);
  m_operations.Fill1(1, 1);
  m_instr->arrHandBack = ByteArray(0, {0x00, 0x0F});
  m_operations.Prbs(1, 1, 7);
  EXPECT_EQ(m_store.Chan1().Count(), 2048);
  EXPECT_EQ(m_store.Chan1().LowerBound(), 1);
  EXPECT_EQ(Chan1(), "00000000 00001111 11111111");
}

TEST_F(PatternOperationsTest, GrowthContinuesTheLastLevelAfterFill) {
  m_store.SetLength(8);
  m_operations.Fill1(1, 1);
  SetBit(m_store.Strobe(), 8);
  GrowTo(12);
  EXPECT_EQ(Chan1(), "11111111 1111");
  EXPECT_EQ(Chan2(), "00000000 0000");
  EXPECT_EQ(Strobe(), "00000001 1111") << "a last bit set by hand goes on";
}

TEST_F(PatternOperationsTest, GrowthOverwritesOldBitsBehindTheLength) {
  m_store.SetLength(8);
  m_store.Chan1()[2] = 0xFF;
  GrowTo(12);
  EXPECT_EQ(Chan1(), "00000000 0000");
}

TEST_F(PatternOperationsTest, GrowthByFillLeavesASingleLastByte) {
  m_store.SetLength(3);
  m_operations.Fill1(1, 1);
  m_store.Chan1()[1] = 0xE0;
  GrowTo(16);
  EXPECT_EQ(Chan1(), "11111111 00000000");
}

TEST_F(PatternOperationsTest, GrowthRebuildsFirstAndLastBit) {
  m_store.SetLength(8);
  m_operations.SetFirstBitOnly(1);
  m_operations.SetLastBitOnly(2);
  GrowTo(12);
  EXPECT_EQ(Chan1(), "10000000 0000");
  EXPECT_EQ(Chan2(), "00000000 0001");
}

TEST_F(PatternOperationsTest, GrowthSetsTheClockFromAddressOneAndClearsNothing) {
  m_store.SetLength(8);
  m_operations.Clock(1, 1, 4);
  SetBit(m_store.Chan1(), 4);
  ClearBit(m_store.Chan1(), 5);
  m_store.Chan1()[2] = 0x00;
  GrowTo(12);
  EXPECT_EQ(Chan1(), "11011100 1100");
}

TEST_F(PatternOperationsTest, GrowthAsksForPrbsOverTheWholeLength) {
  m_store.SetLength(8);
  m_operations.Prbs(8, 5, 9);
  m_instr->arrCalls.clear();
  GrowTo(12);
  EXPECT_THAT(m_instr->arrCalls, ElementsAre(ElementsAre(1, 12, 9, 1, 2048)));
}

TEST_F(PatternOperationsTest, GeneratorsOfAnUnknownCodeOrKind) {
  m_operations.SetGenerator(3, 1, 0);
  EXPECT_THAT(m_host.TakeLines(), ElementsAre("box stop: Illegal case"));
  m_operations.ApplyGenerator(3, 1, False);
  EXPECT_THAT(m_host.TakeLines(), ElementsAre("box stop: Illegal Case"));
  m_operations.SetGenerator(1, 5, 0);
  m_operations.ApplyGenerator(1, 1, False);
  EXPECT_THAT(m_host.TakeLines(), ElementsAre("box stop: Illegal Case"));
}

TEST_F(PatternOperationsTest, ApplyOnBothFollowsEachRowsOwnGenerator) {
  m_store.SetLength(8);
  m_operations.SetGenerator(1, 1, 0);
  m_operations.SetGenerator(2, 3, 2);
  m_operations.ApplyGenerator(4, 1, True);
  EXPECT_EQ(Chan1(), "10000000");
  EXPECT_EQ(Chan2(), "10101010");
}

struct Entry {
  const char *strEntry;
  bool fOk;
};

class ValidateNumberTest : public testing::TestWithParam<Entry> {
 protected:
  RecordingHost m_host;
};

TEST_P(ValidateNumberTest, PassesWhatRoundsIntoTheBounds) {
  Boolean fOk = !GetParam().fOk;
  PatternOperations::ValidateNumber(GetParam().strEntry, 2, 16384, fOk);
  EXPECT_EQ(static_cast<bool>(fOk), GetParam().fOk) << '"' << GetParam().strEntry << '"';
  EXPECT_EQ(m_host.TakeBoxes().size(), GetParam().fOk ? 0u : 1u);
}

INSTANTIATE_TEST_SUITE_P(Entries, ValidateNumberTest,
                         testing::Values(Entry{"", true}, Entry{"2", true}, Entry{"16384", true}, Entry{"1.5", true},
                                         Entry{"16384.4", true}, Entry{"16384.5", true}, Entry{" 5 ", true},
                                         Entry{"1e3", true}, Entry{"1", false}, Entry{"0", false}, Entry{"1.49", false},
                                         Entry{"16385", false}, Entry{"16384.6", false}, Entry{"-2", false},
                                         Entry{"abc", false}, Entry{" ", false}, Entry{"1e10", false},
                                         Entry{"1e400", false}, Entry{"5x", false}, Entry{"0x10", false}),
                         [](const testing::TestParamInfo<Entry> &test) {
                           return *test.param.strEntry ? TestName(test.param.strEntry) : "Empty";
                         });

TEST_F(PatternOperationsTest, EntriesFollowTheHostsSeparator) {
  m_host.chSeparator = ',';
  Boolean fOk;
  PatternOperations::ValidateNumber("2,4", 2, 16384, fOk);
  EXPECT_TRUE(fOk);
  PatternOperations::ValidateNumber("2.4", 2, 16384, fOk);
  EXPECT_FALSE(fOk);
  m_store.SetLength(6);
  m_host.arrInputAnswers = {"2,6"};
  m_operations.RunByKey("Clock/n", 1, 1);
  EXPECT_THAT(Generator(1), ElementsAre(3, 3));
}

}  // namespace
}  // namespace tarvik::test
