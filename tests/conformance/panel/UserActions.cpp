#include "UserActions.h"

#include <QComboBox>
#include <QTabBar>

#include "platform/CheckBox.h"
#include "platform/CommandButton.h"
#include "platform/OptionButton.h"
#include "platform/TabControl.h"
#include "platform/ToolPopup.h"
#include "support/EventBoundary.h"

namespace tarvik::paneltest {

namespace {

/// Why the user cannot do this now.
struct Refused {
  const char *strReason;
};

}  // namespace

const std::map<std::string, UserActions::Action> &UserActions::Actions() {
  static const std::map<std::string, Action> actions{
      {"tab", &UserActions::Tab},         {"click", &UserActions::Click},       {"opt", &UserActions::Option},
      {"check", &UserActions::Check},     {"combo", &UserActions::Combo},       {"entry", &UserActions::Entry},
      {"step", &UserActions::Step},       {"menu", &UserActions::Menu},         {"tabkey", &UserActions::TabKey},
      {"tick", &UserActions::Tick},       {"select", &UserActions::Select},     {"dblclick", &UserActions::DoubleClick},
      {"listkey", &UserActions::ListKey}, {"enterkey", &UserActions::EnterKey}, {"bp", &UserActions::Pattern},
  };
  return actions;
}

bool UserActions::Run(const std::string &strCommand, Words &words, Json &answer) {
  const auto action = Actions().find(strCommand);
  if (action == Actions().end()) return false;
  try {
    (this->*action->second)(words);
    if (!m_ret.is_null()) answer["ret"] = m_ret;
  } catch (const Refused &refused) {
    answer["refused"] = refused.strReason;
  }
  return true;
}

std::string UserActions::FullName(Words &words) const {
  const std::string strName = words.Text();
  if (m_panel.Find(strName)) return strName;
  return strName + "(" + std::to_string(words.Number()) + ")";
}

int UserActions::TakeRow(Words &words) const {
  const int row = words.Number() - 1;
  if (!User().Instruments().Item(row)) throw Refused{"norow"};
  return row;
}

void UserActions::RequireReach(const QWidget &widget) const {
  if (!m_panel.fShown) throw Refused{"notshown"};
  if (!widget.isVisibleTo(&m_panel.Gui())) throw Refused{"hidden"};
  if (!widget.isEnabled()) throw Refused{"disabled"};
}

template <class T>
T &UserActions::Reachable(const std::string &strName) const {
  T &control = m_panel.Get<T>(strName);
  RequireReach(control);
  return control;
}

void UserActions::Tab(Words &words) {
  const auto ePage = static_cast<TabNumEnum>(words.Number());
  const QTabBar &bar = *Reachable<TabControl>("tabMain").tabBar();
  if (!bar.rect().contains(bar.tabRect(ePage).center())) throw BadLine("the tab does not show");
  User().ClickTab(ePage);
}

void UserActions::Click(Words &words) {
  const std::string strName = words.Text();
  Reachable<CommandButton>(strName);
  User().Click(strName);
}

void UserActions::Option(Words &words) {
  const std::string strName = words.Text();
  ChooseOption(strName + "(" + std::to_string(words.Number()) + ")");
}

void UserActions::ChooseOption(const std::string &strName) {
  Reachable<OptionButton>(strName);
  User().Choose(strName);
}

void UserActions::Check(Words &words) {
  const std::string strName = words.Text();
  if (Reachable<CheckBox>(strName).Value() != words.Number()) User().Choose(strName);
}

void UserActions::Combo(Words &words) {
  const std::string strName = FullName(words);
  const auto &items = *Reachable<CboEnhanced>(strName).findChild<QComboBox *>();
  RequireReach(items);
  const Long lngItem = words.Number();
  if (lngItem < 0 || lngItem >= items.count()) throw Refused{"noitem"};
  User().Take(strName, lngItem);
}

void UserActions::TypeNumber(const std::string &strField, const std::string &strNumber) {
  const auto &field = Reachable<EngrSpin>(strField);
  if (field.Locked()) throw Refused{"locked"};
  if (!field.ValueArray().empty()) throw Refused{"array"};
  User().Type(strField, strNumber);
}

void UserActions::Entry(Words &words) {
  const std::string strField = FullName(words);
  TypeNumber(strField, words.Text());
}

void UserActions::Step(Words &words) {
  const std::string strField = FullName(words);
  const auto &field = Reachable<EngrSpin>(strField);
  if (field.Locked()) throw Refused{"locked"};
  if (field.ValueArray().empty()) throw Refused{"noarray"};
  User().PressIn(strField, words.Text() == "up" ? Qt::Key_Up : Qt::Key_Down);
}

void UserActions::TakeMenuEntry(const std::string &strMenu, const std::string &strKey) {
  Reachable<ToolPopup>(strMenu);
  User().TakeMenu(strMenu, strKey);
}

void UserActions::Menu(Words &words) {
  const std::string strMenu = FullName(words);
  TakeMenuEntry(strMenu, words.Text());
}

void UserActions::TabKey(Words &words) {
  const std::string strField = FullName(words);
  auto &field = Reachable<EngrSpin>(strField);
  bool fSwallowed = false;
  // Connected last, so it sees what the page made of the flag.
  const auto connection = field.OnTab.ConnectScoped([&](Boolean &fSwallow) { fSwallowed = fSwallow; });
  User().PressIn(strField, Qt::Key_Tab);
  m_ret = fSwallowed;
}

void UserActions::Tick(Words &words) {
  Reachable<ListView>("lvwInstruments");
  User().Tick(TakeRow(words));
}

void UserActions::Select(Words &words) {
  auto &list = Reachable<ListView>("lvwInstruments");
  if (words.Peek().strText == "0")
    list.clearSelection();
  else
    User().Select(TakeRow(words));
}

void UserActions::DoubleClick(Words &words) {
  auto &list = Reachable<ListView>("lvwInstruments");
  if (!words.Empty())
    User().DoubleClick(TakeRow(words));
  else if (ListItem *selected = list.SelectedItem())
    User().DoubleClickAt(list.visualItemRect(selected).center());
  else
    User().DoubleClickAt({list.viewport()->width() / 2, list.viewport()->height() - 2});
}

void UserActions::ListKey(Words &words) {
  auto &list = Reachable<ListView>("lvwInstruments");
  const auto intCode = static_cast<Integer>(words.Number());
  // Only the event: how arrow keys move the selection is the toolkit's behaviour.
  RunUserEvent(ObjectName(list), "KeyDown", [&] { list.KeyDown.Raise(intCode); });
}

void UserActions::EnterKey(Words &) {
  Reachable<ListView>("lvwInstruments");
  User().PressInList(Qt::Key_Return);
}

void UserActions::Pattern(Words &words) {
  const std::string strWhat = words.Text();
  if (strWhat == "rz")
    ChooseOption("optChannelRzNrz(" + std::to_string(words.Number()) + ")");
  else if (strWhat == "length")
    TypeNumber("esLast", words.Text());
  else if (strWhat == "menu") {
    const std::string strMenu = "toolPopup(" + std::to_string(words.Number()) + ")";
    TakeMenuEntry(strMenu, words.Text());
  } else
    throw BadLine("unknown part of the editor: " + strWhat);
}

}  // namespace tarvik::paneltest
