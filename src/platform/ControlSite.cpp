#include "platform/ControlSite.h"

namespace tarvik {

ControlSite &RunTimeSite() {
  class Site : public ControlSite {
    Boolean UserMode() const override { return True; }
    void PropertyChanged(const std::string &) override {}
  };
  static Site site;
  return site;
}

}  // namespace tarvik
