#pragma once

#include <atomic>
#include <string>
#include <string_view>
#include <vector>

#include "automation/Abi.h"
#include "dispatch/LibraryUse.h"
#include "dispatch/VariantValues.h"

namespace tarvik {

/// How a member is used by a call; the numbers are the platform's.
enum CallFlags : std::uint16_t { CallMethod = 1, CallPropertyGet = 2, CallPropertyPut = 4 };

/// The arguments of a call, first one first, converted and complete.
class Arguments {
 public:
  explicit Arguments(std::vector<Value> arrValues) : m_arrValues(std::move(arrValues)) {}

  template <class T>
  T &Get(std::size_t number) {
    return std::get<T>(m_arrValues.at(number));
  }
  const Value &At(std::size_t number) const { return m_arrValues.at(number); }

 private:
  std::vector<Value> m_arrValues;
};

/// One use of a member: what it is called, what it takes. Get and put of a property are two entries of one number.
struct MemberShape {
  const char *strName;
  std::int32_t lngNumber;
  CallFlags eUse;
  std::vector<Parameter> arrParameters{};
};

/// An object behind a dispatch interface: counts its references, finds members by name whatever their case, checks
/// the arguments of a call completely before it runs, and turns what goes wrong into the platform's status.
class DispatchObject : public automation::IDispatch {
 public:
  DispatchObject() = default;
  DispatchObject(const DispatchObject &) = delete;
  DispatchObject &operator=(const DispatchObject &) = delete;

  automation::Status TARVIK_CALL QueryInterface(const automation::Guid &riid, void **ppvObject) override;
  automation::Count TARVIK_CALL AddRef() override { return ++m_lngReferences; }
  automation::Count TARVIK_CALL Release() override;
  /// There is no type information.
  automation::Status TARVIK_CALL GetTypeInfoCount(std::uint32_t *pctinfo) override;
  automation::Status TARVIK_CALL GetTypeInfo(std::uint32_t, automation::LocaleId, automation::ITypeInfo **) override;
  /// The number of a parameter is its place, from 0.
  automation::Status TARVIK_CALL GetIDsOfNames(const automation::Guid &riid, automation::AutomationChar **rgszNames,
                                               std::uint32_t cNames, automation::LocaleId lcid,
                                               automation::MemberId *rgDispId) override;
  automation::Status TARVIK_CALL Invoke(automation::MemberId dispIdMember, const automation::Guid &riid,
                                        automation::LocaleId lcid, std::uint16_t wFlags,
                                        automation::AutomationDispParams *pDispParams,
                                        automation::AutomationVariant *pVarResult,
                                        automation::AutomationExcepInfo *pExcepInfo, std::uint32_t *puArgErr) override;

 protected:
  virtual ~DispatchObject() = default;

  /// How many members the object has, and what each looks like.
  virtual std::size_t MemberCount() const = 0;
  virtual const MemberShape &Member(std::size_t number) const = 0;
  /// Runs a member whose arguments fit. May raise RunTimeError.
  virtual Value Run(std::size_t number, Arguments &arguments) = 0;
  /// Named as the source of failures.
  virtual std::string Source() const = 0;

 private:
  automation::Status FindNames(automation::AutomationChar **rgszNames, std::uint32_t cNames,
                               automation::MemberId *rgDispId) const;
  /// Converts the arguments of a call, runs the member, and writes its results back.
  automation::Status RunMember(std::size_t number, automation::AutomationDispParams &params,
                               automation::AutomationVariant *pVarResult, std::uint32_t *puArgErr);
  automation::Status FindMember(std::int32_t lngNumber, std::uint16_t wFlags, std::size_t &number) const;

  std::atomic<automation::Count> m_lngReferences{1};
  LibraryUse m_use;
};

/// Whether two names are the same to a caller: letters of either case count as one.
bool SameName(std::string_view strFirst, std::string_view strSecond);

}  // namespace tarvik
