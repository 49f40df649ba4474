#pragma once

#include <string>

#include "support/Types.h"

namespace tarvik {

/// Reports a run-time failure: a stop box, and after it is answered one record in the log
/// file. The box names module and procedure if the driver's verbose flag is set; asking for
/// the flag can fail and report in turn, at most three levels deep. Throws RunTimeError if
/// the log cannot be written.
void LogError(const std::string &strModule, const std::string &strProc, Long lngErrNum,
              const std::string &strDescription);

/// Appends one record to the log file.
void WriteLogRecord(const std::string &strModule, const std::string &strProc, Long lngErrNum,
                    const std::string &strDescription);

/// Stop box "Illegal case".
void ShowIllegalCase();

/// Stop box with the text.
void ShowStopMessage(const std::string &strText);

}  // namespace tarvik
