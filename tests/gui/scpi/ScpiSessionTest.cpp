#include <gmock/gmock.h>

#include <cstdio>
#include <fstream>

#include "ScpiPlace.h"

namespace tarvik::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

/// A panel over an instrument that speaks SCPI, with a log of what goes over the line.
class ScpiSession : public testing::Test {
 protected:
  std::string Name() const { return place.Listed("VP-210"); }
  /// Messages that were sent so far.
  static std::size_t Messages() {
    std::ifstream log(ScpiPlace::Log());
    std::size_t messages = 0;
    for (std::string strLine; std::getline(log, strLine);)
      messages += strLine.find(" > :") != std::string::npos || strLine.find(" > *") != std::string::npos;
    return messages;
  }
  template <class Action>
  static std::size_t MessagesOf(Action &&action) {
    const std::size_t before = Messages();
    action();
    return Messages() - before;
  }

  ScpiPlace place;
  SimulatorSession session{{{"WorkWithBoxes", "1"}}};
};

TEST_F(ScpiSession, DownloadAndUploadOfAllPagesTakeAtMostTenMessagesEach) {
  // With what opening the session asks.
  const std::size_t download = MessagesOf([&] {
    session.Open(Name());
    session->Click("cmdDownload");
  });
  session->ShowPage(ePageTiming);
  session->Type("esWidth(0)", "50n");
  session->ShowPage(ePageLevels);
  session->Type("esLevelHigh(1)", "3");
  const std::size_t upload = MessagesOf([&] { session->Click("cmdUpload"); });
  std::printf("download of all pages: %zu messages, upload: %zu messages\n", download, upload);
  EXPECT_GE(download, 5u);
  EXPECT_LE(download, 10u);
  EXPECT_GE(upload, 3u);
  EXPECT_LE(upload, 10u);
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
  EXPECT_DOUBLE_EQ(50e-9, ReadDriver(session.Instrument(Name())).numbers["width 1"]);
}

TEST_F(ScpiSession, InstrumentThatIsSwitchedOffIsToldWithAddressAndCommand) {
  session.Open(Name());
  session->Click("cmdDownload");
  place.Program("VP-210").End(SIGKILL);
  session->ShowPage(ePageTiming);
  session->Type("esWidth(0)", "50n");
  session->Click("cmdUpload");
  std::string strAll;
  for (const std::string &strBox : session.host.TakeBoxes()) strAll += strBox + "\n";
  EXPECT_THAT(strAll, HasSubstr("TCPIP::127.0.0.1::"));
  EXPECT_THAT(strAll, HasSubstr("::SOCKET: "));
}

TEST_F(ScpiSession, RefusedUploadTellsTheInstrumentsWordsAndLeavesItAsItWas) {
  session.Open(Name());
  session->Click("cmdDownload");
  session->ShowPage(ePageTrigLev);
  session->Type("esTrgLevExtInThreshold", "1.5");
  session->ShowPage(ePageLevels);
  session->Type("esLevelHigh(0)", "-5");
  session->Click("cmdUpload");
  std::string strAll;
  for (const std::string &strBox : session.host.TakeBoxes()) strAll += strBox + "\n";
  EXPECT_THAT(strAll, HasSubstr("low level above high level of channel 1"));
  EXPECT_DOUBLE_EQ(2.5, ReadDriver(session.Instrument(Name())).numbers["ext threshold"]);
}

}  // namespace
}  // namespace tarvik::test
