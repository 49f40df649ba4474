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

  enum Where { Here = 1, OnServers = 2, Everywhere = Here | OnServers };

  explicit RegisteredDriver(Maker maker, Where eWhere = Everywhere);
  RegisteredDriver(const RegisteredDriver &) = delete;
  RegisteredDriver &operator=(const RegisteredDriver &) = delete;
  ~RegisteredDriver();

 private:
  const Where m_eWhere;
};

}  // namespace tarvik::test
