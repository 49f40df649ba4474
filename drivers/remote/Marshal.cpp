#include "remote/Marshal.h"

namespace tarvik::remote {

using automation::AllocByteArray;
using automation::FreeArray;

namespace {

std::uint32_t CountOf(const AutomationArray *pArray) { return pArray->pvData ? pArray->rgsabound[0].cElements : 0; }

std::string_view BytesOf(const AutomationArray *pArray) {
  return {static_cast<const char *>(pArray->pvData), CountOf(pArray)};
}

}  // namespace

void PutString(Writer &out, AutomationString bstr) {
  out.Put<std::uint8_t>(bstr ? 1 : 0);
  if (!bstr) return;
  // Raw UTF-16 units, so that lone surrogates are preserved.
  out.PutText({reinterpret_cast<const char *>(bstr), automation::StringLength(bstr) * sizeof(char16_t)});
}

automation::String GetString(Reader &in) {
  if (in.Get<std::uint8_t>() == 0) return {};
  const std::string_view strBytes = in.GetText();
  if (strBytes.size() % sizeof(char16_t) != 0) throw ProtocolError("a string has half a unit");
  // Allocates a string of that length, then overwrites its units.
  automation::String text(std::string(strBytes.size() / sizeof(char16_t), ' '));
  if (!strBytes.empty()) std::memcpy(text.Get(), strBytes.data(), strBytes.size());
  return text;
}

void PutArray(Writer &out, const AutomationArray *pArray) {
  const bool fBytes = automation::IsByteArray(pArray);
  out.Put<std::uint8_t>(fBytes ? 1 : 0);
  if (!fBytes) return;
  out.Put(pArray->rgsabound[0].lLbound);
  out.PutText(BytesOf(pArray));
}

AutomationArray *GetArray(Reader &in) {
  if (in.Get<std::uint8_t>() == 0) return nullptr;
  const auto lngLowerBound = in.Get<std::int32_t>();
  const std::string_view strBytes = in.GetText();
  return AllocByteArray(lngLowerBound, reinterpret_cast<const std::uint8_t *>(strBytes.data()),
                        static_cast<std::uint32_t>(strBytes.size()));
}

bool SameArray(const AutomationArray *pFirst, const AutomationArray *pSecond) {
  if (!pFirst || !pSecond) return pFirst == pSecond;
  return automation::IsByteArray(pFirst) && automation::IsByteArray(pSecond) &&
         pFirst->rgsabound[0].lLbound == pSecond->rgsabound[0].lLbound && BytesOf(pFirst) == BytesOf(pSecond);
}

void StoreArray(Reader &in, AutomationArray **ppArray) {
  if (in.Get<std::uint8_t>() == 0) return;
  AutomationArray *pNew = GetArray(in);
  AutomationArray *pOld = *ppArray;
  // Filled in place if the bounds match: the caller may have passed fixed memory.
  const bool fInPlace =
      pOld && pNew && CountOf(pOld) == CountOf(pNew) && pOld->rgsabound[0].lLbound == pNew->rgsabound[0].lLbound;
  if (fInPlace) {
    if (CountOf(pNew)) std::memcpy(pOld->pvData, pNew->pvData, CountOf(pNew));
    FreeArray(pNew);
    return;
  }
  FreeArray(pOld);
  *ppArray = pNew;
}

bool CanPutVariant(const AutomationVariant &variant) {
  switch (variant.vt) {
    case automation::VtEmpty:
    case automation::VtInteger:
    case automation::VtLong:
    case automation::VtSingle:
    case automation::VtDouble:
    case automation::VtBoolean:
    case automation::VtByte:
    case automation::VtError:
    case automation::VtString: return true;
    default: return false;
  }
}

void PutVariant(Writer &out, const AutomationVariant &variant) {
  out.Put(variant.vt);
  if (variant.vt == automation::VtString)
    PutString(out, variant.bstrVal);
  else
    out.Put(variant.llVal);
}

AutomationVariant GetVariant(Reader &in, automation::String &text) {
  AutomationVariant variant{};
  variant.vt = in.Get<std::uint16_t>();
  if (!CanPutVariant(variant)) throw ProtocolError("a key has a type that no key has");
  if (variant.vt == automation::VtString) {
    text = GetString(in);
    variant.bstrVal = text.Get();
  } else {
    variant.llVal = in.Get<std::int64_t>();
  }
  return variant;
}

}  // namespace tarvik::remote
