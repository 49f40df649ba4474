#pragma once

#include <memory>
#include <string>
#include <utility>

#include "DriverScript.h"
#include "automation/AutomationString.h"
#include "automation/ErrorInfo.h"
#include "automation/Object.h"
#include "instrument/KolvenDriver.h"

namespace tarvik::paneltest {

using automation::Ref;
using automation::Status;
using automation::StatusOk;
using automation::VariantBool;

/// Where an object of the driver stands: the script, the instrument, the channel, and what is limited.
struct Place {
  DriverScript *script;
  std::shared_ptr<InstrumentScript> instrument = nullptr;
  Long lngChannel = 0;
  const char *strQuantity = "";
};

/// Base of the scripted driver's objects: a leaf call is written down, then it fails as scripted or has its effect.
template <class Interface>
class ScriptedObject : public automation::Object<Interface> {
 public:
  explicit ScriptedObject(Place place) : m_place(std::move(place)) {}

 protected:
  const Place &At() const { return m_place; }
  DriverScript &Script() const { return *m_place.script; }
  InstrumentScript &Instrument() const { return *m_place.instrument; }

  template <class Effect>
  Status Leaf(const char *strName, const Json &arguments, Effect &&effect) const {
    if (const auto failure = Script().Enter(strName, arguments))
      return automation::Fail(failure->lngNumber, failure->strText);
    effect();
    return StatusOk;
  }
  Status Leaf(const char *strName, const Json &arguments) const {
    return Leaf(strName, arguments, [] {});
  }

  /// Reads the scripted answer of the channel at which the object stands.
  template <class Value>
  Status Answer(const char *strName, const Json &arguments, const char *strField, Value *pValue) const {
    return Leaf(strName, arguments, [&] { *pValue = Converted<Value>(Script().Answer(strField, m_place.lngChannel)); });
  }
  template <class Value>
  Status ChannelAnswer(const char *strName, const char *strField, Value *pValue) const {
    return Answer(strName, Json::array({m_place.lngChannel}), strField, pValue);
  }
  template <class Value>
  Status PlainAnswer(const char *strName, const char *strField, Value *pValue) const {
    return Answer(strName, Json::array(), strField, pValue);
  }
  Status Text(const char *strName, const std::string &strText, automation::AutomationString *pText) const {
    return Leaf(strName, Json::array(), [&] { *pText = automation::AllocString(strText); });
  }

  template <class Class, class Target>
  Status Hand(Target **ppObject, Place place) const {
    *ppObject = automation::MakeObject<Class>(std::move(place)).Detach();
    return StatusOk;
  }
  template <class Class, class Target>
  Status Hand(Target **ppObject) const {
    return Hand<Class>(ppObject, m_place);
  }

 private:
  template <class Value>
  static Value Converted(Double dblValue) {
    if constexpr (std::is_same_v<Value, VariantBool>)
      return dblValue != 0 ? VariantBool{-1} : VariantBool{0};
    else
      return static_cast<Value>(dblValue);
  }

  Place m_place;
};

inline bool IsTrue(VariantBool value) { return value != 0; }

}  // namespace tarvik::paneltest
