#include "UserActions.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QTabBar>
#include <QTest>

#include "bitpattern/BitPattern.h"
#include "controls/CboEnhanced.h"
#include "engrspin/EngrSpin.h"
#include "platform/CheckBox.h"
#include "platform/CommandButton.h"
#include "platform/ListView.h"
#include "platform/OptionButton.h"
#include "platform/TabControl.h"
#include "platform/ToolPopup.h"
#include "support/EventBoundary.h"

namespace tarvik::paneltest {

namespace {

/// A user cannot do this now, and why.
struct Refused {
  const char *strReason;
};

QLineEdit &TextBoxOf(EngrSpin &field) { return *field.findChild<QLineEdit *>(); }

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
  const int page = words.Number();
  auto &tabs = Reachable<TabControl>("tabMain");
  QTabBar &bar = *tabs.tabBar();
  const QPoint place = bar.tabRect(page).center();
  if (!bar.rect().contains(place)) throw BadLine("the tab does not show");
  QTest::mouseClick(&bar, Qt::LeftButton, {}, place);
}

void UserActions::Click(Words &words) { Reachable<CommandButton>(words.Text()).click(); }

void UserActions::Option(Words &words) {
  const std::string strName = words.Text();
  Reachable<OptionButton>(strName + "(" + std::to_string(words.Number()) + ")").click();
}

void UserActions::Check(Words &words) {
  auto &check = Reachable<CheckBox>(words.Text());
  if (check.Value() != words.Number()) check.click();
}

void UserActions::Combo(Words &words) {
  auto &list = Reachable<CboEnhanced>(FullName(words));
  auto &items = *list.findChild<QComboBox *>();
  RequireReach(items);
  const Long lngItem = words.Number();
  if (lngItem < 0 || lngItem >= items.count()) throw Refused{"noitem"};
  items.setCurrentIndex(lngItem);
}

void UserActions::TypeNumber(const std::string &strField, const std::string &strNumber) {
  auto &field = Reachable<EngrSpin>(strField);
  if (field.Locked()) throw Refused{"locked"};
  if (!field.ValueArray().empty()) throw Refused{"array"};
  QLineEdit &text = TextBoxOf(field);
  text.selectAll();
  QTest::keyClicks(&text, QString::fromStdString(strNumber));
  QTest::keyClick(&text, Qt::Key_Return);
}

void UserActions::Entry(Words &words) {
  const std::string strField = FullName(words);
  TypeNumber(strField, words.Text());
}

void UserActions::Step(Words &words) {
  auto &field = Reachable<EngrSpin>(FullName(words));
  if (field.Locked()) throw Refused{"locked"};
  if (field.ValueArray().empty()) throw Refused{"noarray"};
  QTest::keyClick(&TextBoxOf(field), words.Text() == "up" ? Qt::Key_Up : Qt::Key_Down);
}

void UserActions::TakeMenuEntry(const std::string &strMenu, const std::string &strKey) {
  auto &popup = Reachable<ToolPopup>(strMenu);
  for (QAction *action : popup.menu()->actions())
    if (action->objectName().toStdString() == strKey) {
      action->trigger();
      return;
    }
  throw BadLine("no such entry: " + strKey);
}

void UserActions::Menu(Words &words) {
  const std::string strMenu = FullName(words);
  TakeMenuEntry(strMenu, words.Text());
}

void UserActions::TabKey(Words &words) {
  auto &field = Reachable<EngrSpin>(FullName(words));
  bool fSwallowed = false;
  // Connected last, so it sees what the page made of the flag.
  const auto connection = field.OnTab.ConnectScoped([&](Boolean &fSwallow) { fSwallowed = fSwallow; });
  QTest::keyClick(&TextBoxOf(field), Qt::Key_Tab);
  m_ret = fSwallowed;
}

void UserActions::Tick(Words &words) {
  auto &list = Reachable<ListView>("lvwInstruments");
  ListItem *row = list.Item(words.Number() - 1);
  if (!row) throw Refused{"norow"};
  row->setCheckState(0, row->Checked() ? Qt::Unchecked : Qt::Checked);
}

void UserActions::Select(Words &words) {
  auto &list = Reachable<ListView>("lvwInstruments");
  const Long lngRow = words.Number();
  if (lngRow == 0) {
    list.clearSelection();
    return;
  }
  ListItem *row = list.Item(lngRow - 1);
  if (!row) throw Refused{"norow"};
  // Beside the check box, which stands at the left end.
  const QRect place = list.visualItemRect(row);
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place.center());
}

void UserActions::DoubleClick(Words &words) {
  auto &list = Reachable<ListView>("lvwInstruments");
  QPoint place(list.viewport()->width() / 2, list.viewport()->height() - 2);
  if (!words.Empty()) {
    ListItem *row = list.Item(words.Number() - 1);
    if (!row) throw Refused{"norow"};
    place = list.visualItemRect(row).center();
  } else if (ListItem *selected = list.SelectedItem()) {
    place = list.visualItemRect(selected).center();
  }
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place);
  QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, place);
}

void UserActions::ListKey(Words &words) {
  auto &list = Reachable<ListView>("lvwInstruments");
  const auto intCode = static_cast<Integer>(words.Number());
  // The key as the list tells it; what arrow keys do to the selection is the toolkit's own affair.
  RunUserEvent(ObjectName(list), "KeyDown", [&] { list.KeyDown.Raise(intCode); });
}

void UserActions::EnterKey(Words &) { QTest::keyClick(&Reachable<ListView>("lvwInstruments"), Qt::Key_Return); }

void UserActions::Pattern(Words &words) {
  const std::string strWhat = words.Text();
  if (strWhat == "rz")
    Reachable<OptionButton>("optChannelRzNrz(" + std::to_string(words.Number()) + ")").click();
  else if (strWhat == "length")
    TypeNumber("esLast", words.Text());
  else if (strWhat == "menu") {
    const std::string strMenu = "toolPopup(" + std::to_string(words.Number()) + ")";
    TakeMenuEntry(strMenu, words.Text());
  } else
    throw BadLine("unknown part of the editor: " + strWhat);
}

}  // namespace tarvik::paneltest
