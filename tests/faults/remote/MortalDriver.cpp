#include <csignal>
#include <cstdlib>
#include <string>

#include "StandInDriver.h"
#include "automation/ClassFactory.h"

/// A driver whose process ends, or stops, in the middle of an upload: MORTAL_SIGNAL comes when as many operations as
/// MORTAL_AT says are done, counted from the first command about a transaction; the caller has no answer yet.

namespace {

using namespace tarvik;
using automation::Status;

long Setting(const char *strName) {
  const char *strValue = std::getenv(strName);
  return strValue ? std::atol(strValue) : 0;
}

class Driver {
 public:
  Driver() {
    m_driver.Add("Alpha");
    m_driver.OnTrace = [this](const std::string &strLine) { Count(strLine); };
  }
  automation::Ref<automation::IUnknown> Create() { return m_driver.Create(kolven::DriverProgId, {}); }

 private:
  void Count(const std::string &strLine) {
    if (m_lngDone == 0 && strLine.find(".Transaction(") == std::string::npos) return;
    if (++m_lngDone == m_lngAt) std::raise(m_intSignal);
  }

  const long m_lngAt = Setting("MORTAL_AT");
  const int m_intSignal = static_cast<int>(Setting("MORTAL_SIGNAL"));
  long m_lngDone = 0;
  test::StandInDriver m_driver;
};

class Factory final : public automation::ClassFactory {
  Status Make(const automation::Guid &riid, void **ppvObject) override {
    static Driver driver;
    return driver.Create()->QueryInterface(riid, ppvObject);
  }
};

}  // namespace

TARVIK_DRIVER_EXPORT Status TARVIK_CALL DllGetClassObject(const automation::Guid &, const automation::Guid &riid,
                                                          void **ppv) {
  return automation::Ref<Factory>::Adopt(new Factory)->QueryInterface(riid, ppv);
}
