#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

#include "automation/Abi.h"
#include "support/Types.h"

namespace tarvik::test {

class DriverHook;

/// How a caller names an instrument: by text, by number, or by a variant of a type that no driver takes.
struct InstrumentKey {
  std::uint16_t intType = 0;
  std::string strName;
  Integer intNumber = 0;
  bool operator==(const InstrumentKey &) const = default;
};

/// The value of an argument. 16-bit numbers are Long here.
using Value = std::variant<Long, Double, bool, std::string, std::vector<Byte>, InstrumentKey>;

/// An argument as the contract declares it.
struct Parameter {
  enum Kind : std::uint8_t { Whole, Short, Real, Flag, Text, Bytes, Key, Object };

  Kind kind;
  bool fByReference;
  /// The caller gives a value, which for an argument by reference is there on entry.
  bool fGiven;
  /// The driver fills it.
  bool fFilled;
};

/// An operation of the contract.
struct Operation {
  static constexpr std::size_t NoInterface = ~std::size_t{0};

  std::size_t number;
  /// "IEdges.GetLeading"
  std::string_view strPath;
  std::span<const Parameter> parameters;
  /// The interface of the object that it hands out, by its place in the contract.
  std::size_t handed = NoInterface;
  /// The object is handed out as a generic reference, which the caller narrows.
  bool fGeneric = false;

  constexpr std::string_view Interface() const { return strPath.substr(0, strPath.find('.')); }
  constexpr std::string_view Name() const { return strPath.substr(strPath.find('.') + 1); }
  bool HandsObject() const { return handed != NoInterface; }
};

/// Every operation of the contract but its reserved places, each at its number.
std::span<const Operation> Operations();

/// What a policy keeps of one instrument. The driver's objects keep it alive.
struct HookedInstrument {
  virtual ~HookedInstrument() = default;
};

/// Where an object of the driver stands. The channel counts from 1; 0, or an empty quantity, where there is none.
struct HookedPlace {
  DriverHook *hook;
  std::shared_ptr<HookedInstrument> instrument = nullptr;
  Long lngChannel = 0;
  /// What is limited: "voltage" or "current".
  std::string_view strQuantity = "";
};

/// An argument as it came: a number, or the address of what was passed by reference.
union RawArgument {
  explicit RawArgument(Long lngValue) : lngNumber(lngValue) {}
  explicit RawArgument(Double dblValue) : dblNumber(dblValue) {}
  explicit RawArgument(automation::VariantBool intValue) : intNumber(intValue) {}
  explicit RawArgument(const automation::AutomationVariant &value) : variant(&value) {}
  template <class T>
  explicit RawArgument(T *address) : place(address) {}

  Long lngNumber;
  Double dblNumber;
  automation::VariantBool intNumber;
  const automation::AutomationVariant *variant;
  void *place;
};

/// One call of an operation. Arguments count from 0, in the order of the declaration.
class HookedCall {
 public:
  HookedCall(const Operation &called, const HookedPlace &at, std::span<const RawArgument> arrArguments)
      : operation(called), place(at), m_arrArguments(arrArguments) {}
  HookedCall(const HookedCall &) = delete;
  HookedCall &operator=(const HookedCall &) = delete;

  const Operation &operation;
  const HookedPlace &place;

  /// A value that the caller gave. T is one of the types of Value; another one raises std::bad_variant_access.
  template <class T>
  T In(std::size_t argument) const {
    return std::get<T>(Read(argument));
  }
  /// The value of any argument but an object, as it is now.
  Value Read(std::size_t argument) const;
  /// The value behind the selector, if there is one: what a setter of one value sets.
  template <class T>
  T InLast() const {
    return In<T>(m_arrArguments.size() - 1);
  }
  /// All that the caller gave.
  std::vector<Value> Given() const;
  /// All that was filled, as it is now.
  std::vector<Value> Filled() const;

  /// Fills the results in the order of the declaration. Numbers are converted to the type of their place.
  template <class... Results>
  void Fill(const Results &...results) {
    (Put(NextResult(), results), ...);
  }
  /// Writes into the caller's array, as far as it reaches.
  void FillBytes(const std::vector<Byte> &arrBytes);
  /// Puts a new array in place of the caller's.
  void ReplaceBytes(Long lngLowerBound, const std::vector<Byte> &arrBytes);
  /// The same with as many elements as told, of which those that there are stay.
  void ResizeBytes(std::size_t count);
  /// Writes over every text, or every real number, that was filled.
  void EmptyTexts();
  void OverwriteReals(Double dblValue);
  /// The lower bound of the caller's array; 1 without one.
  Long LowerBound() const;

  /// Hands out a new object of the contract. Its place follows from that of this object.
  void Hand() { HandAt(PlaceOfResult()); }
  /// The same for an instrument of the list.
  void Hand(std::shared_ptr<HookedInstrument> instrument);
  /// Hands out an object that has no interface of the contract. For generic references only.
  void HandUnknown();

  /// The interface of the object that was handed out; empty when there was none.
  std::string_view strHanded;

 private:
  std::size_t NextResult();
  std::size_t ArrayArgument() const;
  template <class Number>
  requires std::is_arithmetic_v<Number>
  void Put(std::size_t argument, Number value) { PutNumber(argument, static_cast<Double>(value)); }
  void Put(std::size_t argument, Boolean fValue) { PutNumber(argument, fValue ? 1 : 0); }
  void Put(std::size_t argument, std::string_view strText);
  void PutNumber(std::size_t argument, Double dblValue);
  HookedPlace PlaceOfResult() const;
  void HandAt(HookedPlace place);

  std::span<const RawArgument> m_arrArguments;
  std::uint32_t m_lngFilled = 0;
};

}  // namespace tarvik::test
