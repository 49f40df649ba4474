#include "remote/ServerSession.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <sstream>

#include "SessionFrames.h"
#include "StandInDriver.h"
#include "remote/ServerLog.h"
#include "support/RunTimeError.h"

namespace tarvik::remote {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class Session : public testing::Test {
 protected:
  Session() { driver.Add("Alpha"); }
  void Start(SessionLimits limits = {}) {
    session.emplace([this](const std::string &strProgId) { return driver.Create(strProgId, {}); }, limits,
                    [this](const std::string &strText) { arrLog.push_back(strText); });
    session->Handle(Frame().Hello().Bytes());
  }
  /// Object 2 is the list, 3 the instrument, open.
  void Open() {
    session->Handle(Frame()
                        .Fetch(RootId, "IDriverRoot", "GetInstruments", 2)
                        .Call(2, "IInstrumentList", "GetItem", 3)
                        .Key("Alpha")
                        .Bytes());
    session->Handle(Frame()
                        .Call(3, "IInstrument", "Open")
                        .Argument<Integer>(0)
                        .Argument<Integer>(0)
                        .Argument<Integer>(0)
                        .Argument<Integer>(0)
                        .Bytes());
    driver.TakeTrace();
  }
  Failure FailureOf(const Frame &frame) {
    const std::string strAnswer = session->Handle(frame.Bytes());
    Reader in(strAnswer);
    in.Get<std::uint8_t>();
    const auto intForm = in.Get<std::uint8_t>();
    return intForm ? in.GetFailure(intForm) : Failure{};
  }
  void ExpectBroken(const std::string &strBytes, const char *strWhy) {
    try {
      session->Handle(strBytes);
      ADD_FAILURE() << "taken, instead of: " << strWhy;
    } catch (const ProtocolError &error) {
      EXPECT_THAT(error.what(), HasSubstr(strWhy));
    }
  }

  test::StandInDriver driver;
  std::vector<std::string> arrLog;
  std::optional<ServerSession> session;
};

TEST_F(Session, BrokenFramesAreRefused) {
  Start();
  ExpectBroken("", "a frame is empty");
  ExpectBroken(Frame().Hello().Bytes(), "greeting");
  ExpectBroken("\x63", "a command is not known");
  ExpectBroken(std::string("\x04\x01", 2), "ends too early");
  ExpectBroken(Frame().Release(99).Bytes(), "not there");
  ExpectBroken(Frame().Call(99, "IInstrument", "Close").Bytes(), "not there");
  ExpectBroken(Frame().Call(RootId, "IInstrument", "Close").Bytes(), "another kind");
  ExpectBroken(Frame().Fetch(RootId, "IDriverRoot", "GetInstruments", 0).Bytes(), "for no object");
  ExpectBroken(Frame().Fetch(RootId, "IDriverRoot", "GetInstruments", RootId).Bytes(), "given twice");
  ExpectBroken(Frame().Fetch(RootId, "IDriverRoot", "Reserved1", 0).Bytes(), "has to wait");
  ExpectBroken(Frame().Call(RootId, "IDriverRoot", "Reserved1").Release(RootId).Bytes(), "goes on behind a call");
}

TEST_F(Session, GreetingOfAnotherContractIsRefused) {
  session.emplace([this](const std::string &strProgId) { return driver.Create(strProgId, {}); }, SessionLimits{},
                  [](const std::string &) {});
  Writer out;
  out.Put(static_cast<std::uint8_t>(Command::Hello));
  out.Put(WireVersion);
  out.Put(ContractFingerprint() + 1);
  out.PutText("KolvenAtl.Kolven");
  ExpectBroken(out.Bytes(), "another driver contract");
}

TEST_F(Session, OnlyAProgIdReachesTheCreation) {
  for (const std::string strProgId :
       {"", "../../tmp/driver", "/tmp/driver", ".hidden", "Kolven\nAtl", "Kolven Atl", "\xC3\xBC"}) {
    SCOPED_TRACE(strProgId);
    bool fCreated = false;
    session.emplace([&](const std::string &) { return fCreated = true, nullptr; }, SessionLimits{},
                    [](const std::string &) {});
    const Failure failure = FailureOf(Frame().Hello(strProgId));
    EXPECT_TRUE(failure.fRunTimeNumber);
    EXPECT_EQ(failure.lngNumber, 429);
    EXPECT_FALSE(fCreated);
  }
}

TEST_F(Session, CreationThatThrowsIsAFailureOfTheCreation) {
  session.emplace([](const std::string &) -> Ref<IUnknown> { throw std::runtime_error("the driver fell over"); },
                  SessionLimits{}, [this](const std::string &strText) { arrLog.push_back(strText); });
  const Failure failure = FailureOf(Frame().Hello());
  EXPECT_FALSE(failure.fRunTimeNumber);
  EXPECT_EQ(failure.lngNumber, automation::StatusUnexpected);
  EXPECT_EQ(failure.strDescription, "the driver fell over");
  EXPECT_THAT(arrLog, ElementsAre("creation of KolvenAtl.Kolven failed: the driver fell over"));
}

TEST_F(Session, LongNameIsCutInTheLogBetweenCharacters) {
  Start();
  std::string strName(79, 'n');
  strName += "\xE2\x82\xAC and more";
  driver.Add(strName);
  session->Handle(Frame()
                      .Fetch(RootId, "IDriverRoot", "GetInstruments", 2)
                      .Call(2, "IInstrumentList", "GetItem", 3)
                      .Key(strName)
                      .Bytes());
  session->Handle(Frame().Call(3, "IInstrument", "Close").Bytes());
  EXPECT_EQ(arrLog.back(), "closed " + std::string(79, 'n') + "...");
}

TEST(ServerLogLine, NothingThatAClientSendsBeginsALineOrWorksATerminal) {
  std::ostringstream text;
  ServerLog(text).Write("bench\nserver", "created \x1B[2J\x7F \xE2\x82\xAC");
  EXPECT_THAT(text.str(), testing::EndsWith("Z bench\\x0Aserver: created \\x1B[2J\\x7F \xE2\x82\xAC\n"));
}

TEST(ServerLogLine, DirectionMarksAndBytesThatAreNoTextAreWrittenAsCodes) {
  std::ostringstream text;
  ServerLog(text).Write(
      "a\xE2\x80\xAE"
      "b\xC2\x85",
      "c\xFF\xE2\x80\xA8 \\ \xD8\x9C");
  EXPECT_THAT(text.str(), testing::EndsWith("Z a\\u202Eb\\u0085: c\\xFF\\u2028 \\\\ \\u061C\n"));
}

TEST(ServerLogLine, JsonHasTheSameInFields) {
  std::ostringstream text;
  ServerLog(text, LogFormat::Json).Write("bench at \"x\"", {"opened", "opened a\\b\n"});
  EXPECT_THAT(text.str(), testing::MatchesRegex(
                              "\\{\"time\":\"[-0-9T:.]+Z\",\"who\":\"bench at \\\\\"x\\\\\"\",\"event\":\"opened\","
                              "\"text\":\"opened a\\\\\\\\b\\\\u000a\"\\}\n"));
}

TEST(ServerLogLine, LogThatCouldNotBeWrittenIsTriedAgainAndItsGapTold) {
  struct Failing : std::stringbuf {
    bool fFails = false;
    std::streamsize xsputn(const char *p, std::streamsize n) override {
      return fFails ? 0 : std::stringbuf::xsputn(p, n);
    }
  } buffer;
  std::ostream out(&buffer);
  ServerLog log(out);
  buffer.fFails = true;
  log.Write("server", "lost");
  log.Write("server", "lost too");
  buffer.fFails = false;
  log.Write("server", "back");
  EXPECT_THAT(buffer.str(), testing::MatchesRegex("\n[^\n]*Z log: 2 lines since [-0-9T:.]+Z could not be written\n"
                                                  "[^\n]*Z server: back\n"));
}

TEST(ServerLogFile, IsItsOwnersAndIsNoLink) {
  const auto folder = std::filesystem::temp_directory_path() / ("tarvik-log-" + std::to_string(getpid()));
  std::filesystem::create_directories(folder);
  ServerLog((folder / "log").string(), LogFormat::Text).Write("server", "here");
  EXPECT_EQ(std::filesystem::status(folder / "log").permissions() & std::filesystem::perms::others_all,
            std::filesystem::perms::none);
  std::filesystem::create_symlink(folder / "elsewhere", folder / "link");
  EXPECT_THROW(ServerLog((folder / "link").string(), LogFormat::Text), RunTimeError);
  EXPECT_FALSE(std::filesystem::exists(folder / "elsewhere"));
  std::filesystem::remove_all(folder);
}

TEST_F(Session, TransferIsLoggedWithItsSettingsAndItsEnd) {
  Start();
  Open();
  const auto transaction = [&](Long lngCommand) {
    return Frame().Call(3, "IInstrument", "Transaction").Argument<Long>(lngCommand).Bytes();
  };
  const auto setWidth = [&](ObjectId lngFirst) {
    return Frame()
        .Fetch(3, "IInstrument", "GetChannels", lngFirst)
        .Fetch(lngFirst, "IChannelList", "GetItem", lngFirst + 1)
        .Argument<Long>(2)
        .Fetch(lngFirst + 1, "IChannel", "GetTiming", lngFirst + 2)
        .Call(lngFirst + 2, "IChannelTiming", "SetWidth")
        .Argument<Double>(2e-7)
        .Bytes();
  };
  arrLog.clear();
  session->Handle(transaction(kolven::TransactionBegin));
  session->Handle(setWidth(10));
  session->Handle(Frame().Call(3, "IInstrument", "SetChannelMath").Argument<Long>(1).Bytes());
  session->Handle(transaction(kolven::TransactionCommit));
  session->Handle(transaction(kolven::TransactionBegin));
  session->Handle(setWidth(20));
  driver.FailAt(1, {-2147221000, "too wide"});
  session->Handle(transaction(kolven::TransactionCommit));
  session->Handle(setWidth(30));
  session->Handle(Frame().Call(3, "IInstrument", "Reset").Bytes());
  EXPECT_THAT(arrLog, ElementsAre("Alpha: transfer committed: ChannelTiming(2).Width, Instrument.ChannelMath",
                                  "Alpha: transfer refused (too wide): ChannelTiming(2).Width",
                                  "Alpha: ChannelTiming(2).Width", "Alpha: Reset"));
}

TEST_F(Session, FailureTellsNoFolderOfTheServer) {
  session.emplace(
      [](const std::string &) -> Ref<IUnknown> {
        throw RunTimeError(429, "/srv/lab/drivers/a.so (named by \"/etc/x/b.driver\") cannot be loaded: 3 V/s");
      },
      SessionLimits{}, [this](const std::string &strText) { arrLog.push_back(strText); });
  EXPECT_EQ(FailureOf(Frame().Hello()).strDescription, "a.so (named by \"b.driver\") cannot be loaded: 3 V/s");
  EXPECT_THAT(arrLog.back(), HasSubstr("/srv/lab/drivers/a.so"));
}

TEST_F(Session, FrameBeyondTheLimitIsRefused) {
  Start({1000, 64});
  ExpectBroken(std::string(65, '\4'), "larger than the limit");
}

TEST_F(Session, FailedFetchSkipsFetchesAndFailsTheNextCall) {
  Start();
  Open();
  driver.FailAt(1, {-2147221000, "no channels today"});
  session->Handle(Frame()
                      .Fetch(3, "IInstrument", "GetChannels", 4)
                      .Fetch(4, "IChannelList", "GetItem", 5)
                      .Argument<Long>(1)
                      .Fetch(3, "IInstrument", "GetTriggerSystem", 6)
                      .Bytes());
  const Failure failure = FailureOf(Frame().Call(6, "ITriggerSystem", "GetBurstLength").Argument<Long>(0));
  EXPECT_FALSE(failure.fRunTimeNumber);
  EXPECT_EQ(failure.lngNumber, -2147221000);
  EXPECT_EQ(failure.strDescription, "no channels today");
  EXPECT_THAT(driver.TakeTrace(), ElementsAre(HasSubstr("GetChannels() -> error")));
}

TEST_F(Session, FailureOfAFetchThatWasLetGoIsForgotten) {
  Start();
  Open();
  driver.FailAt(1, {-2147221000, "no channels today"});
  session->Handle(Frame().Fetch(3, "IInstrument", "GetChannels", 4).Release(4).Bytes());
  EXPECT_EQ(FailureOf(Frame().Call(3, "IInstrument", "Reset")).lngNumber, 0);
}

TEST_F(Session, CallOnAFetchThatGaveNothingIsError91) {
  Start();
  Open();
  driver.NothingAt(1);
  session->Handle(Frame().Fetch(3, "IInstrument", "GetErrorQueue", 4).Bytes());
  const Failure failure = FailureOf(Frame().Call(4, "IErrorQueue", "GetVerbose").Argument<Integer>(0));
  EXPECT_TRUE(failure.fRunTimeNumber);
  EXPECT_EQ(failure.lngNumber, 91);
  EXPECT_EQ(failure.strDescription, "Object variable or With block variable not set");
}

TEST_F(Session, GenericReferenceOfAnotherKindIsError13AtTheNextCall) {
  Start();
  Open();
  session->Handle(Frame()
                      .Fetch(3, "IInstrument", "GetChannels", 4)
                      .Fetch(4, "IChannelList", "GetItem", 5)
                      .Argument<Long>(1)
                      .Bytes());
  driver.WrongAt(1);
  session->Handle(Frame().Fetch(5, "IChannel", "GetLevels", 6).Bytes());
  const Failure failure = FailureOf(Frame().Call(6, "IChannelLevels", "GetImpedance").Argument<Double>(0));
  EXPECT_TRUE(failure.fRunTimeNumber);
  EXPECT_EQ(failure.lngNumber, 13);
}

TEST_F(Session, ObjectsBeyondTheLimitAreRefusedByStatus) {
  Start({4, 1024});
  Open();
  session->Handle(Frame().Fetch(3, "IInstrument", "GetChannels", 4).Bytes());
  session->Handle(Frame().Fetch(3, "IInstrument", "GetChannels", 5).Bytes());
  const Failure failure = FailureOf(Frame().Call(5, "IChannelList", "GetCount").Argument<Long>(0));
  EXPECT_EQ(failure.lngNumber, automation::StatusOutOfMemory);
  EXPECT_THAT(failure.strDescription, HasSubstr("no more than 4 objects"));
  session->Handle(Frame().Release(4).Release(5).Fetch(3, "IInstrument", "GetChannels", 6).Bytes());
  EXPECT_EQ(FailureOf(Frame().Call(6, "IChannelList", "GetCount").Argument<Long>(0)).lngNumber, 0);
}

TEST_F(Session, VanishedClientsTransactionIsAbortedAndItsInstrumentClosed) {
  Start();
  Open();
  session->Handle(Frame().Call(3, "IInstrument", "Transaction").Argument<Long>(0).Bytes());
  driver.TakeTrace();
  session->End();
  EXPECT_THAT(driver.TakeTrace(),
              ElementsAre("IInstrument{Alpha}.Transaction(2) -> ok", "IInstrument{Alpha}.Close() -> ok"));
  for (const auto &[strInterface, intCount] : driver.References()) EXPECT_EQ(intCount, 0) << strInterface;
  EXPECT_THAT(arrLog.back(), HasSubstr("Alpha, which was left open in a transaction"));
}

TEST_F(Session, ClosedInstrumentIsNotClosedAgain) {
  Start();
  Open();
  session->Handle(Frame().Call(3, "IInstrument", "Close").Bytes());
  driver.TakeTrace();
  session->End();
  EXPECT_TRUE(driver.TakeTrace().empty());
}

TEST_F(Session, ReleaseOfAnOpenInstrumentClosesIt) {
  Start();
  Open();
  session->Handle(Frame().Release(3).Bytes());
  EXPECT_THAT(driver.TakeTrace(), ElementsAre("IInstrument{Alpha}.Close() -> ok"));
}

}  // namespace
}  // namespace tarvik::remote
