#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "common/Instrument.h"

namespace tarvik::driver {

/// The session that one instrument object has with an instrument. Several sessions with the same instrument may be
/// open; each sees what the others have set. A session is used by one thread at a time.
///
/// A transaction buffers the settings that are sent: the instrument sees them at the commit, all or none. What is read
/// meanwhile is what the instrument has in force, so that nobody reads a value that the instrument may still refuse.
class Session {
 public:
  explicit Session(std::shared_ptr<driver::Instrument> instrument) : m_instrument(std::move(instrument)) {}
  Session(const Session &) = delete;
  Session &operator=(const Session &) = delete;
  ~Session() { Close(); }

  driver::Instrument &Instrument() const { return *m_instrument; }
  const InstrumentDescription &Description() const { return m_instrument->Description(); }

  /// Opens, afresh if it was open. False when the instrument does not open, or when its identity is asked for and it
  /// does not tell four fields.
  bool Open(bool fIdQuery, bool fReset, bool fAutoDetectErrors);
  /// Ends the session and drops an open transaction.
  void Close();
  bool IsOpen() const { return m_fOpen; }

  /// Buffers the change in a transaction. Otherwise the instrument takes or refuses it at once: a refusal raises
  /// Rejected, or goes to the error queue when the driver is told not to look for errors.
  void Send(Change change);

  /// Each raises Rejected when there is (or for Begin: when there already is) a transaction; Abort never does.
  void Begin();
  /// The transaction is over, also when the instrument refuses its settings with Rejected.
  void Commit();
  void Abort();
  bool InTransaction() const { return m_buffered.has_value(); }
  std::size_t BufferedChanges() const { return m_buffered ? m_buffered->size() : 0; }

  /// Resets the instrument; settings buffered so far are dropped, an open transaction stays open.
  void Reset();

  bool fVerbose = false;
  bool fAutoDetectErrors = true;

  static constexpr Long DefaultTimeout = 5000;
  /// How long an answer of the instrument may take, milliseconds.
  Long Timeout() const { return m_lngTimeout; }
  void SetTimeout(Long lngMilliseconds);

 private:
  std::shared_ptr<driver::Instrument> m_instrument;
  bool m_fOpen = false;
  Long m_lngTimeout = DefaultTimeout;
  std::optional<std::vector<Change>> m_buffered;
};

}  // namespace tarvik::driver
