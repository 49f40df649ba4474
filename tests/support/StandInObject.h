#pragma once

/// What the objects of the stand-in driver are made of.

#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include "StandInDriver.h"
#include "automation/AutomationString.h"
#include "automation/ErrorInfo.h"
#include "automation/Object.h"

namespace tarvik::test {

using automation::Ref;
using automation::Status;
using automation::StatusOk;
using automation::VariantBool;

/// A truth value in a line of the trace.
struct Flag {
  bool fValue;
};

inline std::string Word(Flag flag) { return flag.fValue ? "True" : "False"; }
inline std::string Word(Long lngValue) { return std::to_string(lngValue); }
inline std::string Word(Double dblValue) { return ToText17(dblValue); }
inline std::string Word(const std::string &strText) { return Json(strText).dump(); }
inline std::string Word(const std::vector<Byte> &arrBytes) { return "<" + ToHex(arrBytes) + ">"; }

template <class... Values>
std::string Words(const Values &...values) {
  std::string strWords;
  ((strWords += (strWords.empty() ? "" : ", ") + Word(values)), ...);
  return strWords;
}

/// An operation with its arguments as the trace shows it.
template <class... Values>
std::string Line(const char *strOperation, const Values &...values) {
  return std::string(strOperation) + "(" + Words(values...) + ")";
}

/// Where an object stands: the driver, the instrument, and the channel or one of its limits.
struct Place {
  StandInDriver *driver;
  std::shared_ptr<StandInState> instrument;
  Long lngChannel = 0;
  char chLimit = 0;

  std::string Path() const;
  InstrumentSettings &Settings() const { return instrument->settings; }
  ChannelSettings &Channel() const { return Settings().channels[static_cast<std::size_t>(lngChannel - 1)]; }
};

/// The kind of object that no narrowing accepts.
class IUnknownThing : public automation::IDispatch {
 public:
  static constexpr automation::Guid Iid{0x7F3C1B52, 0x40A8, 0x8E11, {0x9B, 0x07, 0x66, 0x21, 0xD4, 0x93, 0x5A, 0x0C}};

 protected:
  ~IUnknownThing() = default;
};

/// Base of the driver's objects. Counts references by interface and runs each operation in the one order:
/// count, fail or take effect, write the line.
template <class Interface>
class StandInObject : public automation::Object<Interface> {
 public:
  StandInObject(Place place, const char *strInterface) : m_place(std::move(place)), m_strInterface(strInterface) {
    m_place.driver->CountReference(m_strInterface, 1);
  }
  std::uint32_t TARVIK_CALL AddRef() override {
    m_place.driver->CountReference(m_strInterface, 1);
    return automation::Object<Interface>::AddRef();
  }
  std::uint32_t TARVIK_CALL Release() override {
    m_place.driver->CountReference(m_strInterface, -1);
    return automation::Object<Interface>::Release();
  }

 protected:
  const Place &At() const { return m_place; }
  StandInDriver &Driver() const { return *m_place.driver; }
  InstrumentSettings &Settings() const { return m_place.Settings(); }
  ChannelSettings &Channel() const { return m_place.Channel(); }

  /// `effect` answers the outcome's text; a DriverFailure that it throws is the operation's own.
  template <class Effect>
  Status Operate(const std::string &strLine, Effect &&effect) {
    const std::string strPath = m_place.Path();
    const std::string strWithPath =
        m_strInterface + (strPath.empty() ? std::string() : "{" + strPath + "}") + "." + strLine;
    std::optional<DriverFailure> failure = Driver().Enter(std::string(m_strInterface) + "." + strLine, strWithPath);
    std::string strOutcome;
    if (!failure) {
      try {
        strOutcome = effect();
      } catch (const DriverFailure &own) {
        failure = own;
      }
    }
    if (failure) strOutcome = "error " + std::to_string(failure->lngNumber) + " " + Word(failure->strText);
    Driver().Trace(strWithPath + " -> " + strOutcome);
    if (failure)
      return failure->strText.empty() ? failure->lngNumber : automation::Fail(failure->lngNumber, failure->strText);
    if (!Driver().strLeftBehind.empty()) automation::SetErrorInfo(Driver().strLeftBehind);
    return StatusOk;
  }

  /// An operation without results.
  template <class Effect>
  Status Do(const std::string &strLine, Effect &&effect) {
    return Operate(strLine, [&] {
      effect();
      return std::string("ok");
    });
  }
  template <class Value>
  Status Set(const char *strOperation, Value &stored, Value value) {
    return Do(Line(strOperation, value), [&] { stored = value; });
  }
  Status Set(const char *strOperation, Boolean &fStored, VariantBool value) {
    return Do(Line(strOperation, Flag{value != 0}), [&] { fStored = value != 0; });
  }
  template <class Value>
  Status Get(const char *strOperation, Value *pValue, const Value &stored) {
    return Operate(Line(strOperation), [&] { return Word(*pValue = stored); });
  }
  Status Get(const char *strOperation, VariantBool *pValue, Boolean fStored) {
    return Operate(Line(strOperation), [&] {
      *pValue = fStored.Word();
      return Word(Flag{fStored});
    });
  }
  template <class Text>
  Status GetText(const char *strOperation, automation::AutomationString *pText, Text &&text) {
    return Operate(Line(strOperation), [&] {
      const std::string strText = text();
      *pText = automation::AllocString(strText);
      return Word(strText);
    });
  }
  /// Operations with the selector in front.
  Status SetSelected(const char *strOperation, const Long *pSelector, Double &dblStored, Double value) {
    return Do(Line(strOperation, *pSelector, value), [&] { dblStored = value; });
  }
  template <class Value>
  Status GetSelected(const char *strOperation, const Long *pSelector, Value *pValue, const Value &stored) {
    return Operate(Line(strOperation, *pSelector), [&] { return Word(*pValue = stored); });
  }

  /// Hands out a new object of Class at this place.
  template <class Class, class Target>
  Status Hand(const std::string &strLine, Target **ppObject, Place place) {
    return Operate(strLine, [&] {
      if (Driver().IsNothing()) return std::string("nothing");
      Ref<Class> object = automation::MakeObject<Class>(std::move(place));
      *ppObject = object.Detach();
      return std::string(Class::Name);
    });
  }
  template <class Class, class Target>
  Status Hand(const char *strOperation, Target **ppObject) {
    return Hand<Class>(Line(strOperation), ppObject, m_place);
  }

 private:
  Place m_place;
  const char *m_strInterface;
};

class StandInUnknownThing : public StandInObject<IUnknownThing> {
 public:
  static constexpr const char *Name = "IUnknownThing";
  explicit StandInUnknownThing(Place place) : StandInObject(std::move(place), Name) {}
};

/// Puts the unknown kind of object in place of the right one.
template <class Target>
std::string HandWrong(Target **ppObject, const Place &place) {
  *ppObject = automation::MakeObject<StandInUnknownThing>(place).Detach();
  return StandInUnknownThing::Name;
}

Ref<automation::IUnknown> MakeStandInRoot(StandInDriver &driver);

}  // namespace tarvik::test
