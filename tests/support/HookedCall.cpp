#include "HookedCall.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "HookedObject.h"
#include "automation/AutomationArray.h"
#include "automation/AutomationString.h"

namespace tarvik::test {

namespace {

/// The kind of object that no narrowing accepts.
class IUnknownThing : public automation::IDispatch {
 public:
  static constexpr automation::Guid Iid{0x7F3C1B52, 0x40A8, 0x8E11, {0x9B, 0x07, 0x66, 0x21, 0xD4, 0x93, 0x5A, 0x0C}};

 protected:
  ~IUnknownThing() = default;
};
constexpr std::string_view UnknownThing = "IUnknownThing";

template <class T>
T &At(const RawArgument &argument) {
  return *static_cast<T *>(argument.place);
}

/// The place is declared as a pointer to another interface, whose first base the object's dispatch interface is.
void StoreObject(const RawArgument &argument, automation::IDispatch *pObject) {
  std::memcpy(argument.place, &pObject, sizeof pObject);
}

InstrumentKey KeyOf(const automation::AutomationVariant &variant) {
  InstrumentKey key{variant.vt, {}, 0};
  if (variant.vt == automation::VtString) key.strName = automation::ToText(variant.bstrVal);
  if (variant.vt == automation::VtInteger) key.intNumber = variant.iVal;
  return key;
}

}  // namespace

Value HookedCall::Read(std::size_t argument) const {
  const RawArgument &raw = m_arrArguments[argument];
  const auto [kind, fByReference, fGiven, fFilled] = operation.parameters[argument];
  switch (kind) {
    case Parameter::Whole: return fByReference ? At<Long>(raw) : raw.lngNumber;
    case Parameter::Short: return Long{fByReference ? At<Integer>(raw) : raw.intNumber};
    case Parameter::Real: return fByReference ? At<Double>(raw) : raw.dblNumber;
    case Parameter::Flag: return (fByReference ? At<automation::VariantBool>(raw) : raw.intNumber) != 0;
    case Parameter::Text: return automation::ToText(At<automation::AutomationString>(raw));
    case Parameter::Bytes: return automation::ToByteArray(At<automation::AutomationArray *>(raw)).Elements();
    case Parameter::Key: return KeyOf(*raw.variant);
    case Parameter::Object: break;
  }
  throw std::logic_error(std::string(operation.strPath) + ": an object has no value");
}

std::vector<Value> HookedCall::Given() const {
  std::vector<Value> arrValues;
  for (std::size_t k = 0; k < m_arrArguments.size(); ++k)
    if (operation.parameters[k].fGiven) arrValues.push_back(Read(k));
  return arrValues;
}

std::vector<Value> HookedCall::Filled() const {
  std::vector<Value> arrValues;
  for (std::size_t k = 0; k < m_arrArguments.size(); ++k)
    if (m_lngFilled >> k & 1) arrValues.push_back(Read(k));
  return arrValues;
}

std::size_t HookedCall::NextResult() {
  for (std::size_t k = 0; k < m_arrArguments.size(); ++k)
    if (operation.parameters[k].fFilled && !(m_lngFilled >> k & 1)) {
      m_lngFilled |= std::uint32_t{1} << k;
      return k;
    }
  throw std::logic_error(std::string(operation.strPath) + ": no result is left to be filled");
}

void HookedCall::PutNumber(std::size_t argument, Double dblValue) {
  const RawArgument &raw = m_arrArguments[argument];
  switch (operation.parameters[argument].kind) {
    case Parameter::Whole: At<Long>(raw) = static_cast<Long>(dblValue); return;
    case Parameter::Short: At<Integer>(raw) = static_cast<Integer>(dblValue); return;
    case Parameter::Real: At<Double>(raw) = dblValue; return;
    case Parameter::Flag: At<automation::VariantBool>(raw) = Boolean(dblValue != 0).Word(); return;
    default: throw std::logic_error(std::string(operation.strPath) + ": this result is no number");
  }
}

void HookedCall::Put(std::size_t argument, std::string_view strText) {
  if (operation.parameters[argument].kind != Parameter::Text)
    throw std::logic_error(std::string(operation.strPath) + ": this result is no text");
  At<automation::AutomationString>(m_arrArguments[argument]) = automation::AllocString(strText);
}

std::size_t HookedCall::ArrayArgument() const {
  const auto found = std::ranges::find(operation.parameters, Parameter::Bytes, &Parameter::kind);
  if (found == operation.parameters.end())
    throw std::logic_error(std::string(operation.strPath) + ": there is no array");
  return static_cast<std::size_t>(found - operation.parameters.begin());
}

void HookedCall::FillBytes(const std::vector<Byte> &arrBytes) {
  const std::size_t k = ArrayArgument();
  const auto &array = *At<automation::AutomationArray *>(m_arrArguments[k]);
  const auto count = std::min<std::size_t>(arrBytes.size(), array.rgsabound[0].cElements);
  std::copy_n(arrBytes.begin(), count, static_cast<Byte *>(array.pvData));
  m_lngFilled |= std::uint32_t{1} << k;
}

void HookedCall::ReplaceBytes(Long lngLowerBound, const std::vector<Byte> &arrBytes) {
  const std::size_t k = ArrayArgument();
  auto *&pArray = At<automation::AutomationArray *>(m_arrArguments[k]);
  automation::FreeArray(pArray);
  pArray = automation::AllocByteArray(lngLowerBound, arrBytes.data(), static_cast<std::uint32_t>(arrBytes.size()));
  m_lngFilled |= std::uint32_t{1} << k;
}

void HookedCall::ResizeBytes(std::size_t count) {
  std::vector<Byte> arrBytes = In<std::vector<Byte>>(ArrayArgument());
  arrBytes.resize(count);
  ReplaceBytes(LowerBound(), arrBytes);
}

void HookedCall::EmptyTexts() {
  for (std::size_t k = 0; k < m_arrArguments.size(); ++k) {
    if (!(m_lngFilled >> k & 1) || operation.parameters[k].kind != Parameter::Text) continue;
    auto &text = At<automation::AutomationString>(m_arrArguments[k]);
    automation::FreeString(text);
    text = automation::AllocString("");
  }
}

void HookedCall::OverwriteReals(Double dblValue) {
  for (std::size_t k = 0; k < m_arrArguments.size(); ++k)
    if (m_lngFilled >> k & 1 && operation.parameters[k].kind == Parameter::Real) PutNumber(k, dblValue);
}

Long HookedCall::LowerBound() const {
  const auto *pArray = At<automation::AutomationArray *>(m_arrArguments[ArrayArgument()]);
  return pArray ? automation::ToByteArray(pArray).LowerBound() : 1;
}

HookedPlace HookedCall::PlaceOfResult() const {
  HookedPlace result = place;
  if (operation.strPath == "IChannelList.GetItem") result.lngChannel = In<Long>(0);
  if (operation.strPath == "IChannel.GetVoltageLimits") result.strQuantity = "voltage";
  if (operation.strPath == "IChannel.GetCurrentLimits") result.strQuantity = "current";
  return result;
}

void HookedCall::Hand(std::shared_ptr<HookedInstrument> instrument) { HandAt({place.hook, std::move(instrument)}); }

void HookedCall::HandAt(HookedPlace at) {
  strHanded = HookedInterface(operation.handed);
  StoreObject(m_arrArguments.back(), MakeHookedObject(operation.handed, std::move(at)));
}

void HookedCall::HandUnknown() {
  if (!operation.fGeneric) throw std::logic_error(std::string(operation.strPath) + ": the reference is not generic");
  strHanded = UnknownThing;
  StoreObject(m_arrArguments.back(), automation::MakeObject<HookedObject<IUnknownThing>>(place, UnknownThing).Detach());
}

automation::Ref<automation::IUnknown> MakeForeignObject(DriverHook &hook) {
  return automation::MakeObject<HookedObject<IUnknownThing>>(HookedPlace{&hook}, UnknownThing);
}

}  // namespace tarvik::test
