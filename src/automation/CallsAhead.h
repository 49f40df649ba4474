#pragma once

#include <cstdint>
#include <utility>

#include "automation/Abi.h"
#include "automation/Ref.h"
#include "support/Export.h"
#include "support/RunTimeError.h"

namespace tarvik::automation {

/// An object whose calls travel to another machine hands itself out for this interface, which has no operations. Those
/// of this machine do not know it.
inline constexpr Guid IidDistant{0x5B0B6E52, 0x4C7D, 0x4F0A, {0x9C, 0x31, 0x7E, 0x1D, 0x52, 0xA8, 0x60, 0x94}};

/// Announces the calls of an operation to a driver at a distance, which makes them together when the first one comes.
///
/// The operation is rehearsed: its calls are noted instead of made, settings succeed, and what the instrument has not
/// told yet ends the rehearsal. Then the operation runs, and each call gets its answer at its own place. Behind a call
/// that fails, or is answered otherwise than was foreseen, none is made before the operation comes to it, so that the
/// driver sees what it would see without. An operation that bears a failure goes on as it was rehearsed. A driver of
/// this machine is not rehearsed with.
class TARVIK_AUTOMATION_EXPORT CallsAhead {
 public:
  /// `rehearsal` makes the calls that will be made while this object lives, and nothing else that anybody notices. Of
  /// those within one another the outermost counts.
  template <class Rehearsal>
  CallsAhead(const Ref<IDispatch> &driver, Rehearsal &&rehearsal) : m_fCounts(Begin(driver.Get())) {
    if (!m_fCounts) return;
    const Rehearsing rehearsing;
    try {
      // The operation will raise an error of its own at its own place.
      IgnoreErrors(std::forward<Rehearsal>(rehearsal));
    } catch (const RehearsalOver &) {
    }
  }
  ~CallsAhead();
  CallsAhead(const CallsAhead &) = delete;
  CallsAhead &operator=(const CallsAhead &) = delete;

  /// Ends the rehearsal, if there is one: what follows is noticed, or nobody knows how it goes on.
  static void LeaveRehearsal();

  struct Current {
    std::uint64_t lngNumber = 0;  ///< another one for each; 0: there is none
    bool fRehearsing = false;
  };
  /// Of this thread.
  static Current OfThread();

 private:
  struct TARVIK_AUTOMATION_EXPORT Rehearsing {
    Rehearsing();
    Rehearsing(const Rehearsing &) = delete;
    Rehearsing &operator=(const Rehearsing &) = delete;
    ~Rehearsing();
  };
  class TARVIK_AUTOMATION_EXPORT RehearsalOver {};

  static bool Begin(IDispatch *pDriver);

  const bool m_fCounts;
};

}  // namespace tarvik::automation
