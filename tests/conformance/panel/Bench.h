#pragma once

#include <functional>
#include <map>
#include <string>

#include "Recorder.h"
#include "Words.h"

namespace tarvik::paneltest {

/// One control without a panel, and the commands for it by name.
class Bench {
 public:
  Bench() = default;
  Bench(const Bench &) = delete;
  Bench &operator=(const Bench &) = delete;
  virtual ~Bench() = default;

  void Run(const std::string &strCommand, Words &words, Json &answer);

 protected:
  using Action = std::function<Json(Words &)>;

  /// Does to this part of the control what a user would do, or tells why that is refused.
  virtual void ActAsUser(Long lngPart, Json &answer) = 0;

  /// Where a command has no result.
  static const Json NoResult;
  std::map<std::string, Action> m_actions;
};

}  // namespace tarvik::paneltest
