#pragma once

#include <cstdint>

#include "support/Export.h"

namespace tarvik::automation {

/// While one lives, this thread reads much of an instrument in the order in which it always does. A driver at a
/// distance may then ask for what will follow together with what is asked; one of this machine takes no notice.
class TARVIK_AUTOMATION_EXPORT ReadAhead {
 public:
  /// `strName`, a literal, tells one order from another; null is none. Of those within one another the outermost
  /// counts.
  explicit ReadAhead(const char *strName);
  ~ReadAhead();
  ReadAhead(const ReadAhead &) = delete;
  ReadAhead &operator=(const ReadAhead &) = delete;

  struct Current {
    const char *strName = nullptr;  ///< null: there is none
    std::uint64_t lngNumber = 0;    ///< another one for each
  };
  /// Of this thread.
  static Current OfThread();

 private:
  const bool m_fCounts;
};

}  // namespace tarvik::automation
