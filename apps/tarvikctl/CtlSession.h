#pragma once

#include <string>
#include <vector>

#include "CtlFailure.h"
#include "CtlHost.h"
#include "instrument/clsInstrInterface.h"
#include "settings/Setup.h"

namespace tarvik {

/// An instrument of the driver's list.
struct ListedInstrument {
  std::string strName;
  viInfo info;
};

/// The connection of the program to a driver, and the instrument that is open. Everything that fails raises CtlFailure.
class CtlSession {
 public:
  explicit CtlSession(CtlHost &host);
  CtlSession(const CtlSession &) = delete;
  CtlSession &operator=(const CtlSession &) = delete;
  ~CtlSession();

  std::vector<ListedInstrument> Instruments();
  void Open(const std::string &strName);

  clsInstrInterface &Instr() { return *m_instr; }
  CtlHost &TheHost() { return m_host; }
  /// Of the open instrument.
  Setup Identity();
  Setup Read();
  /// Sends all settings in one transaction.
  void Write(const Setup &setup);

 private:
  CtlHost &m_host;
  const std::shared_ptr<clsInstrInterface> m_instr;
};

}  // namespace tarvik
