#include "instrument/ListedName.h"

#include <gtest/gtest.h>

namespace tarvik {
namespace {

const std::vector<std::string> Listed{"VP-210", "bench (TCPIP::a::1::SOCKET)", "left (x)", "left (y)", "left top (z)"};

TEST(ListedName, NameThatIsListedIsTakenAsItIs) {
  EXPECT_EQ("VP-210", ListedName(Listed, "VP-210"));
  EXPECT_EQ("left (y)", ListedName(Listed, "left (y)"));
}

TEST(ListedName, WhereTheInstrumentIsNeedNotBeWritten) {
  EXPECT_EQ("bench (TCPIP::a::1::SOCKET)", ListedName(Listed, "bench"));
  EXPECT_EQ("left top (z)", ListedName(Listed, "left top"));
}

TEST(ListedName, NameOfNoneOrOfSeveralNamesNoInstrument) {
  for (const char *strName : {"left", "ben", "VP", "", "Bench"}) EXPECT_EQ(std::nullopt, ListedName(Listed, strName));
}

}  // namespace
}  // namespace tarvik
