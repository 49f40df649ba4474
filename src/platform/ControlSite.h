#pragma once

#include <string>

#include "support/Export.h"
#include "support/Types.h"

namespace tarvik {

/// The container of a control.
class TARVIK_EXPORT ControlSite {
 public:
  virtual ~ControlSite() = default;
  /// True at run time, false while the form is being designed.
  virtual Boolean UserMode() const = 0;
  /// Called when a property changed, at design time only.
  virtual void PropertyChanged(const std::string &strProperty) = 0;
  /// Called after each assignment by a form; a container can omit a property with its default from the file.
  virtual void PropertyAssigned(const std::string &, Boolean) {}
};

/// The site of controls at run time.
TARVIK_EXPORT ControlSite &RunTimeSite();

}  // namespace tarvik
