#include "common/ScpiError.h"

#include <gtest/gtest.h>

namespace tarvik::driver {
namespace {

TEST(ScpiError, IsItsNumberAndQuotedText) {
  EXPECT_EQ(R"~(-222,"Data out of range: width")~", (ScpiError{-222, "Data out of range: width", "2 s"}).Entry(false));
}

TEST(ScpiError, TellsTheDetailWhenVerbose) {
  EXPECT_EQ(R"~(-222,"Data out of range: width (2 s)")~",
            (ScpiError{-222, "Data out of range: width", "2 s"}).Entry(true));
  EXPECT_EQ(R"~(-350,"Queue overflow")~", (ScpiError{-350, "Queue overflow", ""}).Entry(true));
}

TEST(ScpiError, HoldsNoSeparatorInsideAnEntry) {
  EXPECT_EQ(R"~(-240,"fan, 'slow'")~", (ScpiError{-240, "fan; \"slow\"", ""}).Entry(false));
}

TEST(ScpiError, EntriesAreSeparatedBySemicolons) {
  EXPECT_EQ("", JoinEntries({}, false));
  EXPECT_EQ(R"~(-221,"a";-222,"b")~", JoinEntries({{-221, "a", ""}, {-222, "b", ""}}, false));
}

TEST(Quantity, IsTheShortestNumberWithItsUnit) {
  EXPECT_EQ("1.5e-09 s", Quantity(1.5e-9, "s"));
  EXPECT_EQ("0.1 Ohm", Quantity(0.1, "Ohm"));
  EXPECT_EQ("2", Quantity(2, ""));
}

}  // namespace
}  // namespace tarvik::driver
