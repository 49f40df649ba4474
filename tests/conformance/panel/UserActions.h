#pragma once

#include <functional>
#include <map>
#include <string>

#include "PanelUnderTest.h"
#include "PanelUser.h"
#include "Words.h"

namespace tarvik::paneltest {

/// User actions by protocol command. Each checks first that the control is visible and enabled.
class UserActions {
 public:
  explicit UserActions(PanelUnderTest &panel) : m_panel(panel) {}

  /// False for a command that is no user action. Otherwise runs it and puts its result into `answer`.
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
  void ChooseOption(const std::string &strName);
  void TypeNumber(const std::string &strField, const std::string &strNumber);
  void TakeMenuEntry(const std::string &strMenu, const std::string &strKey);

  test::PanelUser User() const { return test::PanelUser(m_panel.Gui()); }
  /// The row that the line names, counted from 0.
  int TakeRow(Words &words) const;
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
