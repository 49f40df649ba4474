#pragma once

/// Wrappers for driver calls. A failing status is thrown as RunTimeError with the driver's description,
/// and returned references are owned immediately. Nothing here allocates, except for strings and
/// arrays.

#include <string>
#include <type_traits>
#include <utility>

#include "automation/Abi.h"
#include "automation/AutomationArray.h"
#include "automation/AutomationString.h"
#include "automation/CallsAhead.h"
#include "automation/ErrorInfo.h"
#include "automation/Ref.h"
#include "support/RunTimeError.h"
#include "support/Types.h"
#include "support/UserEvent.h"

namespace tarvik {

namespace drivercall {

template <class Argument>
decltype(auto) Outgoing(Argument &&argument) {
  if constexpr (std::is_same_v<std::remove_cvref_t<Argument>, Boolean>)
    return automation::VariantBool{argument.Word()};
  else
    return std::forward<Argument>(argument);
}

}  // namespace drivercall

/// Calls an operation; error 91 for a null object. Error info left by an earlier call is cleared first.
template <class Interface, class... Parameters, class... Arguments>
void Call(const automation::Ref<Interface> &object,
          automation::Status (TARVIK_CALL Interface::*operation)(Parameters...), Arguments &&...arguments) {
  if (!object) RaiseError(ErrObjectNotSet);
  UserEvent::BeforeDriverCall();
  automation::ForgetErrorInfo();
  const automation::Status status = ((*object).*operation)(drivercall::Outgoing(std::forward<Arguments>(arguments))...);
  if (automation::Failed(status)) automation::CallsAhead::LeaveRehearsal();
  automation::Check(status);
}

/// Sends a value behind the selector that is always 0.
template <class Interface, class Value>
void CallSelected(const automation::Ref<Interface> &object,
                  automation::Status (TARVIK_CALL Interface::*operation)(Long *, Value),
                  std::type_identity_t<Value> value) {
  Long lngSelector = 0;
  Call(object, operation, &lngSelector, value);
}

/// Fetches an object, which may be null.
template <class Interface, class Child>
automation::Ref<Child> Fetch(const automation::Ref<Interface> &object,
                             automation::Status (TARVIK_CALL Interface::*operation)(Child **)) {
  automation::Ref<Child> child;
  Call(object, operation, child.Out());
  return child;
}

/// Fetches an object by its key.
template <class Interface, class Key, class Child>
automation::Ref<Child> Fetch(const automation::Ref<Interface> &object,
                             automation::Status (TARVIK_CALL Interface::*operation)(Key, Child **),
                             const std::type_identity_t<Key> &key) {
  automation::Ref<Child> child;
  Call(object, operation, key, child.Out());
  return child;
}

/// Queries the special interface; error 13 if the object does not have it. Null stays null.
template <class Special, class Generic>
automation::Ref<Special> Narrowed(const automation::Ref<Generic> &object) {
  automation::Ref<Special> special = automation::Narrow<Special>(object);
  if (object && !special) RaiseError(ErrTypeMismatch);
  return special;
}

/// Reads one value.
template <class Interface, class Value>
auto Read(const automation::Ref<Interface> &object, automation::Status (TARVIK_CALL Interface::*operation)(Value *)) {
  if constexpr (std::is_same_v<Value, automation::AutomationString>) {
    automation::String text;
    Call(object, operation, text.Out());
    return text.Text();
  } else {
    Value value{};
    Call(object, operation, &value);
    if constexpr (std::is_same_v<Value, automation::VariantBool>)
      return Boolean::FromWord(value);
    else
      return value;
  }
}

/// Reads one value behind the selector that is always 0.
template <class Interface, class Value>
Value ReadSelected(const automation::Ref<Interface> &object,
                   automation::Status (TARVIK_CALL Interface::*operation)(Long *, Value *)) {
  Long lngSelector = 0;
  Value value{};
  Call(object, operation, &lngSelector, &value);
  return value;
}

}  // namespace tarvik
