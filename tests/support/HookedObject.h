#pragma once

/// What the written objects are made of; no test includes it.

#include <array>
#include <utility>

#include "HookedDriver.h"
#include "automation/Object.h"
#include "instrument/KolvenDriver.h"

namespace tarvik::test {

template <class Interface>
class HookedObject : public automation::Object<Interface> {
 public:
  HookedObject(HookedPlace place, std::string_view strInterface)
      : m_place(std::move(place)), m_strInterface(strInterface) {
    m_place.hook->CountReference(m_strInterface, 1);
  }
  automation::Count TARVIK_CALL AddRef() override {
    m_place.hook->CountReference(m_strInterface, 1);
    return automation::Object<Interface>::AddRef();
  }
  automation::Count TARVIK_CALL Release() override {
    m_place.hook->CountReference(m_strInterface, -1);
    return automation::Object<Interface>::Release();
  }

 protected:
  template <class... Arguments>
  automation::Status Pass(const Operation &operation, const Arguments &...arguments) {
    const std::array<RawArgument, sizeof...(arguments)> arrArguments{RawArgument(arguments)...};
    HookedCall call(operation, m_place, arrArguments);
    return m_place.hook->Run(call);
  }

 private:
  HookedPlace m_place;
  std::string_view m_strInterface;
};

/// A new object of the interface at this place in the contract.
automation::IDispatch *MakeHookedObject(std::size_t number, HookedPlace place);
/// The name of that interface.
std::string_view HookedInterface(std::size_t number);

}  // namespace tarvik::test
