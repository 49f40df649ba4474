#pragma once

#include <functional>
#include <string>

#include "automation/Ref.h"

namespace tarvik::test {

/// The driver's class in this process, for as long as the object lives.
class RegisteredDriver {
 public:
  /// Makes a root for this machine, where the server is empty, or for the named server. It may hand back nothing.
  using Maker = std::function<automation::Ref<automation::IUnknown>(const std::string &strServer)>;

  explicit RegisteredDriver(Maker maker);
  RegisteredDriver(const RegisteredDriver &) = delete;
  RegisteredDriver &operator=(const RegisteredDriver &) = delete;
  ~RegisteredDriver();
};

}  // namespace tarvik::test
