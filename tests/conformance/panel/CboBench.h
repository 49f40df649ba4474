#pragma once

#include <map>
#include <string>

#include "Bench.h"
#include "BenchSite.h"
#include "Words.h"
#include "controls/CboEnhanced.h"

namespace tarvik::paneltest {

/// One list on the bench.
class CboBench : public Bench {
 public:
  CboBench(const std::string &strName, Recorder &recorder, const bool &fDesignMode);

 private:
  std::map<std::string, Action> Operations();
  std::map<std::string, Action> Properties();
  Json View() const;
  void ActAsUser(Long lngItem, Json &answer) override;

  BenchSite m_site;
  CboEnhanced m_list;
};

}  // namespace tarvik::paneltest
