#include <QLabel>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "EntryMaker.h"
#include "FieldFixture.h"

namespace tarvik::test {
namespace {

/// The field's limits, its smallest magnitude, and the powers of ten that these are.
constexpr double Limit = 1e15, Smallest = 1e-14;
constexpr std::int64_t LimitDecade = 15, SmallestDecade = -14;

std::uint64_t Bits(double dblValue) { return std::bit_cast<std::uint64_t>(dblValue); }

/// A user who types and pastes entries into a real field, one after the other.
struct EntriesOfAField : Field, testing::WithParamInterface<char> {
  void SetUp() override {
    host.chSeparator = GetParam();
    rules.chSeparator = GetParam();
    Make({{"BaseUnit", std::string("V")}, {"DefaultValue", 1.0}, {"Max", Limit}, {"Min", -Limit}});
    field->SetFocus();
    lblUnits = field->findChild<QLabel *>("lblUnits");
    ASSERT_NE(lblUnits, nullptr);
  }

  /// The exponent of the prefix that the user sees; beyond the letters it is told by the number.
  int ShownExponent() const {
    const std::string strPrefix = lblUnits->text().chopped(1).toStdString();
    if (strPrefix.empty()) return 0;
    if (strPrefix != "*") return ExponentOfPrefix(strPrefix);
    if (field->Value() == 0) return rules.intShownExponent;
    return std::fabs(field->Value()) > 1 ? 15 : -15;
  }

  /// By keys where each character has one.
  bool CanBeTyped(const QString &strEntry) const {
    return std::all_of(strEntry.begin(), strEntry.end(), [](QChar ch) { return ch >= u' ' && ch <= u'~'; });
  }
  void Enter(const QString &strEntry, bool fType) {
    QTest::keyClick(txt, Qt::Key_A, Qt::ControlModifier);
    if (fType) {
      QTest::keyClicks(txt, strEntry);
    } else {
      QApplication::clipboard()->setText(strEntry);
      QTest::keyClick(txt, Qt::Key_V, Qt::ControlModifier);
    }
    QTest::keyClick(txt, Qt::Key_Return);
  }

  /// Whether the field holds what the entry means, held to its limits.
  bool Holds(const Decimal &decimal, double dblBefore) {
    const double dblValue = field->Value();
    if (exact.Check(decimal, 0) != Proof::Misread) return Bits(dblValue) == Bits(0.0);
    const auto lngDecade = decimal.lngExponent + static_cast<std::int64_t>(decimal.strDigits.size()) - 1;
    if (lngDecade >= LimitDecade) return dblValue == (decimal.fNegative ? -Limit : Limit);
    if (lngDecade >= SmallestDecade || exact.Check(decimal, Smallest) != Proof::Misread)
      return exact.Check(decimal, dblValue) != Proof::Misread;
    // Too small to be held: on the way down the lower limit, on the way up the smallest magnitude.
    const bool fFalls = dblBefore > 0 || (dblBefore == 0 && decimal.fNegative);
    return dblValue == (fFalls ? -Limit : Smallest);
  }

  QLabel *lblUnits = nullptr;
  FieldRules rules;
  EntryMaker maker;
  ExactDecimal exact;
};

TEST_P(EntriesOfAField, AreTakenExactlyOrLeaveTheValueBitByBit) {
  const char *strCount = std::getenv("TARVIK_FIELD_NUMBERS");
  const std::uint64_t lngCount = strCount ? std::strtoull(strCount, nullptr, 10) : 1000;
  int intTaken = 0, intRefused = 0, intTyped = 0;
  for (std::uint64_t i = 0; i < lngCount && !HasFailure(); ++i) {
    RandomNumbers random(i * 64 + static_cast<std::uint64_t>(GetParam()));
    rules.intShownExponent = ShownExponent();
    // What is no text is none in the clipboard either.
    const QString strEntry = QString::fromStdString(maker.Make(random, rules));
    const Meaning meaning = MeaningOf(strEntry.toStdString(), rules);
    if (meaning.kind == Meaning::Empty) continue;
    const bool fOverflows = meaning.kind == Meaning::Number && exact.Overflows(meaning.decimal);
    const bool fTaken = meaning.kind == Meaning::Number && !fOverflows;
    const bool fType = CanBeTyped(strEntry) && !random.OneIn(4);
    SCOPED_TRACE((fType ? "typed " : "pasted ") + testing::PrintToString(strEntry.toStdString()) +
                 " behind the prefix of " + std::to_string(rules.intShownExponent));
    const double dblBefore = field->Value();
    const int intBeeps = host.intBeeps, intRaised = intUpdates;
    Enter(strEntry, fType);
    EXPECT_FALSE(IsTyping());
    EXPECT_EQ(host.intBeeps - intBeeps, fTaken ? 0 : 1);
    EXPECT_EQ(intUpdates - intRaised, fTaken ? 1 : 0);
    if (fTaken)
      EXPECT_TRUE(Holds(meaning.decimal, dblBefore)) << "the value is " << field->Value();
    else
      EXPECT_EQ(Bits(field->Value()), Bits(dblBefore));
    ++(fTaken ? intTaken : intRefused);
    intTyped += fType;
  }
  std::printf("%d entries taken, %d refused; %d typed by keys, the others pasted\n", intTaken, intRefused, intTyped);
}

INSTANTIATE_TEST_SUITE_P(WithAPointOrAComma, EntriesOfAField, testing::Values('.', ','));

}  // namespace
}  // namespace tarvik::test
