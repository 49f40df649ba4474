#pragma once

#include <string>

#include "support/Export.h"
#include "support/Types.h"

namespace tarvik {

/// What a control asks of the container it stands in.
class TARVIK_EXPORT ControlSite {
 public:
  virtual ~ControlSite() = default;
  /// True at run time, false while the form is being designed.
  virtual Boolean UserMode() const = 0;
  /// Takes the report that a property changed; controls report at design time only.
  virtual void PropertyChanged(const std::string &strProperty) = 0;
  /// Told after each assignment by way of the form, and whether the property has its default now, so that a container
  /// can leave it out of the file.
  virtual void PropertyAssigned(const std::string &, Boolean) {}
};

/// The container of a running form.
TARVIK_EXPORT ControlSite &RunTimeSite();

}  // namespace tarvik
