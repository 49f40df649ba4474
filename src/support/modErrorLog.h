#pragma once

#include <string>

#include "support/Types.h"

namespace tarvik {

/// Reports a run-time failure: a stop box, and when it was answered one record in the log
/// file. The box names module and procedure when the driver's verbose form is on; asking for
/// that can fail and report in its turn, which is allowed three reports deep. A log that
/// cannot be written leaves as RunTimeError.
void LogError(const std::string &strModule, const std::string &strProc, Long lngErrNum,
              const std::string &strDescription);

/// Appends one record to the log file without any box.
void WriteLogRecord(const std::string &strModule, const std::string &strProc, Long lngErrNum,
                    const std::string &strDescription);

/// Stop box "Illegal case".
void ShowIllegalCase();

/// Stop box with the text.
void ShowStopMessage(const std::string &strText);

}  // namespace tarvik
