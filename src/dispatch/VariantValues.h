#pragma once

#include <string>
#include <variant>
#include <vector>

#include "automation/Abi.h"
#include "automation/Ref.h"
#include "support/DynamicArray.h"
#include "support/Types.h"

namespace tarvik {

/// What an argument or a result of the dispatch interface can be.
enum class ValueKind {
  BooleanValue,
  IntegerValue,
  LongValue,
  DoubleValue,
  StringValue,
  ByteArrayValue,
  BooleanArrayValue,
  ObjectValue,
};

/// Its value on this side; empty where there is none.
using Value = std::variant<std::monostate, Boolean, Integer, Long, Double, std::string, ByteArray, BooleanArray,
                           automation::Ref<automation::IDispatch>>;

/// One parameter of an operation.
struct Parameter {
  const char *strName;
  ValueKind eKind;
  /// Default of an optional argument; empty: the argument is required.
  Value vDefault{};
  /// In and out; a caller that passes it by value does not receive the change.
  bool fByRef = false;
  /// For an object: the record that it has to be; empty: any object.
  const char *strRecord = "";

  bool IsOptional() const { return !std::holds_alternative<std::monostate>(vDefault); }
};

/// Reads a variant as a value of this kind. Numbers convert to one another as long as they fit (rounded half to even),
/// and nothing else converts. Answers StatusTypeMismatch or StatusOverflow and leaves the value alone otherwise.
automation::Status ReadVariant(const automation::AutomationVariant &vArgument, ValueKind eKind, Value &vValue);

/// Whether a changed value of this kind could be put back where a variant by reference points.
bool CanWriteBack(const automation::AutomationVariant &vArgument, ValueKind eKind);
/// Writes it back; a variant that refers to nothing is left unchanged.
void WriteBack(automation::AutomationVariant &vArgument, const Value &vValue);

/// A new variant with the value; what it holds belongs to the receiver.
automation::AutomationVariant ToVariant(const Value &vValue);
/// Releases what the variant owns and makes it empty.
void ClearVariant(automation::AutomationVariant &vValue);

}  // namespace tarvik
