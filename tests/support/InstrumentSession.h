#pragma once

#include <memory>
#include <string>
#include <vector>

#include "RecordingHost.h"
#include "StandInDriver.h"
#include "instrument/clsInstrInterfacePrivate.h"

namespace tarvik::test {

/// The box of an operation without an open session.
inline constexpr const char *OfflineBox =
    "box information: You need to be online to an instrument to perform this operation";

/// A recording host, a stand-in driver and the one instance between them. Events are kept as "Event: text".
class InstrumentSession {
 public:
  InstrumentSession() { Renew(); }
  InstrumentSession(const InstrumentSession &) = delete;
  InstrumentSession &operator=(const InstrumentSession &) = delete;
  ~InstrumentSession() { gobjInstr().reset(); }

  /// Resets everything; the driver knows "Alpha" in this configuration, not connected and not open.
  void Renew(const StandInConfig &config = {}) {
    gobjInstr().reset();
    host.Reset();
    driver.Reset();
    driver.Add("Alpha", config);
    instr = std::make_shared<clsInstrInterface>();
    gobjInstr() = instr;
    const auto keep = [this](const char *strEvent) {
      return [this, strEvent](const std::string &strText) { arrEvents.push_back(strEvent + (": " + strText)); };
    };
    instr->StatusMessage.Connect(keep("StatusMessage"));
    instr->InstrError.Connect(keep("InstrError"));
    instr->InstrWarnings.Connect(keep("InstrWarnings"));
    Forget();
  }
  /// The same with the session open.
  void Open(const StandInConfig &config = {}) {
    Renew(config);
    instr->Connect();
    instr->OpenInstrument("Alpha");
    Forget();
  }
  /// Forgets what was recorded so far.
  void Forget() {
    host.arrEntries.clear();
    driver.arrTrace.clear();
    arrEvents.clear();
  }

  bool InTransaction() const { return clsInstrInterface::Private::Of(*instr).m_TransActive; }
  bool InGlobalTransaction() const { return clsInstrInterface::Private::Of(*instr).m_GlobalTrans; }

  RecordingHost host;
  StandInDriver driver;
  std::vector<std::string> arrEvents;
  std::shared_ptr<clsInstrInterface> instr;
};

}  // namespace tarvik::test
