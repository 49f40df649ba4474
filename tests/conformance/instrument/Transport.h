#pragma once

#include <memory>

#include "StandInDriver.h"

namespace tarvik::test {

/// What lies between the instrument class and the stand-in driver: nothing, or a network connection.
class Transport {
 public:
  explicit Transport(StandInDriver &driver);
  ~Transport();
  Transport(const Transport &) = delete;
  Transport &operator=(const Transport &) = delete;

  /// Returns when all that was sent to the driver has been done.
  void Settle();

 private:
  struct Route;
  std::unique_ptr<Route> m_route;
};

}  // namespace tarvik::test
