#pragma once

#include <functional>
#include <map>
#include <string>

#include "PanelUnderTest.h"
#include "Words.h"

namespace tarvik::paneltest {

/// What a user does to a panel. Each action first looks whether a user could.
class UserActions {
 public:
  explicit UserActions(PanelUnderTest &panel) : m_panel(panel) {}

  /// Whether this command is one of the user's; then it is carried out and `answer` has what came of it.
  bool Run(const std::string &strCommand, Words &words, Json &answer);

 private:
  using Action = void (UserActions::*)(Words &);
  static const std::map<std::string, Action> &Actions();

  void Tab(Words &words);
  void Click(Words &words);
  void Option(Words &words);
  void Check(Words &words);
  void Combo(Words &words);
  void Entry(Words &words);
  void Step(Words &words);
  void Menu(Words &words);
  void TabKey(Words &words);
  void Tick(Words &words);
  void Select(Words &words);
  void DoubleClick(Words &words);
  void ListKey(Words &words);
  void EnterKey(Words &words);
  void Pattern(Words &words);
  void TypeNumber(const std::string &strField, const std::string &strNumber);
  void TakeMenuEntry(const std::string &strMenu, const std::string &strKey);

  /// The name with the index behind it where no control has the bare name.
  std::string FullName(Words &words) const;
  /// The control of this name if a user can reach it now.
  template <class T>
  T &Reachable(const std::string &strName) const;
  void RequireReach(const QWidget &widget) const;

  PanelUnderTest &m_panel;
  Json m_ret;
};

}  // namespace tarvik::paneltest
