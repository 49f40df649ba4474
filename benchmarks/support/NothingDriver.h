#pragma once

#include <functional>

#include "HookedDriver.h"
#include "OperationTable.h"
#include "RegisteredDriver.h"

namespace tarvik::bench {

/// A driver that does nothing: it answers constants, forgets what it is told, and knows one instrument, "One", with two
/// channels. Registered in the process as long as it lives.
class NothingDriver : private test::DriverHook {
 public:
  NothingDriver();
  NothingDriver(const NothingDriver &) = delete;
  NothingDriver &operator=(const NothingDriver &) = delete;

  automation::Ref<automation::IUnknown> Root() { return test::MakeHookedRoot(*this); }
  /// The calls that all its objects have got, reference counting left out.
  long Calls() const { return m_lngCalls; }

 private:
  using Answer = std::function<void(test::HookedCall &)>;

  void AddSettings();
  void AddChannelSettings();
  automation::Status Run(test::HookedCall &call) override;

  test::OperationTable<Answer> m_answers;
  long m_lngCalls = 0;
  bool m_fTransaction = false;
  test::RegisteredDriver m_registered;
};

}  // namespace tarvik::bench
