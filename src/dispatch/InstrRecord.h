#pragma once

#include <variant>

#include "dispatch/DispatchObject.h"
#include "instrument/Records.h"
#include "instrument/viInfo.h"

namespace tarvik {

/// A record of the instrument interface behind a dispatch interface: its fields are properties under their own names,
/// those with an entry for each channel take the channel number 1 or 2 as index.
class InstrRecord final : public DispatchObject {
 public:
  /// A record of this name ("udtTimingInfo") with nothing in it; empty for a name that is none.
  static automation::Ref<automation::IDispatch> Make(const std::string &strName);
  /// Whether the object is a record of this library with this name.
  static bool IsRecord(automation::IDispatch &object, const std::string &strName);

  automation::Status TARVIK_CALL QueryInterface(const automation::Guid &riid, void **ppvObject) override;

  /// The record in an object for which IsRecord holds.
  template <class Record>
  static Record &In(const automation::Ref<automation::IDispatch> &object) {
    return std::get<Record>(Self(*object)->m_record);
  }

 private:
  using AnyRecord =
      std::variant<udtInstrInfo, udtModeInfo, udtTimingInfo, udtLevelInfo, udtLimitsInfo, udtTrgLevelsInfo, viInfo>;
  friend struct InstrRecordFields;

  explicit InstrRecord(AnyRecord record) : m_record(std::move(record)) {}
  static InstrRecord *Self(automation::IDispatch &object);

  std::size_t MemberCount() const override;
  const MemberShape &Member(std::size_t number) const override;
  Value Run(std::size_t number, Arguments &arguments) override;
  std::string Source() const override;

  AnyRecord m_record;
};

}  // namespace tarvik
