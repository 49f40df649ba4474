#pragma once

#include <string>

#include "support/Export.h"
#include "support/Types.h"

namespace tarvik {

/// A control as the shared procedures and the frame see it. A control that lacks one of the
/// properties answers its use with run-time error 438.
class TARVIK_EXPORT Control {
 public:
  virtual ~Control() = default;

  /// The control's own flag; a disabled box around it does not show in it.
  virtual Boolean Enabled() const { RaiseError(ErrNoSuchProperty); }
  virtual void SetEnabled(Boolean) { RaiseError(ErrNoSuchProperty); }
  /// The control's own flag, whether or not its page is in front.
  virtual Boolean Visible() const { RaiseError(ErrNoSuchProperty); }
  virtual void SetVisible(Boolean) { RaiseError(ErrNoSuchProperty); }
  virtual void SetFocus() { RaiseError(ErrNoSuchProperty); }
};

/// One button of a group of which at most one is on.
class TARVIK_EXPORT OptionButtonControl : public Control {
 public:
  /// The number in the control array; error 343 for a button outside of any array.
  virtual Integer Index() const = 0;
  virtual const std::string &Tag() const = 0;
  virtual Boolean Value() const = 0;
  /// Turning a button on turns the others of its group off and raises its Click when it
  /// was off before.
  virtual void SetValue(Boolean fValue) = 0;
};

}  // namespace tarvik
