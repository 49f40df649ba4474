#pragma once

#include <memory>

#include "automation/Object.h"
#include "common/Rack.h"
#include "instrument/KolvenDriver.h"

namespace tarvik::driver {

using automation::Status;

/// The instruments of the rack.
class InstrumentListObject final : public automation::Object<kolven::IInstrumentList> {
 public:
  explicit InstrumentListObject(std::shared_ptr<Rack> rack) : m_rack(std::move(rack)) {}
  Status TARVIK_CALL GetCount(Long *pValue) override;
  /// A key that no instrument has is a failure that names the key.
  Status TARVIK_CALL GetItem(kolven::AutomationVariant key, kolven::IDispatch **ppObject) override;
  Status TARVIK_CALL Refresh() override;

 private:
  const std::shared_ptr<Rack> m_rack;
};

/// The driver on one connection. All roots of a process share one rack.
class DriverRoot final : public automation::Object<kolven::IDriverRoot> {
 public:
  explicit DriverRoot(std::shared_ptr<Rack> rack) : m_rack(std::move(rack)) {}
  Status TARVIK_CALL GetInstruments(kolven::IInstrumentList **ppObject) override;

 private:
  const std::shared_ptr<Rack> m_rack;
};

}  // namespace tarvik::driver
