#include <poll.h>
#include <unistd.h>

#include <string>

#include "StandInDriver.h"
#include "automation/ClassFactory.h"

/// The stand-in driver as a library, steered by the functions below: a test calls them through the same library that
/// the module has loaded as its driver.

namespace {

using namespace tarvik;
using automation::Status;

constexpr int LongestWait = 10'000;  // ms, so that a test that goes wrong ends

class Driver {
 public:
  Driver() {
    m_driver.Add("Alpha", {{"channels", std::int64_t{2}}});
    m_driver.OnTrace = [this](const std::string &strLine) { WaitAtGate(strLine); };
  }
  automation::Ref<automation::IUnknown> Create() { return m_driver.Create(kolven::DriverProgId, {}); }

  test::StandInDriver &StandIn() { return m_driver; }
  std::string strGate;
  int intArrived = -1, intOpened = -1;
  int intNotOpened = 0;

 private:
  /// Tells that the operation has begun, and lets it go on when it is told to.
  void WaitAtGate(const std::string &strLine) {
    if (strGate.empty() || strLine.find(strGate) == std::string::npos) return;
    char ch = '!';
    [[maybe_unused]] const auto written = write(intArrived, &ch, 1);
    pollfd waited{intOpened, POLLIN, 0};
    const bool fOpened = poll(&waited, 1, LongestWait) == 1 && read(intOpened, &ch, 1) == 1;
    if (!fOpened) ++intNotOpened;
  }

  test::StandInDriver m_driver;
};

Driver &TheDriver() {
  static Driver driver;
  return driver;
}

class Factory final : public automation::ClassFactory {
  Status Make(const automation::Guid &riid, void **ppvObject) override {
    return TheDriver().Create()->QueryInterface(riid, ppvObject);
  }
};

}  // namespace

TARVIK_DRIVER_EXPORT Status TARVIK_CALL DllGetClassObject(const automation::Guid &, const automation::Guid &riid,
                                                          void **ppv) {
  return automation::Ref<Factory>::Adopt(new Factory)->QueryInterface(riid, ppv);
}

#define STEERING extern "C" __attribute__((visibility("default")))

/// The operation of this name fails at its intNumber-th call from now on, as often as intCount says.
STEERING void Fail(const char *strOperation, int intNumber, int intStatus, const char *strText, int intCount) {
  TheDriver().StandIn().FailMatching(strOperation, intNumber, {intStatus, strText}, intCount);
}
STEERING void Warn(const char *strText) { TheDriver().StandIn().arrWarnings = {strText}; }
STEERING void PutError(const char *strText) { TheDriver().StandIn().strErrors = strText; }
STEERING int Operations() { return TheDriver().StandIn().Operations(); }
/// An operation whose line has this text writes a byte to one file and waits for one from the other.
STEERING void Gate(const char *strText, int intArrived, int intOpened) {
  TheDriver().strGate = strText;
  TheDriver().intArrived = intArrived;
  TheDriver().intOpened = intOpened;
}
/// How often nobody opened the gate in time.
STEERING int NotOpened() { return TheDriver().intNotOpened; }
STEERING void Calm() {
  TheDriver().StandIn().ClearFaults();
  TheDriver().StandIn().arrWarnings.clear();
  TheDriver().StandIn().strErrors.clear();
  TheDriver().strGate.clear();
}
