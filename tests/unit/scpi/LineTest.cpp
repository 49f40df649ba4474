#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <pty.h>
#include <sys/socket.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "scpi/DescriptorLine.h"
#include "scpi/DeviceLine.h"
#include "scpi/LoggedLine.h"

namespace tarvik::scpi {
namespace {

using namespace std::chrono_literals;

/// A listening socket of the loopback whose one client is answered with what a test wants.
class Peer {
 public:
  Peer() {
    m_intListener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in place{};
    place.sin_family = AF_INET;
    place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof place;
    EXPECT_EQ(0, ::bind(m_intListener, reinterpret_cast<sockaddr *>(&place), size));
    EXPECT_EQ(0, ::listen(m_intListener, 4));
    EXPECT_EQ(0, ::getsockname(m_intListener, reinterpret_cast<sockaddr *>(&place), &size));
    strPort = std::to_string(ntohs(place.sin_port));
  }
  ~Peer() {
    Leave();
    ::close(m_intListener);
  }

  void Accept() { m_intClient = ::accept(m_intListener, nullptr, nullptr); }
  void Leave() {
    if (m_intClient >= 0) ::close(m_intClient);
    m_intClient = -1;
  }
  void Say(const std::string &strText) {
    EXPECT_EQ(static_cast<ssize_t>(strText.size()), ::send(m_intClient, strText.data(), strText.size(), MSG_NOSIGNAL));
  }
  std::string Heard(std::size_t size) {
    std::string strText(size, '\0');
    strText.resize(
        static_cast<std::size_t>(std::max<ssize_t>(::recv(m_intClient, strText.data(), size, MSG_WAITALL), 0)));
    return strText;
  }

  std::string strPort;

 private:
  int m_intListener = -1, m_intClient = -1;
};

/// Why an action of a line fails.
template <class Action>
std::string WhyNot(Action &&action) {
  try {
    action();
  } catch (const driver::Failure &failure) {
    return failure.what();
  }
  return "done";
}

class ScpiSocket : public testing::Test {
 protected:
  ScpiSocket() {
    line.Open(5s);
    peer.Accept();
  }
  Peer peer;
  SocketLine line{"127.0.0.1", peer.strPort};
};

TEST_F(ScpiSocket, MessageEndsWithALineFeed) {
  line.Send("*IDN?", 5s);
  EXPECT_EQ("*IDN?\n", peer.Heard(6));
}

TEST_F(ScpiSocket, AnswerEndsAtTheFirstLineFeedOutsideOfBlocksAndQuotes) {
  peer.Say("16,#12\n\n;\"a\nb\";1\r\n");
  EXPECT_EQ("16,#12\n\n;\"a\nb\";1", line.Receive(100, 5s));
}

TEST_F(ScpiSocket, AnswerMayComeInPieces) {
  std::thread instrument([&] {
    for (const char *strPiece : {"+1.5", "E-0", "9\n"}) peer.Say(strPiece);
  });
  EXPECT_EQ("+1.5E-09", line.Receive(100, 5s));
  instrument.join();
}

TEST_F(ScpiSocket, SilenceEndsAtTheDeadline) {
  EXPECT_EQ("no answer within 20 ms", WhyNot([&] { line.Receive(100, 20ms); }));
}

TEST_F(ScpiSocket, AnswerWithoutAnEndEndsAtTheDeadline) {
  peer.Say("+1.5E");
  EXPECT_EQ("no answer within 20 ms", WhyNot([&] { line.Receive(100, 20ms); }));
  peer.Say(";#9999999999");
  EXPECT_EQ("no answer within 20 ms", WhyNot([&] { line.Receive(100, 20ms); }));
}

TEST_F(ScpiSocket, AnswerThatIsTooLongIsRefused) {
  peer.Say("12345678\n");
  EXPECT_EQ("the answer is longer than 7 bytes", WhyNot([&] { line.Receive(7, 5s); }));
}

TEST_F(ScpiSocket, LineThatIsCutInTheMiddleOfAnAnswerIsTold) {
  peer.Say("+1.5");
  peer.Leave();
  EXPECT_EQ("the instrument has ended the connection", WhyNot([&] { line.Receive(100, 5s); }));
  EXPECT_NE("done", WhyNot([&] {
              line.Send("*IDN?", 5s);
              line.Send("*IDN?", 5s);
            }));
}

TEST_F(ScpiSocket, LateAnswerIsDroppedBeforeTheNextMessage) {
  peer.Say("late\n");
  // The bytes are here when a byte behind them is.
  EXPECT_EQ("late", line.Receive(100, 5s));
  peer.Say("later\nlatest\n");
  EXPECT_EQ("later", line.Receive(100, 5s));
  line.Send("*OPC?", 5s);
  EXPECT_EQ("*OPC?\n", peer.Heard(6));
  peer.Say("1\n");
  EXPECT_EQ("1", line.Receive(100, 5s));
}

TEST_F(ScpiSocket, ClearingConnectsAnew) {
  peer.Say("half of an");
  line.Clear(5s);
  peer.Leave();
  peer.Accept();
  line.Send("*OPC?", 5s);
  EXPECT_EQ("*OPC?\n", peer.Heard(6));
}

TEST(ScpiSocketAlone, NobodyThereIsToldWithTheReason) {
  std::string strPort;
  { strPort = Peer().strPort; }
  SocketLine line("127.0.0.1", strPort);
  EXPECT_EQ("no connection: Connection refused", WhyNot([&] { line.Open(5s); }));
  SocketLine unknown("no-such-host.invalid", "5025");
  EXPECT_THAT(WhyNot([&] { unknown.Open(5s); }), testing::StartsWith("the host is not known: "));
}

/// A pseudo terminal in the place of a device file: the same reads and writes, but none of the kernel's USBTMC
/// commands.
class ScpiDevice : public testing::Test {
 protected:
  ScpiDevice() {
    char name[64];
    termios raw{};
    cfmakeraw(&raw);
    EXPECT_EQ(0, ::openpty(&intInstrument, &m_intKeptOpen, name, &raw, nullptr));
    line = std::make_unique<DeviceLine>(name);
    line->Open(5s);
  }
  ~ScpiDevice() override {
    line.reset();
    ::close(intInstrument);
    ::close(m_intKeptOpen);
  }
  void Say(const std::string &strText) {
    EXPECT_EQ(static_cast<ssize_t>(strText.size()), ::write(intInstrument, strText.data(), strText.size()));
  }

  int intInstrument = -1;
  std::unique_ptr<DeviceLine> line;

 private:
  int m_intKeptOpen = -1;
};

TEST_F(ScpiDevice, MessagesGoOutAndAnswersComeIn) {
  line->Send("*IDN?", 5s);
  char heard[6] = {};
  EXPECT_EQ(6, ::read(intInstrument, heard, sizeof heard));
  EXPECT_EQ("*IDN?\n", std::string(heard, 6));
  Say("a,b,c,d\n");
  EXPECT_EQ("a,b,c,d", line->Receive(100, 5s));
}

TEST_F(ScpiDevice, SilenceEndsAtTheDeadlineAndClearingDropsWhatCameLate) {
  EXPECT_EQ("no answer within 20 ms", WhyNot([&] { line->Receive(100, 20ms); }));
  Say("late\n");
  line->Clear(5s);
  EXPECT_EQ("no answer within 20 ms", WhyNot([&] { line->Receive(100, 20ms); }));
}

TEST(ScpiDeviceAlone, FileThatIsNotThereIsTold) {
  DeviceLine line("/dev/no-such-device");
  EXPECT_EQ("/dev/no-such-device: No such file or directory", WhyNot([&] { line.Open(5s); }));
}

TEST_F(ScpiSocket, LogTellsWhatWentOverTheLine) {
  const std::filesystem::path path =
      std::filesystem::path(testing::TempDir()) / ("line-" + std::to_string(getpid()) + ".log");
  {
    LoggedLine logged(std::make_unique<SocketLine>("127.0.0.1", peer.strPort), "TCPIP::x::1::SOCKET", path);
    logged.Open(5s);
    peer.Leave();
    peer.Accept();
    logged.Send("*IDN?", 5s);
    peer.Say("a\x01\n");
    logged.Receive(100, 5s);
    WhyNot([&] { logged.Receive(100, 20ms); });
  }
  std::ifstream file(path);
  std::string strLine, strAll;
  while (std::getline(file, strLine)) strAll += strLine.substr(strLine.find("Z ") + 2) + "\n";
  EXPECT_EQ(
      "TCPIP::x::1::SOCKET > (connected)\n"
      "TCPIP::x::1::SOCKET > *IDN?\n"
      "TCPIP::x::1::SOCKET < a\\x01\n"
      "TCPIP::x::1::SOCKET ! no answer within 20 ms\n",
      strAll);
  EXPECT_EQ(std::filesystem::perms::owner_read | std::filesystem::perms::owner_write,
            std::filesystem::status(path).permissions());
  std::filesystem::remove(path);
}

/// A line with nobody at its end.
class DeafLine final : public Line {
 public:
  void Open(Milliseconds) override { m_fOpen = true; }
  void Close() override { m_fOpen = false; }
  bool IsOpen() const override { return m_fOpen; }
  void Send(std::string_view, Milliseconds) override {}
  std::string Receive(std::size_t, Milliseconds) override { return {}; }
  void Clear(Milliseconds) override { throw driver::Failure("no clear"); }

 private:
  bool m_fOpen = false;
};

/// The log of a line without its times.
class ScpiLog : public testing::Test {
 protected:
  ~ScpiLog() override { std::filesystem::remove(m_path); }
  LoggedLine Logged() const { return {std::make_unique<DeafLine>(), "A", m_path}; }
  std::string Text() const {
    std::ifstream file(m_path);
    std::string strLine, strAll;
    while (std::getline(file, strLine)) strAll += strLine.substr(strLine.find("Z ") + 2) + "\n";
    return strAll;
  }

  const std::filesystem::path m_path =
      std::filesystem::path(testing::TempDir()) / ("log-" + std::to_string(getpid()) + ".log");
};

TEST_F(ScpiLog, TellsOpeningAndClosingOnceAndAClearThatFailed) {
  LoggedLine logged = Logged();
  for (int i = 0; i < 2; ++i) logged.Open(1s);
  EXPECT_TRUE(logged.IsOpen());
  EXPECT_THROW(logged.Clear(1s), driver::Failure);
  for (int i = 0; i < 2; ++i) logged.Close();
  EXPECT_FALSE(logged.IsOpen());
  EXPECT_EQ(Text(), "A > (connected)\nA > (device clear)\nA ! no clear\nA > (closed)\n");
}

TEST_F(ScpiLog, IsWrittenAlsoByAProgramWithoutAStandardInput) {
  const int intInput = ::dup(STDIN_FILENO);
  ::close(STDIN_FILENO);
  Logged().Open(1s);
  if (intInput >= 0) {
    ::dup2(intInput, STDIN_FILENO);
    ::close(intInput);
  }
  EXPECT_EQ(Text(), "A > (connected)\n");
}

}  // namespace
}  // namespace tarvik::scpi
