#pragma once

#include "support/DynamicArray.h"
#include "support/Event.h"
#include "support/Types.h"

namespace tarvik {

/// Which channels return to zero. The flags are shown in three places: the pulse types of the mode page, the options of
/// the pattern editor and the locks of the widths. Who changes them says which of the first two are written, since the
/// side that started a change is not written again.
class RzFlags {
 public:
  struct Change {
    ChannelArray<Long> eType;  ///< signal format of each channel
    Boolean fSetGroup;         ///< the editor's options follow
    Boolean fUpdateCombos;     ///< the pulse types follow
  };

  /// Channel 1 or 2.
  Boolean operator[](Long lngChannel) const { return m_fRz[lngChannel]; }
  /// For calls that read the flags by reference. Raises nothing; SetRzFromFlags does so afterwards.
  BooleanArray &Array() { return m_fRz; }

  /// Takes the signal formats; each that is not return to zero counts as non-return to zero.
  void SetRzState(Long lngType1, Long lngType2, Boolean fSetGroup, Boolean fUpdateCombos);
  void SetRzFromFlags(Boolean fRz1, Boolean fRz2, Boolean fSetGroup, Boolean fUpdateCombos);

  /// Raised by every write, also one that changes nothing. Listeners that write options or pulse types cause nested
  /// writes; the outermost change has the last word.
  Event<const Change &> Changed;

 private:
  BooleanArray m_fRz{1, {False, False}};
};

}  // namespace tarvik
