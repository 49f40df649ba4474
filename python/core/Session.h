#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "PythonHost.h"
#include "instrument/clsInstrInterface.h"
#include "settings/Setup.h"

namespace tarvik::python {

/// An instrument of the driver's list.
struct Listed {
  std::string strName;
  viInfo info;
};

/// A connection to a driver, and the instrument that is open. Everything that goes wrong raises Failure.
///
/// One thread at a time: an operation is refused while another thread's runs, and while another thread holds the
/// session for a transaction. To be called without the interpreter's lock.
class Session {
 public:
  /// An empty server is this machine, an empty driver the one without a name.
  Session(std::string strServer, const std::string &strDriver);
  Session(const Session &) = delete;
  Session &operator=(const Session &) = delete;
  ~Session();

  std::vector<Listed> Instruments();
  void Open(const std::string &strName);
  /// Ends the session with the instrument and the connection; failures are passed over.
  void Close();
  bool IsOpen() const { return m_fOpen; }

  /// Whose settings these are, and what it lacks; the settings are those of a fresh Setup.
  Setup Identity() const { return m_identity; }
  /// A sum of SetupPart, read into the setup.
  Setup Read(Setup setup, Long eParts);
  /// Sends these parts in one transaction. What the instrument refuses, it takes none of.
  void Write(const Setup &setup, Long eParts);

  /// Reset and calibration have no text.
  std::string Command(InstrCommands eCommand);
  /// What the instrument's error queue holds.
  std::vector<std::string> Errors();
  PatternStream Prbs(Long lngBase, Long lngLength);
  Long Timeout();
  void SetTimeout(Long lngMilliseconds);

  /// Keeps other threads out until Release.
  void Hold();
  void Release();

  /// What the instrument warned of since the last call.
  std::vector<std::string> TakeWarnings();

 private:
  class Claim;

  /// Runs one operation on the instrument class and hands back what it told. Where the operation answers false, that
  /// is raised as an exception of the named class, and strOtherwise where nothing was told; a null class raises
  /// nothing.
  Told Run(const std::function<bool(clsInstrInterface &)> &operation, const char *strClass,
           const std::string &strOtherwise = {});
  void RequireOpen() const;
  void Drop();

  const std::string m_strServer;
  std::shared_ptr<clsInstrInterface> m_instr;
  Setup m_identity;
  bool m_fConnected = false;
  bool m_fOpen = false;
  std::vector<std::string> m_arrWarnings;

  std::mutex m_mutex;  ///< guards the two below
  std::thread::id m_owner;
  int m_intClaims = 0;
};

}  // namespace tarvik::python
