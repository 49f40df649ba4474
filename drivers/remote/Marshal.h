#pragma once

/// How each type of the contract's arguments crosses the wire, in the one place that both sides use.
///
/// By value: goes in. A pointer to a number: goes in and, when the call succeeds, comes back. A pointer to an
/// array: the same, and what the caller held is freed as the contract's in-process rules say. A pointer to a string:
/// the driver gets an empty place, and what it fills in comes back in place of what the caller held. An object: only
/// comes back, apart from the other arguments.

#include <concepts>
#include <cstring>
#include <string>

#include "automation/AutomationArray.h"
#include "automation/AutomationString.h"
#include "automation/Ref.h"
#include "instrument/KolvenDriver.h"
#include "remote/Wire.h"

namespace tarvik::remote {

using automation::AutomationArray;
using automation::AutomationString;
using automation::AutomationVariant;
using automation::IUnknown;
using automation::Ref;

template <class T>
concept IsNumber = std::is_arithmetic_v<T>;
template <class T>
concept IsInterface = std::derived_from<T, IUnknown>;

/// A string with "no string" told apart from the empty one.
void PutString(Writer &out, AutomationString bstr);
automation::String GetString(Reader &in);

/// A byte array with its lower bound; "no array" is told apart from an empty one.
void PutArray(Writer &out, const AutomationArray *pArray);
/// The array of the wire, to be freed by the caller; null for "no array".
AutomationArray *GetArray(Reader &in);
/// Puts the bytes where the caller's array is: into its own memory where bounds agree.
void StoreArray(Reader &in, AutomationArray **ppArray);
bool SameArray(const AutomationArray *pFirst, const AutomationArray *pSecond);

/// Plain values and strings; anything else is no key of the contract.
bool CanPutVariant(const AutomationVariant &variant);
void PutVariant(Writer &out, const AutomationVariant &variant);
/// The string, when there is one, is owned by `text`.
AutomationVariant GetVariant(Reader &in, automation::String &text);

/// One argument on its way from the caller to the wire and back. Answers a status that stops the call before
/// it is sent.
template <class T>
struct Outgoing;

template <IsNumber T>
struct Outgoing<T> {
  static Status Check(T) { return automation::StatusOk; }
  static void Send(Writer &out, T value) { out.Put(value); }
  static void Store(Reader &, T) {}
};
template <IsNumber T>
struct Outgoing<T *> {
  static Status Check(T *pValue) { return pValue ? automation::StatusOk : automation::StatusPointer; }
  static void Send(Writer &out, T *pValue) { out.Put(*pValue); }
  static void Store(Reader &in, T *pValue) { *pValue = in.Get<T>(); }
};
template <>
struct Outgoing<AutomationString *> {
  static Status Check(AutomationString *pValue) { return pValue ? automation::StatusOk : automation::StatusPointer; }
  static void Send(Writer &out, AutomationString *pValue) { PutString(out, *pValue); }
  static void Store(Reader &in, AutomationString *pValue) {
    automation::String text = GetString(in);
    // What the driver has not filled stays the caller's.
    if (!text.Get()) return;
    automation::FreeString(*pValue);
    *pValue = text.Detach();
  }
};
template <>
struct Outgoing<AutomationArray **> {
  static Status Check(AutomationArray **ppArray) {
    if (!ppArray) return automation::StatusPointer;
    return !*ppArray || automation::IsByteArray(*ppArray) ? automation::StatusOk : automation::StatusTypeMismatch;
  }
  static void Send(Writer &out, AutomationArray **ppArray) { PutArray(out, *ppArray); }
  static void Store(Reader &in, AutomationArray **ppArray) { StoreArray(in, ppArray); }
};
template <>
struct Outgoing<AutomationVariant> {
  static Status Check(const AutomationVariant &variant) {
    return CanPutVariant(variant) ? automation::StatusOk : automation::StatusTypeMismatch;
  }
  static void Send(Writer &out, const AutomationVariant &variant) { PutVariant(out, variant); }
  static void Store(Reader &, const AutomationVariant &) {}
};
/// Objects are bound by the proxy itself.
template <IsInterface T>
struct Outgoing<T **> {
  static Status Check(T **ppObject) { return ppObject ? automation::StatusOk : automation::StatusPointer; }
  static void Send(Writer &, T **) {}
  static void Store(Reader &, T **) {}
};

/// The same argument in the server: read from the wire, handed to the driver, written back.
template <class T>
class Incoming;

template <IsNumber T>
class Incoming<T> {
 public:
  explicit Incoming(Reader &in) : m_value(in.Get<T>()) {}
  T Pass() { return m_value; }
  void Return(Writer &) const {}

 private:
  T m_value;
};
template <IsNumber T>
class Incoming<T *> {
 public:
  explicit Incoming(Reader &in) : m_value(in.Get<T>()) {}
  T *Pass() { return &m_value; }
  void Return(Writer &out) const { out.Put(m_value); }

 private:
  T m_value;
};
template <>
class Incoming<AutomationString *> {
 public:
  /// The contract's strings are filled, never read, and a driver may overwrite what the place holds without freeing it:
  /// the place is empty, so that no client can make the server lose memory.
  explicit Incoming(Reader &in) { static_cast<void>(GetString(in)); }
  Incoming(const Incoming &) = delete;
  Incoming &operator=(const Incoming &) = delete;
  ~Incoming() { automation::FreeString(m_bstr); }
  AutomationString *Pass() { return &m_bstr; }
  void Return(Writer &out) const { PutString(out, m_bstr); }

 private:
  AutomationString m_bstr = nullptr;
};
template <>
class Incoming<AutomationArray **> {
 public:
  explicit Incoming(Reader &in) : m_pArray(GetArray(in)), m_pBefore(m_pArray ? Copy(m_pArray) : nullptr) {}
  Incoming(const Incoming &) = delete;
  Incoming &operator=(const Incoming &) = delete;
  ~Incoming() {
    automation::FreeArray(m_pArray);
    automation::FreeArray(m_pBefore);
  }
  AutomationArray **Pass() { return &m_pArray; }
  /// An array that the driver only read does not travel back, unless the caller may hold another one than was sent.
  void Return(Writer &out, bool fAlways) const {
    const bool fChanged = fAlways || !SameArray(m_pBefore, m_pArray);
    out.Put<std::uint8_t>(fChanged ? 1 : 0);
    if (fChanged) PutArray(out, m_pArray);
  }

 private:
  static AutomationArray *Copy(const AutomationArray *pArray) {
    return automation::AllocByteArray(pArray->rgsabound[0].lLbound, static_cast<const std::uint8_t *>(pArray->pvData),
                                      pArray->rgsabound[0].cElements);
  }

  AutomationArray *m_pArray;
  AutomationArray *m_pBefore;
};
template <>
class Incoming<AutomationVariant> {
 public:
  explicit Incoming(Reader &in) : m_variant(GetVariant(in, m_text)) {}
  AutomationVariant Pass() { return m_variant; }
  void Return(Writer &) const {}

 private:
  automation::String m_text;
  AutomationVariant m_variant;
};
template <IsInterface T>
class Incoming<T **> {
 public:
  explicit Incoming(Reader &) {}
  T **Pass() { return m_object.Out(); }
  void Return(Writer &) const {}
  Ref<T> Take() { return std::move(m_object); }

 private:
  Ref<T> m_object;
};

}  // namespace tarvik::remote
