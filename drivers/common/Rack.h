#pragma once

#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

#include "common/Instrument.h"

namespace tarvik::driver {

/// The instruments that a driver knows. One for the process: their state outlives every object and every session.
class Rack {
 public:
  using Instruments = std::vector<std::shared_ptr<Instrument>>;

  virtual ~Rack() = default;

  /// Looks for instruments for the first time; does nothing once that has worked. Raises Failure.
  void Load();
  /// Looks again. When that raises Failure the rack is as it was.
  void Refresh();

  Long Count() const;
  /// By number from 1, or by its name; null when there is none.
  std::shared_ptr<Instrument> ByNumber(Long lngNumber) const;
  std::shared_ptr<Instrument> ByName(std::string_view strName) const;

 private:
  /// The instruments that are there now; those of the known ones that are still there are handed back themselves.
  virtual Instruments Search(const Instruments &known) const = 0;
  /// Whether the name, exactly so written, is one of the instrument.
  virtual bool IsCalled(const Instrument &instrument, std::string_view strName) const {
    return instrument.Description().strName == strName;
  }

  mutable std::mutex m_mutex;
  bool m_fLoaded = false;
  Instruments m_arrInstruments;
};

}  // namespace tarvik::driver
