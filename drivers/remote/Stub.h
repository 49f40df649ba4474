#pragma once

/// The server's half: an operation of the contract as data, with one function that reads its arguments,
/// calls the driver and writes what came back.

#include <span>
#include <string_view>

#include "remote/Marshal.h"

namespace tarvik::remote {

/// What a call into the driver left.
struct Outcome {
  Status status = automation::StatusOk;
  Writer filled;            ///< the arguments that came back; only after a success
  Ref<IUnknown> object;     ///< what was handed out, if anything
  bool fAllArrays = false;  ///< to be set: arrays come back also where the driver left them as they were
};

using OperationStub = void (*)(IUnknown &object, Reader &in, Outcome &outcome);
using ArgumentSkipper = void (*)(Reader &in);

struct Operation {
  std::string_view strName;
  OperationStub serve;
  ArgumentSkipper skip;  ///< reads the arguments of a call that is not made
  /// Number of the interface that comes back; KindNothing where the operation hands out no object.
  std::uint8_t intResultKind;
  /// Sent without waiting.
  bool fDeferred;
};

struct InterfaceTable {
  std::string_view strName;
  automation::Guid iid;
  std::span<const Operation> operations;
};

/// Whether it only tells something. The queues of errors and warnings are emptied by reading.
inline bool IsRead(const Operation &operation) {
  return operation.strName.starts_with("Get") && operation.strName != "GetErrors" && operation.strName != "GetWarnings";
}
/// Whether it hands something over and answers nothing but its success.
inline bool IsSetting(const Operation &operation) {
  return operation.strName.starts_with("Set") || operation.strName == "Transaction";
}

/// The contract, in the order of its declarations. The numbers on the wire are positions here.
std::span<const InterfaceTable> Contract();
/// Changes with any declaration of the contract.
std::uint64_t ContractFingerprint();

/// The arguments of one call. Members are made in their order, which is the order on the wire.
template <class... Args>
struct Arguments {
  explicit Arguments(Reader &) {}
  template <class Function, class... Passed>
  Status Apply(Function function, Passed... passed) {
    return function(passed...);
  }
  void Return(Outcome &) {}
};

template <class First, class... Rest>
struct Arguments<First, Rest...> {
  explicit Arguments(Reader &in) : first(in), rest(in) {}
  template <class Function, class... Passed>
  Status Apply(Function function, Passed... passed) {
    return rest.Apply(function, passed..., first.Pass());
  }
  void Return(Outcome &outcome) {
    if constexpr (requires { first.Return(outcome.filled, outcome.fAllArrays); })
      first.Return(outcome.filled, outcome.fAllArrays);
    else
      first.Return(outcome.filled);
    if constexpr (requires { first.Take(); }) outcome.object = first.Take();
    rest.Return(outcome);
  }

  Incoming<First> first;
  Arguments<Rest...> rest;
};

template <class Interface, class... Args>
void ServeOn(IUnknown &object, Status (TARVIK_CALL Interface::*operation)(Args...), Reader &in, Outcome &outcome) {
  Arguments<Args...> arguments(in);
  outcome.status =
      arguments.Apply([&](Args... args) { return (static_cast<Interface &>(object).*operation)(args...); });
  if (!automation::Failed(outcome.status)) arguments.Return(outcome);
}

template <auto operation>
void Serve(IUnknown &object, Reader &in, Outcome &outcome) {
  ServeOn(object, operation, in, outcome);
}

template <class Interface, class... Args>
void SkipOf(Status (TARVIK_CALL Interface::*)(Args...), Reader &in) {
  Arguments<Args...> arguments(in);
}

template <auto operation>
void Skip(Reader &in) {
  SkipOf(operation, in);
}

}  // namespace tarvik::remote
