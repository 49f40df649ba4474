#include "Session.h"

#include <algorithm>
#include <limits>

#include "Failure.h"
#include "automation/Activation.h"
#include "instrument/KolvenDriver.h"
#include "instrument/ListedName.h"
#include "settings/SetupTransfer.h"
#include "support/ConnectionLoss.h"
#include "support/Conversions.h"

namespace tarvik::python {

namespace {

constexpr const char *NoReason = "the driver does not say why";

/// The names of the list, for somebody who has mistaken one.
std::string Known(const std::vector<Listed> &arrInstruments) {
  if (arrInstruments.empty()) return "the driver knows none";
  std::string strNames;
  for (const Listed &instrument : arrInstruments) strNames += (strNames.empty() ? "" : ", ") + instrument.strName;
  return "the driver knows " + strNames;
}

std::vector<std::string> Lines(const std::string &strText) {
  std::vector<std::string> arrLines;
  for (const std::string &strLine : Split(Replace(strText, "\r\n", "\n"), '\n'))
    if (std::string strOne = Trim(strLine); !strOne.empty()) arrLines.push_back(std::move(strOne));
  return arrLines;
}

/// The first thing that went wrong: the rest follows from it.
Failure WhatFailed(const Told &told, const char *strClass, const std::string &strOtherwise = NoReason) {
  if (!told.arrFailures.empty()) {
    const auto &[lngNumber, strText] = told.arrFailures.front();
    return {strClass, lngNumber, strText};
  }
  const std::string strText = told.arrBoxes.empty() ? strOtherwise : told.arrBoxes.front();
  return {strClass, ErrCannotCreateObject, strText};
}

/// The choice of a driver is one for the process. It is made for a single creation here, so that sessions with
/// different drivers stand side by side.
class DriverForCreation {
 public:
  explicit DriverForCreation(const std::string &strDriver)
      : m_lock(TheMutex()), m_strBefore(automation::ChosenDriver(kolven::DriverProgId)) {
    automation::ChooseDriver(kolven::DriverProgId, strDriver);
  }
  DriverForCreation(const DriverForCreation &) = delete;
  DriverForCreation &operator=(const DriverForCreation &) = delete;
  ~DriverForCreation() { automation::ChooseDriver(kolven::DriverProgId, m_strBefore); }

 private:
  static std::mutex &TheMutex() {
    static std::mutex mutex;
    return mutex;
  }

  const std::lock_guard<std::mutex> m_lock;
  const std::string m_strBefore;
};

/// gobjInstr of the thread: the report of a failure asks it for the form of its text.
class InForce {
 public:
  explicit InForce(const std::shared_ptr<clsInstrInterface> &instr) : m_before(gobjInstr()) { gobjInstr() = instr; }
  InForce(const InForce &) = delete;
  InForce &operator=(const InForce &) = delete;
  ~InForce() { gobjInstr() = m_before; }

 private:
  const std::shared_ptr<InstrReference> m_before;
};

}  // namespace

/// The session is this thread's for as long as the object lives.
class Session::Claim {
 public:
  explicit Claim(Session &session) : m_session(session) { session.Hold(); }
  Claim(const Claim &) = delete;
  Claim &operator=(const Claim &) = delete;
  ~Claim() { m_session.Release(); }

 private:
  Session &m_session;
};

Session::Session(std::string strServer, const std::string &strDriver)
    : m_strServer(std::move(strServer)), m_instr(std::make_shared<clsInstrInterface>()) {
  m_instr->LetWarningsEnabled(True);
  const DriverForCreation creation(strDriver);
  Run([](clsInstrInterface &instr) { return instr.Connect(); }, "ConnectError");
  m_fConnected = true;
}

Session::~Session() { Drop(); }

void Session::Hold() {
  const std::lock_guard lock(m_mutex);
  const auto own = std::this_thread::get_id();
  if (m_intClaims > 0 && m_owner != own)
    throw Failure("BusyError", ErrPermissionDenied, "the instrument is in use by another thread");
  m_owner = own;
  ++m_intClaims;
}

void Session::Release() {
  const std::lock_guard lock(m_mutex);
  --m_intClaims;
}

Told Session::Run(const std::function<bool(clsInstrInterface &)> &operation, const char *strClass,
                  const std::string &strOtherwise) {
  const Claim claim(*this);
  if (!m_instr) throw Failure("ClosedError", ErrObjectNotSet, "the session is closed");
  Told told;
  bool fDone = false;
  {
    const PythonHost::Operation running(told, m_strServer);
    const InForce inForce(m_instr);
    const auto lost = ConnectionLost().ConnectScoped([&](const std::string &strWhy) {
      if (told.strConnectionLost.empty()) told.strConnectionLost = strWhy;
    });
    const auto failed = FailureNoted().ConnectScoped(
        [&](Long lngNumber, const std::string &strText) { told.arrFailures.emplace_back(lngNumber, strText); });
    fDone = operation(*m_instr);
  }
  m_arrWarnings.insert(m_arrWarnings.end(), told.arrWarnings.begin(), told.arrWarnings.end());
  if (!told.strConnectionLost.empty()) {
    const Failure failure = WhatFailed(told, m_fConnected ? "ConnectionLostError" : "ConnectError");
    Drop();
    throw failure;
  }
  if (!fDone && strClass) throw WhatFailed(told, strClass, strOtherwise.empty() ? NoReason : strOtherwise);
  return told;
}

void Session::RequireOpen() const {
  if (!m_fOpen) throw Failure("ClosedError", ErrObjectNotSet, "the session is closed");
}

std::vector<Listed> Session::Instruments() {
  std::vector<Listed> arrInstruments;
  const Told told = Run(
      [&](clsInstrInterface &instr) {
        Listed next;
        for (Integer i = 1; instr.GetViInfo(i, next.info, next.strName); ++i) arrInstruments.push_back(next);
        return true;
      },
      "DriverError");
  // The end of the list and a driver that fails have the same answer, but only one of them tells why.
  if (!told.arrFailures.empty()) throw WhatFailed(told, "DriverError");
  return arrInstruments;
}

void Session::Open(const std::string &strName) {
  const Claim claim(*this);
  const std::vector<Listed> arrKnown = Instruments();
  std::vector<std::string> arrNames;
  for (const Listed &listed : arrKnown) arrNames.push_back(listed.strName);
  const auto strListed = ListedName(arrNames, strName);
  if (!strListed)
    throw Failure("UnknownInstrumentError", ErrNoSuchElement,
                  "there is no instrument \"" + strName + "\"; " + Known(arrKnown));
  Run([&](clsInstrInterface &instr) { return instr.OpenInstrument(*strListed); }, "DriverError",
      "\"" + strName + "\" does not open");
  Run([&](clsInstrInterface &instr) { return ReadIdentity(instr, m_identity); }, "DriverError");
  m_fOpen = true;
}

void Session::Close() {
  const Claim claim(*this);
  Drop();
}

void Session::Drop() {
  m_fOpen = false;
  if (!m_instr) return;
  // A driver that fails here has nothing to say that matters any more.
  Told told;
  const PythonHost::Operation running(told, m_strServer);
  const InForce inForce(m_instr);
  m_instr->CloseInstrument();
  m_instr.reset();
}

Setup Session::Read(Setup setup, Long eParts) {
  RequireOpen();
  Run([&](clsInstrInterface &instr) { return ReadParts(instr, setup, eParts); }, "DriverError");
  return setup;
}

void Session::Write(const Setup &setup, Long eParts) {
  RequireOpen();
  SetupWritten written;
  const Told told = Run(
      [&](clsInstrInterface &instr) {
        written = WriteParts(instr, setup, eParts);
        return true;
      },
      nullptr);
  if (written.fDone) {
    // Only the poll for warnings is left to fail then.
    for (const auto &[lngNumber, strText] : told.arrFailures) m_arrWarnings.push_back(strText);
    return;
  }
  // The instrument refuses by its own words at the commit, or before anything is sent; otherwise the driver failed.
  const bool fRefused = !told.arrErrors.empty() || (told.arrFailures.empty() && !written.strReasons.empty());
  if (!fRefused) throw WhatFailed(told, "DriverError");
  const std::vector<std::string> arrReasons = Lines(written.strReasons);
  std::string strText;
  for (const std::string &strReason : arrReasons) strText += (strText.empty() ? "" : "\n") + strReason;
  const Long lngNumber = told.arrFailures.empty() ? Long{ErrInvalidPropertyValue} : told.arrFailures.front().first;
  throw Failure("RefusedError", lngNumber, strText, arrReasons);
}

std::string Session::Command(InstrCommands eCommand) {
  RequireOpen();
  std::string strText;
  Run([&](clsInstrInterface &instr) { return instr.InstrumentCommands(eCommand, &strText); }, "DriverError");
  return strText;
}

std::vector<std::string> Session::Errors() {
  RequireOpen();
  const Told told = Run([](clsInstrInterface &instr) { return instr.CheckErrors(True), true; }, nullptr);
  if (!told.arrFailures.empty()) throw WhatFailed(told, "DriverError");
  return told.arrErrors;
}

PatternStream Session::Prbs(Long lngBase, Long lngLength) {
  RequireOpen();
  ByteArray arr(1, std::vector<Byte>(static_cast<std::size_t>((lngLength + 7) / 8)));
  Run([&](clsInstrInterface &instr) { return instr.CalcPRBS(1, lngLength, lngBase, arr); }, "DriverError");
  PatternStream stream{lngLength, arr.Elements()};
  stream.arrBytes.resize(static_cast<std::size_t>((lngLength + 7) / 8));
  if (lngLength % 8 != 0)
    stream.arrBytes.back() = static_cast<Byte>(stream.arrBytes.back() & 0xFF << (8 - lngLength % 8));
  return stream;
}

Long Session::Timeout() {
  RequireOpen();
  Long lngTimeout = 0;
  const Told told = Run([&](clsInstrInterface &instr) { return lngTimeout = instr.GetPnpTimeout(), true; }, nullptr);
  if (!told.arrFailures.empty()) throw WhatFailed(told, "DriverError");
  return lngTimeout;
}

void Session::SetTimeout(Long lngMilliseconds) {
  RequireOpen();
  const Told told = Run([&](clsInstrInterface &instr) { return instr.LetPnpTimeout(lngMilliseconds), true; }, nullptr);
  if (!told.arrFailures.empty()) throw WhatFailed(told, "DriverError");
}

std::vector<std::string> Session::TakeWarnings() {
  const Claim claim(*this);
  return std::exchange(m_arrWarnings, {});
}

}  // namespace tarvik::python
