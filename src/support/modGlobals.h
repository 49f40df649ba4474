#pragma once

#include <functional>
#include <memory>

#include "support/DynamicArray.h"
#include "support/Export.h"
#include "support/Types.h"

namespace tarvik {

/// States of a page, and one command.
enum TabStates : Long {
  ePageIsCurrent = 0,         ///< agrees with the instrument, or nothing is known against it
  ePageNeedsDownloading = 1,  ///< a session was opened and the page has not been read yet
  ePageIsDirty = 2,           ///< the user changed something that is not uploaded yet
  ePageSetStatus = 3,         ///< no state: only recompute the highlights
};

/// Pages of the panel in tab order, and three values that are no pages.
enum TabNumEnum : Long {
  ePageInstr = 0,
  ePageMode = 1,
  ePageTiming = 2,
  ePageLevels = 3,
  ePagePattern = 4,
  ePageLimits = 5,
  ePageTrigLev = 6,
  ePageConfig = 7,
  ePageOptions = 8,
  eNumPages = 9,
  eAllPages = 10,
  eCurrPage = 11,
};

/// What the rooms below the panel need of it.
class TARVIK_EXPORT PanelReference {
 public:
  virtual ~PanelReference() = default;
  virtual void SetTabState(TabStates eState, TabNumEnum ePage) = 0;
};

/// What the rooms below the instrument class need of it.
class TARVIK_EXPORT InstrReference {
 public:
  virtual ~InstrReference() = default;
  /// Whether reports name module and procedure; asks the driver.
  virtual Boolean GetVerboseErrorMsg() = 0;
  /// Fills the addresses lngStartAddr to lngLastAddr with a sequence of period 2^lngBase - 1;
  /// false when that was not possible, the array is then as it was.
  virtual Boolean CalcPRBS(Long lngStartAddr, Long lngLastAddr, Long lngBase, ByteArray &arr) = 0;
};

/// The instrument interface of this thread; empty until its first use.
std::shared_ptr<InstrReference> &gobjInstr();

/// The panel shown last on this thread; null when there is none, so test it before use.
PanelReference *&gobjPanel();

/// Sets how the instrument interface is created on its first use; clsInstrInterface registers itself.
void SetInstrFactory(std::function<std::shared_ptr<InstrReference>()> factory);

/// gobjInstr, created if necessary. Null only if no factory is registered.
InstrReference *InstrOnFirstUse();

}  // namespace tarvik
