#include "common/DriverRoot.h"

#include "automation/AutomationString.h"
#include "common/Guarded.h"
#include "common/InstrumentObject.h"

namespace tarvik::driver {

namespace {

/// The name or number that a key holds, by value or by reference.
struct Key {
  bool fIsName = false;
  std::string strName;
  Long lngNumber = 0;

  std::string Words() const {
    return fIsName ? "called \"" + strName + "\"" : "with the number " + std::to_string(lngNumber);
  }
};

Key KeyOf(const kolven::AutomationVariant &key) {
  using namespace automation;
  switch (key.vt) {
    case VtString: return {true, ToText(key.bstrVal), 0};
    case VtString | VtByRef: return {true, ToText(key.pbstrVal ? *key.pbstrVal : nullptr), 0};
    case VtInteger: return {false, {}, key.iVal};
    case VtInteger | VtByRef: return {false, {}, key.piVal ? *key.piVal : 0};
    case VtLong: return {false, {}, key.lVal};
    case VtLong | VtByRef: return {false, {}, key.plVal ? *key.plVal : 0};
    default: throw CallFailure{StatusTypeMismatch, "The key of an instrument is its name or its number"};
  }
}

}  // namespace

Status InstrumentListObject::GetCount(Long *pValue) {
  return Guarded(false, [&] {
    RequirePlace(pValue);
    *pValue = m_rack->Count();
  });
}

Status InstrumentListObject::GetItem(kolven::AutomationVariant key, kolven::IDispatch **ppObject) {
  if (ppObject) *ppObject = nullptr;
  return Guarded(false, [&] {
    RequirePlace(ppObject);
    const Key wanted = KeyOf(key);
    auto instrument = wanted.fIsName ? m_rack->ByName(wanted.strName) : m_rack->ByNumber(wanted.lngNumber);
    if (!instrument) throw CallFailure{automation::StatusBadIndex, "There is no instrument " + wanted.Words()};
    *ppObject = automation::MakeObject<InstrumentObject>(std::move(instrument)).Detach();
  });
}

Status InstrumentListObject::Refresh() {
  return Guarded(false, [&] { m_rack->Refresh(); });
}

Status DriverRoot::GetInstruments(kolven::IInstrumentList **ppObject) {
  return Guarded(false, [&] {
    RequirePlace(ppObject);
    *ppObject = automation::MakeObject<InstrumentListObject>(m_rack).Detach();
  });
}

}  // namespace tarvik::driver
