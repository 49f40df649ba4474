#pragma once

#include <string>
#include <utility>

#include "Recorder.h"
#include "platform/ControlSite.h"
#include "platform/PropertyBag.h"

namespace tarvik::paneltest {

/// The container of a control on the bench.
class BenchSite : public ControlSite {
 public:
  explicit BenchSite(const bool &fDesignMode) : m_fDesignMode(fDesignMode) {}

  Boolean UserMode() const override { return !m_fDesignMode; }
  void PropertyChanged(const std::string &strProperty) override { m_reported.push_back(strProperty); }

  Json TakeReported() { return std::exchange(m_reported, Json::array()); }

 private:
  const bool &m_fDesignMode;
  Json m_reported = Json::array();
};

/// Values of a JSON object as stored properties, and what a control wrote as [key, value, default].
PropertyBag ToBag(const std::string &strJson);
Json Written(const PropertyBag &bag);

Variant ToVariant(const Json &value);
Json ToJsonValue(const Variant &value);

}  // namespace tarvik::paneltest
