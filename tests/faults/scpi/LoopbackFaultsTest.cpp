#include <gmock/gmock.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cstdio>
#include <thread>

#include "scpi/ProfileFolders.h"
#include "scpi/ScpiInstrument.h"
#include "scpi/simulator/Server.h"
#include "simulator/model/RackFile.h"

namespace tarvik::scpi {
namespace {

using driver::Change;
using driver::Settings;

/// A simulated instrument on a socket of the loopback, served by a thread.
class ServedInstrument {
 public:
  ServedInstrument() : m_device(simulator::DefaultRack().front()), m_server({.intPort = 0}, m_device) {
    m_thread = std::thread([this] { m_server.Run(m_intStop); });
  }
  ~ServedInstrument() {
    eventfd_write(m_intStop, 1);
    m_thread.join();
    close(m_intStop);
  }

  std::string Address() const {
    const std::string &strAddress = m_server.Address();
    return "TCPIP::127.0.0.1::" + strAddress.substr(strAddress.rfind(':') + 1) + "::SOCKET";
  }
  std::unique_ptr<Talk> NewTalk() const {
    return std::make_unique<Talk>(MakeLine(scpi::Address::Read(Address())), Address());
  }
  /// The model guards its settings itself.
  Settings CurrentSettings() { return m_device.CurrentSettings(); }

 private:
  scpisim::Device m_device;
  scpisim::Server m_server;
  const int m_intStop = eventfd(0, EFD_CLOEXEC);
  std::thread m_thread;
};

/// A setup that is not taken in one message, and in which every step depends on the others.
void SetEverything(Settings &s) {
  s.mode.SetMode(eTriggerTriggered, ePulseBurst);
  s.mode.lngBurstLength = 9;
  s.dblFrequency = 50e3;
  for (const Long lngChannel : {1, 2}) {
    s.timing[lngChannel].dblWidth = 5e-6;
    s.timing[lngChannel].SetDoubleDelay(8e-6);
    s.timing[lngChannel].fCoupled = false;
    s.timing[lngChannel].dblLeading = 2e-9;
    s.timing[lngChannel].dblTrailing = 3e-9;
    s.levels[lngChannel].dblHigh = 3;
    s.levels[lngChannel].dblLow = -1;
    s.levels[lngChannel].fOutput = true;
    s.limits[lngChannel] = {true, 5, -2, 0.3, -0.3};
  }
}

/// The trailing edge of a coupled channel cannot be read, so it is not put back either.
Settings Visible(Settings settings) {
  for (const Long lngChannel : {1, 2})
    settings.timing[lngChannel].dblTrailing = settings.timing[lngChannel].TrailingInForce();
  return settings;
}

/// What the simulator is told to do wrong, and whether nothing comes then but the end of the driver's patience.
struct LoopbackFault {
  const char *strWord;
  bool fSilent;
};
void PrintTo(const LoopbackFault &fault, std::ostream *pStream) { *pStream << fault.strWord; }

class OverLoopback : public testing::TestWithParam<std::tuple<LoopbackFault, bool>> {
 protected:
  static constexpr Long Patience = 30000, Impatience = 150;

  OverLoopback() : referee(served.NewTalk()) {
    driver::InstrumentDescription description;
    description.strName = "Bench";
    instrument = std::make_unique<ScpiInstrument>(
        description, [] { return ProfileFolders::OfMachine().Read("scpi-99-pattern"); }, served.NewTalk(),
        [this] { return now; });
    instrument->Connect();
  }

  /// From now on, and not before, the messages of the instrument are counted, and message number lngAt goes wrong.
  void Order(std::size_t at) {
    const auto &[fault, fEver] = GetParam();
    referee->Ask(":DIAG:FAUL " + std::to_string(at) + "," + fault.strWord + (fEver ? ",EVER" : ",ONCE") + ";*OPC?");
    instrument->SetTimeout(fault.fSilent ? Impatience : Patience);
    now += std::chrono::hours(1);
  }
  void Mend() {
    referee->Ask(":DIAG:FAUL:CLE;*OPC?");
    instrument->SetTimeout(Patience);
    now += std::chrono::hours(1);
  }
  template <class Action>
  std::size_t MessagesOf(Action &&action) {
    Mend();
    action();
    return static_cast<std::size_t>(std::stoul(referee->Ask(":DIAG:MESS:COUN?")));
  }
  /// Empty when the action worked.
  template <class Action>
  static std::string FailureOf(Action &&action) {
    try {
      action();
    } catch (const driver::Failure &failure) {
      return failure.what();
    } catch (const driver::Rejected &rejected) {
      return driver::JoinEntries(rejected.Errors(), true);
    }
    return {};
  }

  void Download() {
    instrument->CurrentSettings();
    for (const Long lngRow : {1, 2, 3}) instrument->CurrentPattern(lngRow);
    instrument->TakeErrors();
  }
  void Upload() { instrument->Apply({Change(&SetEverything)}); }
  void Restore() { referee->Ask("*RST;*CLS;*OPC?"); }

  ServedInstrument served;
  std::unique_ptr<Talk> referee;
  std::chrono::steady_clock::time_point now{};
  std::unique_ptr<ScpiInstrument> instrument;
};

std::string NameOf(const testing::TestParamInfo<OverLoopback::ParamType> &info) {
  const auto &[fault, fEver] = info.param;
  return std::string(fault.strWord) + (fEver ? "ForEver" : "Once");
}

TEST_P(OverLoopback, FaultAtAnyMessageOfADownloadChangesNothingAndTheNextOneWorks) {
  const Settings before = served.CurrentSettings();
  const std::size_t messages = MessagesOf([&] { Download(); });
  std::size_t failed = 0;
  for (std::size_t at = 1; at <= messages; ++at) {
    Order(at);
    const std::string strWhy = FailureOf([&] { Download(); });
    if (strWhy.empty()) {
      EXPECT_TRUE(Visible(before) == Visible(instrument->CurrentSettings())) << at;
    } else {
      ++failed;
      EXPECT_THAT(strWhy, testing::StartsWith(served.Address() + ": "));
    }
    EXPECT_TRUE(before == served.CurrentSettings()) << at;
    Mend();
    EXPECT_EQ("", FailureOf([&] { Download(); })) << at;
    EXPECT_TRUE(Visible(before) == Visible(instrument->CurrentSettings())) << at << ": " << strWhy;
  }
  std::printf("download: %zu messages, %zu failed\n", messages, failed);
  // Garbage within the words "No error" is the only fault that does no harm.
  EXPECT_GE(failed + (std::get<0>(GetParam()).strWord == std::string("GARB") ? 1 : 0), messages);
}

TEST_P(OverLoopback, FaultAtAnyMessageOfAnUploadLeavesTheInstrumentUnchangedOrChangedAsAWhole) {
  const Settings old = served.CurrentSettings();
  Settings all = old;
  SetEverything(all);
  const std::size_t messages = MessagesOf([&] { Upload(); });
  ASSERT_TRUE(all == served.CurrentSettings());
  int unchanged = 0, changed = 0, done = 0;
  for (std::size_t at = 1; at <= messages; ++at) {
    Restore();
    Order(at);
    const std::string strWhy = FailureOf([&] { Upload(); });
    referee->Ask("*OPC?");  // what has reached the instrument is carried out
    const bool fUnchanged = Visible(old) == Visible(served.CurrentSettings()),
               fChanged = all == served.CurrentSettings();
    EXPECT_TRUE(fUnchanged || fChanged) << at << ": " << strWhy;
    ++(strWhy.empty() ? done : fChanged ? changed : unchanged);
    Mend();
    EXPECT_EQ("", FailureOf([&] { Download(); })) << at;
    // What failed and could not be put back then is put back now.
    EXPECT_TRUE(Visible(strWhy.empty() ? all : old) == Visible(served.CurrentSettings())) << at << ": " << strWhy;
    instrument->TakeErrors();
  }
  std::printf("upload: %zu messages, %d unchanged, %d failed and changed as a whole, %d done\n", messages, unchanged,
              changed, done);
}

INSTANTIATE_TEST_SUITE_P(Faults, OverLoopback,
                         testing::Combine(testing::Values(LoopbackFault{"CUT", false}, LoopbackFault{"HALF", false},
                                                          LoopbackFault{"SIL", true}, LoopbackFault{"MUTE", true},
                                                          LoopbackFault{"GARB", true}, LoopbackFault{"ERR", true},
                                                          LoopbackFault{"ENDL", false}, LoopbackFault{"STAL", false}),
                                          testing::Bool()),
                         NameOf);

}  // namespace
}  // namespace tarvik::scpi
