#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "remote/ServerLog.h"
#include "support/Types.h"

namespace tarvik::remote {

/// Writes into the log what a client did to an instrument: the settings of each transfer and how it ended, each setting
/// outside of one, and the commands.
class SessionJournal {
 public:
  using Log = std::function<void(const LogEvent &event)>;

  /// A call that reached the driver.
  struct Made {
    std::string strInstrument;
    std::string_view strInterface, strOperation;
    Long lngChannel = 0;  ///< 0: of the whole instrument
    bool fTransaction = false;
    bool fSwitchedOn = false;  ///< of an output
    bool fDone = false;
    std::string strWhy;  ///< of a failure
  };

  explicit SessionJournal(Log log) : m_log(std::move(log)) {}

  void Note(const Made &made);
  /// The transaction of the instrument has been committed, or the commit was refused.
  void NoteCommit(const std::string &strInstrument, bool fDone, const std::string &strWhy);
  /// It was aborted, by the client or when it left.
  void NoteAbort(const std::string &strInstrument);

 private:
  static std::string SettingOf(const Made &made);
  std::string TakeSettings(const std::string &strInstrument);

  const Log m_log;
  /// By instrument, each named once, in their order.
  std::map<std::string, std::vector<std::string>> m_settings;
};

}  // namespace tarvik::remote
