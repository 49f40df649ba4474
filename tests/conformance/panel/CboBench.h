#pragma once

#include <functional>
#include <map>
#include <string>

#include "BenchSite.h"
#include "Words.h"
#include "controls/CboEnhanced.h"

namespace tarvik::paneltest {

/// One list on the bench.
class CboBench {
 public:
  CboBench(const std::string &strName, Recorder &recorder, const bool &fDesignMode);

  void Run(const std::string &strCommand, Words &words, Json &answer);

 private:
  using Action = std::function<Json(Words &)>;
  std::map<std::string, Action> Operations();
  std::map<std::string, Action> Properties();
  Json View() const;
  void ChooseAsUser(Long lngItem, Json &answer);

  BenchSite m_site;
  CboEnhanced m_list;
  std::map<std::string, Action> m_actions;
};

}  // namespace tarvik::paneltest
