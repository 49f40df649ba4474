#include <gtest/gtest.h>

#include <bit>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "EntryMaker.h"
#include "engrspin/EngrNumber.h"
#include "support/RunTimeError.h"

namespace tarvik::test {
namespace {

std::uint64_t Asked(const char *strVariable, std::uint64_t lngDefault) {
  const char *strValue = std::getenv(strVariable);
  return strValue ? std::strtoull(strValue, nullptr, 10) : lngDefault;
}

/// A field's number and the rules that it follows.
struct RuledNumber {
  FieldRules rules;
  EngrNumber number;
};

EngrNumber NumberWith(const FieldRules &rules) {
  EngrNumber number;
  number.InitProperties();
  number.SetMin(-1.7976931348623157e308);
  number.SetMax(1.7976931348623157e308);
  number.SetMinExponent(rules.intMinExponent);
  number.SetMaxExponent(rules.intMaxExponent);
  number.SetBaseUnit(rules.strUnit);
  number.SetDecimal(rules.chSeparator);
  number.SetEngrMode(rules.fPrefixes);
  // Showing a number chooses the prefix.
  number.Assign(std::strtod(("2e" + std::to_string(rules.intShownExponent)).c_str(), nullptr));
  number.ConvertValue2Engr();
  EXPECT_EQ(number.Exponent(), rules.intShownExponent);
  return number;
}

std::vector<RuledNumber> AllNumbers() {
  std::vector<FieldRules> arrRules;
  for (int intShown = -12; intShown <= 12; intShown += 3) {
    arrRules.push_back({"V", -12, 12, intShown, '.'});
    arrRules.push_back({"Hz", -12, 12, intShown, ','});
    // The unit is the letter of a prefix.
    arrRules.push_back({"m", -12, 12, intShown, '.'});
  }
  arrRules.push_back({"s", -9, 0, -9, '.'});
  arrRules.push_back({"s", -9, 0, 0, ','});
  arrRules.push_back({"Ohm", 0, 6, 3, '.'});
  arrRules.push_back({"%", 0, 0, 0, '.', false});
  arrRules.push_back({"", 0, 0, 0, ',', false});
  std::vector<RuledNumber> arrNumbers;
  for (const FieldRules &rules : arrRules) arrNumbers.push_back({rules, NumberWith(rules)});
  return arrNumbers;
}

class Numbers : public testing::Test {
 protected:
  /// One entry, made from its place in the row of all.
  void Enter(std::uint64_t lngPlace) {
    RandomNumbers random((m_lngSeed << 40) + lngPlace * 64);
    RuledNumber &ruled = m_arrNumbers[random.Below(m_arrNumbers.size())];
    const std::string strEntry = m_maker.Make(random, ruled.rules);
    const Meaning meaning = MeaningOf(strEntry, ruled.rules);
    if (Agrees(strEntry, meaning, ruled.number)) return;
    ++m_lngMisreads;
    ADD_FAILURE() << "entry " << lngPlace << " of seed " << m_lngSeed << ": " << testing::PrintToString(strEntry)
                  << " with unit \"" << ruled.rules.strUnit << "\", separator " << ruled.rules.chSeparator
                  << ", exponents " << ruled.rules.intMinExponent << " to " << ruled.rules.intMaxExponent
                  << ", on display " << ruled.rules.intShownExponent << ": " << m_strGot;
  }

  bool Agrees(const std::string &strEntry, const Meaning &meaning, EngrNumber &number) {
    const auto lngBefore = std::bit_cast<std::uint64_t>(number.Value());
    try {
      const Entry entry = number.ReadEntry(strEntry);
      m_strGot = "kind " + std::to_string(static_cast<int>(entry.kind)) + ", value " + std::to_string(entry.dblValue);
      switch (entry.kind) {
        case Entry::Kind::Number: return IsTaken(meaning, entry.dblValue, number);
        case Entry::Kind::Empty: return IsRefused(meaning.kind == Meaning::Empty, number, lngBefore, m_lngEmpty);
        case Entry::Kind::Bad: return IsRefused(meaning.kind == Meaning::Bad, number, lngBefore, m_lngBad);
      }
    } catch (const RunTimeError &error) {
      m_strGot = "error " + std::to_string(error.Number());
      if (error.Number() == ErrTypeMismatch)
        return IsRefused(meaning.kind == Meaning::NoNumber, number, lngBefore, m_lngNoNumber);
      return IsRefused(
          error.Number() == ErrOverflow && meaning.kind == Meaning::Number && m_exact.Overflows(meaning.decimal),
          number, lngBefore, m_lngOverflow);
    }
    return false;
  }

  bool IsTaken(const Meaning &meaning, double dblValue, EngrNumber &number) {
    if (meaning.kind != Meaning::Number) return false;
    const Proof proof = m_exact.Check(meaning.decimal, dblValue);
    ++m_arrProofs[static_cast<std::size_t>(proof)];
    // A field holds what it took, down to the smallest magnitude that it has.
    if (std::abs(dblValue) >= number.Smallest()) {
      number.Assign(dblValue);
      if (std::bit_cast<std::uint64_t>(number.Value()) != std::bit_cast<std::uint64_t>(dblValue)) return false;
    }
    return proof != Proof::Misread;
  }

  static bool IsRefused(bool fRightly, const EngrNumber &number, std::uint64_t lngBefore, std::uint64_t &lngCount) {
    ++lngCount;
    return fRightly && std::bit_cast<std::uint64_t>(number.Value()) == lngBefore;
  }

  void Tell(std::chrono::duration<double> took) const {
    const auto proved = [this](Proof proof) { return m_arrProofs[static_cast<std::size_t>(proof)]; };
    const std::uint64_t lngTaken =
        proved(Proof::OneRounding) + proved(Proof::BigIntegers) + proved(Proof::Halfway) + proved(Proof::Misread);
    const std::uint64_t lngRefused = m_lngBad + m_lngNoNumber + m_lngOverflow + m_lngEmpty;
    std::printf("%llu entries of seed %llu in %.1f s: %llu taken, %llu refused, %llu misread\n",
                Shown(lngTaken + lngRefused), Shown(m_lngSeed), took.count(), Shown(lngTaken), Shown(lngRefused),
                Shown(m_lngMisreads));
    std::printf("  taken: %llu proved by one rounded operation, %llu by big integers, of these %llu halfway\n",
                Shown(proved(Proof::OneRounding)), Shown(proved(Proof::BigIntegers) + proved(Proof::Halfway)),
                Shown(proved(Proof::Halfway)));
    std::printf("  refused: %llu bad, %llu no numbers before a good tail, %llu too large, %llu empty\n",
                Shown(m_lngBad), Shown(m_lngNoNumber), Shown(m_lngOverflow), Shown(m_lngEmpty));
  }

  std::uint64_t m_lngMisreads = 0;
  const std::uint64_t m_lngSeed = Asked("TARVIK_NUMBERS_SEED", 1);

 private:
  static unsigned long long Shown(std::uint64_t lngCount) { return lngCount; }

  std::vector<RuledNumber> m_arrNumbers = AllNumbers();
  EntryMaker m_maker;
  ExactDecimal m_exact;
  std::string m_strGot;
  std::array<std::uint64_t, 4> m_arrProofs{};
  std::uint64_t m_lngBad = 0, m_lngNoNumber = 0, m_lngOverflow = 0, m_lngEmpty = 0;
};

TEST_F(Numbers, EveryEntryIsTakenAsTheNearestDoubleOrRefused) {
  const std::uint64_t lngFirst = Asked("TARVIK_NUMBERS_FIRST", 0), lngCount = Asked("TARVIK_NUMBERS", 300'000);
  const auto begin = std::chrono::steady_clock::now();
  for (std::uint64_t i = lngFirst; i < lngFirst + lngCount && m_lngMisreads < 20; ++i) Enter(i);
  Tell(std::chrono::steady_clock::now() - begin);
}

/// The reference itself, on numbers whose rounding is known by hand.
TEST(ExactDecimal, TellsTheNearestDoubleFromItsNeighbours) {
  ExactDecimal exact;
  const Decimal tenth{false, "1", -1}, third{false, "33333333333333333", -17};
  EXPECT_EQ(exact.Check(tenth, 0.1), Proof::OneRounding);
  EXPECT_EQ(exact.Check(tenth, 0x1.999999999999bp-4), Proof::Misread);
  EXPECT_EQ(exact.Check(tenth, -0.1), Proof::Misread);
  EXPECT_EQ(exact.Check(third, 0x1.5555555555555p-2), Proof::BigIntegers);
  EXPECT_EQ(exact.Check(third, 0x1.5555555555556p-2), Proof::Misread);
  EXPECT_EQ(exact.Check(third, 0x1.5555555555554p-2), Proof::Misread);
}

TEST(ExactDecimal, TakesTheEvenOneOfTwoThatAreAsNear) {
  ExactDecimal exact;
  // 2^53 + 1 and 2^53 + 3.
  EXPECT_EQ(exact.Check({false, "9007199254740993", 0}, 9007199254740992.), Proof::Halfway);
  EXPECT_EQ(exact.Check({false, "9007199254740993", 0}, 9007199254740994.), Proof::Misread);
  EXPECT_EQ(exact.Check({false, "9007199254740995", 0}, 9007199254740996.), Proof::Halfway);
  EXPECT_EQ(exact.Check({false, "9007199254740995", 0}, 9007199254740994.), Proof::Misread);
  EXPECT_EQ(exact.Check({false, "90071992547409930001", -4}, 9007199254740994.), Proof::BigIntegers);
}

TEST(ExactDecimal, KnowsTheNarrowSideOfAPowerOfTwo) {
  ExactDecimal exact;
  // A quarter of a bit below 1 is as near to 1 as to its lower neighbour, 1 - 2^-53.
  EXPECT_EQ(exact.Check({false, "99999999999999994448884876874217297881841659545898437500", -56}, 1), Proof::Halfway);
  EXPECT_EQ(exact.Check({false, "99999999999999994448884876874217297881841659545898437499", -56}, 1), Proof::Misread);
  EXPECT_EQ(exact.Check({false, "99999999999999994448884876874217297881841659545898437499", -56}, 0x1.fffffffffffffp-1),
            Proof::BigIntegers);
}

TEST(ExactDecimal, KnowsTheEndsOfTheRange) {
  ExactDecimal exact;
  EXPECT_EQ(exact.Check({false, "24703282292062327", -340}, 0), Proof::BigIntegers);
  EXPECT_EQ(exact.Check({false, "24703282292062328", -340}, 0), Proof::Misread);
  EXPECT_EQ(exact.Check({false, "24703282292062328", -340}, 5e-324), Proof::BigIntegers);
  EXPECT_EQ(exact.Check({false, "22250738585072011", -324}, 0x0.fffffffffffffp-1022), Proof::BigIntegers);
  EXPECT_FALSE(exact.Overflows({false, "17976931348623158", 292}));
  EXPECT_TRUE(exact.Overflows({false, "17976931348623159", 292}));
  EXPECT_EQ(exact.Check({false, "1", 1000}, 1.7976931348623157e308), Proof::Misread);
  EXPECT_EQ(exact.Check({false, "1", -1000}, 5e-324), Proof::Misread);
}

}  // namespace
}  // namespace tarvik::test
