#include "settings/LevelRules.h"

#include <gtest/gtest.h>

namespace tarvik::test {
namespace {

// ---- Formats ----

struct FormatRow {
  Long lngListIndex;
  const char *strItem;
  Long eFormat, eOutputLevel;
  bool fGroupDefault;
  const char *strHighCaption, *strLowCaption;
};

constexpr FormatRow FormatRows[] = {
    {0, "Set TTL", 0, 1, false, "TTL-High", "TTL-Low"},
    {1, "High-Low", 1, 1, true, "High", "Low"},
    {2, "Offset-Amplitude", 2, 0, true, "Offset", "Amplitude"},
    {3, "Set ECL", 3, 1, false, "ECL-High", "ECL-Low"},
};

class LevelFormatItem : public testing::TestWithParam<FormatRow> {};

TEST_P(LevelFormatItem, CarriesTheValuesOfTheInstrumentAndNamesTheFields) {
  const FormatRow &row = GetParam();
  const LevelFormat &format = LevelFormats.at(static_cast<std::size_t>(row.lngListIndex));
  EXPECT_STREQ(format.strItem, row.strItem);
  EXPECT_EQ(Long{format.eFormat}, row.eFormat);
  EXPECT_EQ(Long{format.eOutputLevel}, row.eOutputLevel);
  EXPECT_EQ(format.fGroupDefault, row.fGroupDefault);
  LevelPreset preset;
  const LevelFields fields = ChooseLevelFormat(row.lngListIndex, preset);
  ASSERT_NE(fields.format, nullptr);
  EXPECT_STREQ(fields.format->strHighCaption, row.strHighCaption);
  EXPECT_STREQ(fields.format->strLowCaption, row.strLowCaption);
}

INSTANTIATE_TEST_SUITE_P(List, LevelFormatItem, testing::ValuesIn(FormatRows),
                         [](const auto &test) { return "Index" + std::to_string(test.param.lngListIndex); });

/// What choosing an item makes of the preset that was there before.
struct ChoiceRow {
  const char *strName;
  Long lngListIndex;
  LevelPreset before, after;
  Double dblHigh, dblLow;
  bool fLocked;
};

void PrintTo(const ChoiceRow &row, std::ostream *out) { *out << row.strName; }

constexpr LevelPreset None{0, 0}, Ttl{2.5, 0}, Ecl{-0.85, -1.8};

TEST(LevelPresetTest, IsZeroBeforeTheFirstChoice) { EXPECT_EQ(LevelPreset(), None); }

class LevelFormatChoice : public testing::TestWithParam<ChoiceRow> {};

TEST_P(LevelFormatChoice, FillsTheFieldsFromThePresetAndLocksThoseOfAPreset) {
  const ChoiceRow &row = GetParam();
  LevelPreset preset = row.before;
  const LevelFields fields = ChooseLevelFormat(row.lngListIndex, preset);
  EXPECT_EQ(preset, row.after);
  EXPECT_DOUBLE_EQ(fields.dblHighOrOffset, row.dblHigh);
  EXPECT_DOUBLE_EQ(fields.dblLowOrAmplitude, row.dblLow);
  EXPECT_EQ(fields.fLocked, row.fLocked);
}

INSTANTIATE_TEST_SUITE_P(All, LevelFormatChoice,
                         testing::Values(ChoiceRow{"Ttl", 0, None, Ttl, 2.5, 0, true},
                                         ChoiceRow{"TtlAfterEcl", 0, Ecl, Ttl, 2.5, 0, true},
                                         ChoiceRow{"Ecl", 3, None, Ecl, -0.85, -1.8, true},
                                         ChoiceRow{"EclAfterTtl", 3, Ttl, Ecl, -0.85, -1.8, true},
                                         ChoiceRow{"HighLowFirst", 1, None, None, 0, 0, false},
                                         ChoiceRow{"HighLowAfterTtl", 1, Ttl, Ttl, 2.5, 0, false},
                                         ChoiceRow{"HighLowAfterEcl", 1, Ecl, Ecl, -0.85, -1.8, false},
                                         ChoiceRow{"OffsetAmplitudeFirst", 2, None, None, 0, 0, false},
                                         ChoiceRow{"OffsetAmplitudeAfterTtl", 2, Ttl, Ttl, 1.25, 2.5, false},
                                         ChoiceRow{"OffsetAmplitudeAfterEcl", 2, Ecl, Ecl, -1.325, 0.95, false}),
                         [](const auto &test) { return test.param.strName; });

TEST(LevelFormatChoice, AnIndexThatIsNoFormatKeepsTheCaptionsAndShowsThePresetFree) {
  for (const Long lngListIndex : {-1, 4, 7}) {
    LevelPreset preset = Ecl;
    const LevelFields fields = ChooseLevelFormat(lngListIndex, preset);
    EXPECT_EQ(fields.format, nullptr) << lngListIndex;
    EXPECT_EQ(preset, Ecl) << lngListIndex;
    EXPECT_DOUBLE_EQ(fields.dblHighOrOffset, -0.85) << lngListIndex;
    EXPECT_DOUBLE_EQ(fields.dblLowOrAmplitude, -1.8) << lngListIndex;
    EXPECT_FALSE(fields.fLocked) << lngListIndex;
  }
}

// ---- Units ----

TEST(LevelUnits, AreThoseOfTheFirstTwoItems) {
  EXPECT_EQ(LevelUnitOf(0), "V");
  EXPECT_EQ(LevelUnitOf(1), "A");
  EXPECT_EQ(LevelUnitOf(2), "");
  EXPECT_EQ(LevelUnitOf(-1), "");
}

struct ConversionRow {
  const char *strName;
  const char *strShown;  ///< unit of the field before
  Double dblValue, dblAuxValue;
  const char *strUnits;
  Double dblOhm;
  LevelConversion written;
};

void PrintTo(const ConversionRow &row, std::ostream *out) { *out << row.strName; }

class LevelUnitChange : public testing::TestWithParam<ConversionRow> {};

TEST_P(LevelUnitChange, WritesWhatTheLoadMakesOfTheLevel) {
  const ConversionRow &row = GetParam();
  const LevelConversion written =
      ConvertLevel({row.strShown, "V", row.dblValue, row.dblAuxValue}, row.strUnits, {row.dblOhm, 1 / row.dblOhm});
  EXPECT_EQ(written.strBaseUnit, row.written.strBaseUnit);
  EXPECT_EQ(written.dblAuxValue, row.written.dblAuxValue);
  ASSERT_EQ(written.dblValue.has_value(), row.written.dblValue.has_value());
  if (written.dblValue) {
    EXPECT_DOUBLE_EQ(*written.dblValue, *row.written.dblValue);
  }
}

INSTANTIATE_TEST_SUITE_P(
    All, LevelUnitChange,
    testing::Values(ConversionRow{"VoltsToAmperes", "V", 1, 0, "A", 50, {"A", 1, 0.02}},
                    ConversionRow{"AnEditOfTheLoadInAmperes", "A", 0.02, 1, "", 100, {{}, {}, 0.01}},
                    ConversionRow{"ATypedCurrentIsDroppedByAnEditOfTheLoad", "A", 0.04, 1, "", 100, {{}, {}, 0.01}},
                    ConversionRow{"AmperesToVoltsFromTheCurrentShown", "A", 0.01, 7, "V", 100, {"V", {}, 1}},
                    ConversionRow{"AnEditOfTheLoadInVolts", "V", 1, 3, "", 100, {{}, {}, {}}},
                    ConversionRow{"VoltsAgain", "V", 1, 3, "V", 100, {{}, {}, {}}},
                    ConversionRow{"AmperesAgain", "A", 0.04, 1, "A", 50, {{}, {}, 0.02}}),
    [](const auto &test) { return test.param.strName; });

TEST(LevelUnitChange, ALevelToldInAmperesHasAVoltageBehindIt) {
  EXPECT_EQ(VoltageBehind(0.5, "A", 50), 25.0);
  EXPECT_EQ(VoltageBehind(0.5, "V", 50), std::nullopt);
}

}  // namespace
}  // namespace tarvik::test
