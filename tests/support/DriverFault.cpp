#include "DriverFault.h"

#include <algorithm>
#include <limits>

namespace tarvik::test {

namespace {

/// Bytes that no buffer of a caller has room for: the record of an instrument has 28, the patterns here a few.
constexpr std::size_t TooManyBytes = 200;

bool Fills(const Operation &operation, Parameter::Kind kind) {
  return !operation.Name().starts_with("Set") && std::ranges::any_of(operation.parameters, [&](const Parameter &one) {
    return one.kind == kind && (one.fFilled || kind == Parameter::Bytes);
  });
}

bool FillsAnything(const Operation &operation) {
  return std::ranges::any_of(std::array{Parameter::Whole, Parameter::Short, Parameter::Real, Parameter::Flag,
                                        Parameter::Text, Parameter::Bytes},
                             [&](Parameter::Kind kind) { return Fills(operation, kind); });
}

}  // namespace

const char *NameOf(DriverFault eFault) {
  constexpr const char *Names[] = {"status",      "nothing",      "unfilled", "wrong_object", "empty_text",
                                   "empty_array", "longer_array", "nan",      "delay"};
  return Names[static_cast<std::size_t>(eFault)];
}

bool Concerns(DriverFault eFault, const Operation &operation) {
  switch (eFault) {
    case DriverFault::Status:
    case DriverFault::Delay: return true;
    case DriverFault::Nothing: return operation.HandsObject();
    case DriverFault::Unfilled: return FillsAnything(operation);
    case DriverFault::WrongObject: return operation.fGeneric;
    case DriverFault::EmptyText: return Fills(operation, Parameter::Text);
    case DriverFault::ShorterArray:
    case DriverFault::LongerArray: return Fills(operation, Parameter::Bytes);
    case DriverFault::NotANumber: return Fills(operation, Parameter::Real);
  }
  return false;
}

void SpoilAnswer(HookedCall &call, DriverFault eFault) {
  switch (eFault) {
    case DriverFault::EmptyText: return call.EmptyTexts();
    case DriverFault::ShorterArray: return call.ResizeBytes(0);
    case DriverFault::LongerArray: return call.ResizeBytes(TooManyBytes);
    case DriverFault::NotANumber: return call.OverwriteReals(std::numeric_limits<Double>::quiet_NaN());
    default: return;
  }
}

}  // namespace tarvik::test
