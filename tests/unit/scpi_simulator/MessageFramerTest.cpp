#include "scpi/simulator/MessageFramer.h"

#include <gmock/gmock.h>

#include <vector>

namespace tarvik::scpisim {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> Rest(MessageFramer &framer) {
  std::vector<std::string> arrMessages;
  while (auto message = framer.Next()) arrMessages.push_back(message->fOverrun ? "overrun" : message->strText);
  return arrMessages;
}

std::vector<std::string> Messages(std::string_view strBytes, std::size_t lngLongest = 100) {
  MessageFramer framer(lngLongest);
  framer.Append(strBytes);
  return Rest(framer);
}

TEST(MessageFramer, LineFeedEndsAMessage) {
  EXPECT_THAT(Messages("*RST\n\n*CLS\r\nrest"), ElementsAre("*RST", "", "*CLS\r"));
}

TEST(MessageFramer, MessageMayComeInPieces) {
  MessageFramer framer(100);
  for (const char ch : std::string("A #13\n\n\n;B\nC")) framer.Append({&ch, 1});
  EXPECT_THAT(Rest(framer), ElementsAre("A #13\n\n\n;B"));
  EXPECT_EQ("C", framer.Unfinished());
}

TEST(MessageFramer, LineFeedWithinADefiniteBlockIsData) {
  EXPECT_THAT(Messages("A #15\n\n\n\n\n\nB\n"), ElementsAre("A #15\n\n\n\n\n", "B"));
  EXPECT_THAT(Messages("A #203\n'\n\nB\n"), ElementsAre("A #203\n'\n", "B"));
  EXPECT_THAT(Messages("A #10\nB\n"), ElementsAre("A #10", "B"));
}

TEST(MessageFramer, LineFeedEndsAnIndefiniteBlock) {
  EXPECT_THAT(Messages("A #0x#15\nB\n"), ElementsAre("A #0x#15", "B"));
}

TEST(MessageFramer, HashWithinAStringBeginsNoBlock) {
  EXPECT_THAT(Messages("A '#15'\nB\n"), ElementsAre("A '#15'", "B"));
  EXPECT_THAT(Messages("A '''#15'\nB\n"), ElementsAre("A '''#15'", "B"));
}

TEST(MessageFramer, LineFeedEndsAnOpenString) {
  EXPECT_THAT(Messages("A 'x\nB #12\n\n\n"), ElementsAre("A 'x", "B #12\n\n"));
}

TEST(MessageFramer, LengthThatIsNoNumberBeginsNoBlock) {
  EXPECT_THAT(Messages("A #3x\nB\n"), ElementsAre("A #3x", "B"));
  EXPECT_THAT(Messages("A #HFF\nB\n"), ElementsAre("A #HFF", "B"));
}

TEST(MessageFramer, TooLongMessageIsDroppedToItsEnd) {
  EXPECT_THAT(Messages("12345\n123456\n1\n", 5), ElementsAre("12345", "overrun", "1"));
}

TEST(MessageFramer, BlockOfATooLongMessageIsPassedOver) {
  EXPECT_THAT(Messages("A #16\n*RST\n\nB\n", 5), ElementsAre("overrun", "B"));
}

TEST(MessageFramer, NothingIsKeptOfATooLongMessage) {
  MessageFramer framer(5);
  for (int i = 0; i < 1000; ++i) {
    framer.Append("0123456789");
    EXPECT_THAT(Rest(framer), IsEmpty());
    EXPECT_LE(framer.Unfinished().size(), 5u);
  }
}

}  // namespace
}  // namespace tarvik::scpisim
