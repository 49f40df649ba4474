#pragma once

#include <map>
#include <set>
#include <string>

#include "PanelUnderTest.h"

namespace tarvik::paneltest {

/// Collects the texts that a live panel shows over time: by kind, and by the control that shows them.
class TextHarvest {
 public:
  /// Texts of every control as they stand now.
  void Look(const PanelUnderTest &panel);
  /// Texts of boxes and of the settings store among the things noticed.
  void Listen(const Json &out);

  /// Whether the control was seen at all, under its bare name with or without an index.
  bool Knows(const std::string &strControl) const { return m_controls.contains(strControl); }
  const std::set<std::string> &Texts(const std::string &strKind, const std::string &strControl) const;

  /// Texts of boxes and prompts, and their titles.
  const std::set<std::string> &Messages() const { return m_messages; }
  const std::set<std::string> &Titles() const { return m_titles; }

 private:
  void Put(const char *strKind, const std::string &strControl, const std::string &strText);
  void LookAt(const std::string &strName, const QWidget &widget);

  std::map<std::pair<std::string, std::string>, std::set<std::string>> m_texts;
  std::set<std::string> m_controls, m_messages, m_titles;
};

}  // namespace tarvik::paneltest
