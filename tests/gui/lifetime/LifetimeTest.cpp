#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>
#include <map>
#include <memory>

#include "instrument/clsInstrInterface.h"
#include "panel/TarvikGUI.h"
#include "platform/QtHost.h"

namespace tarvik {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// The toolkit's host with the boxes written down and the settings forgotten at the end.
class QuietHost : public QtHost {
 public:
  std::vector<std::string> Boxes;

  BoxAnswer MsgBox(const std::string &strText, BoxIcon, BoxButtons, const std::string &) override {
    Boxes.push_back(strText);
    return BoxAnswer::Ok;
  }
  std::string InputBox(const std::string &strPrompt, const std::string &, const std::string &) override {
    Boxes.push_back(strPrompt);
    return "";
  }
  void Beep() override {}
  std::string GetSetting(const std::string &, const std::string &strSection, const std::string &strKey,
                         const std::string &strDefault) override {
    const auto found = m_settings.find(strSection + "/" + strKey);
    return found == m_settings.end() ? strDefault : found->second;
  }
  void SaveSetting(const std::string &, const std::string &strSection, const std::string &strKey,
                   const std::string &strValue) override {
    m_settings[strSection + "/" + strKey] = strValue;
  }

 private:
  std::map<std::string, std::string> m_settings;
};

QApplication &Application() {
  static int argc = 1;
  static char name[] = "gui_lifetime";
  static char *argv[] = {name, nullptr};
  // Never destroyed: the toolkit tears down its own statics behind it.
  static auto *app = new QApplication(argc, argv);
  return *app;
}

class PanelLife : public testing::Test {
 protected:
  void SetUp() override {
    for (const char *strName : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
      qputenv(strName, m_home.path().toLocal8Bit());
    Application();
    m_before = SetHost(&m_host);
    // What the toolkit makes once for all is there before anything is counted.
    Show();
    m_panels.clear();
    Settle();
    m_widgets = QApplication::allWidgets().size();
  }
  void TearDown() override {
    m_panels.clear();
    Settle();
    EXPECT_EQ(QApplication::allWidgets().size(), m_widgets) << "a panel left widgets behind";
    SetHost(m_before);
  }

  static void Settle() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  TarvikGUI &Show() {
    TarvikGUI &panel = *m_panels.emplace_back(std::make_unique<TarvikGUI>());
    panel.resize(panel.sizeHint());
    panel.show();
    Settle();
    return panel;
  }
  template <class Widget>
  static Widget &Find(QWidget &panel, const char *strName) {
    return *panel.findChild<Widget *>(QString::fromLatin1(strName));
  }
  static std::string Status(QWidget &panel) {
    return Find<QPlainTextEdit>(panel, "txtStatus").toPlainText().toStdString();
  }
  static QTreeWidget &List(QWidget &panel) { return Find<QTreeWidget>(panel, "lvwInstruments"); }
  static void OpenFirst(QWidget &panel) {
    QTreeWidget &list = List(panel);
    list.setCurrentItem(list.topLevelItem(0));
    QTest::keyClick(&list, Qt::Key_Return);
    Settle();
  }

  QTemporaryDir m_home;
  QuietHost m_host;
  Host *m_before = nullptr;
  std::vector<std::unique_ptr<TarvikGUI>> m_panels;
  qsizetype m_widgets = 0;
};

TEST_F(PanelLife, ShowingStartsThePanelAndNothingElseIsNeeded) {
  TarvikGUI &panel = Show();
  EXPECT_GT(List(panel).topLevelItemCount(), 0);
  EXPECT_TRUE(Find<QPushButton>(panel, "cmdRefresh").isEnabled());
  EXPECT_THAT(m_host.Boxes, IsEmpty());
}

TEST_F(PanelLife, TwoPanelsOnAThreadShareTheOneSession) {
  TarvikGUI &first = Show(), &second = Show();
  OpenFirst(first);
  EXPECT_THAT(Status(first), StartsWith("Online with "));
  EXPECT_EQ(Status(second), Status(first));
  second.hide();
  EXPECT_EQ(Status(first), "Offline");
  EXPECT_FALSE(InstrInterface()->IsOnline(True));
}

TEST_F(PanelLife, TheFirstOfTwoPanelsCanGoWhileTheOtherWorksOn) {
  Show();
  TarvikGUI &second = Show();
  m_panels.erase(m_panels.begin());
  Settle();
  OpenFirst(second);
  EXPECT_THAT(Status(second), StartsWith("Online with "));
}

TEST_F(PanelLife, TheLastShownPanelCanGoWhileTheOtherIsEdited) {
  TarvikGUI &first = Show();
  Show();
  m_panels.pop_back();
  Settle();
  OpenFirst(first);
  // Nobody is left to be told of a change; the field takes it all the same.
  QWidget *field = first.findChild<QWidget *>(QStringLiteral("esBurstLength"));
  ASSERT_TRUE(field);
  auto &text = *field->findChild<QLineEdit *>(QStringLiteral("txtNumber"));
  QTest::keyClick(&text, Qt::Key_Up);
  EXPECT_THAT(Status(first), StartsWith("Online with "));
}

TEST_F(PanelLife, HidingEndsTheSessionAndShowingStartsAnew) {
  TarvikGUI &panel = Show();
  const int intItems = Find<QComboBox>(Find<QWidget>(panel, "cboPllRefFreq"), "cbo").count();
  OpenFirst(panel);
  EXPECT_TRUE(InstrInterface()->IsOnline(True));
  panel.hide();
  Settle();
  EXPECT_FALSE(InstrInterface()->IsOnline(True));
  panel.show();
  Settle();
  EXPECT_GT(List(panel).topLevelItemCount(), 0);
  // Lists that are filled without being cleared first hold their items twice.
  EXPECT_EQ(Find<QComboBox>(Find<QWidget>(panel, "cboPllRefFreq"), "cbo").count(), 2 * intItems);
  OpenFirst(panel);
  EXPECT_THAT(Status(panel), StartsWith("Online with "));
}

TEST_F(PanelLife, APanelDestroyedDuringASessionEndsIt) {
  OpenFirst(Show());
  ASSERT_TRUE(InstrInterface()->IsOnline(True));
  m_panels.clear();
  Settle();
  EXPECT_FALSE(InstrInterface()->IsOnline(True));
  TarvikGUI &next = Show();
  OpenFirst(next);
  EXPECT_THAT(Status(next), StartsWith("Online with "));
}

TEST_F(PanelLife, APanelThatIsNeverShownStartsNothing) {
  m_panels.push_back(std::make_unique<TarvikGUI>());
  Settle();
  EXPECT_EQ(List(*m_panels.back()).topLevelItemCount(), 0);
}

TEST_F(PanelLife, AHostWithoutADriverGetsAPanelWithoutInstruments) {
  const QString folder = m_home.path() + QStringLiteral("/tarvikvi/drivers");
  ASSERT_TRUE(QDir().mkpath(folder));
  QFile manifest(folder + QStringLiteral("/KolvenAtl.Kolven.driver"));
  ASSERT_TRUE(manifest.open(QIODevice::WriteOnly));
  manifest.write("nowhere/libnodriver.so\n");
  manifest.close();

  TarvikGUI &panel = Show();
  EXPECT_EQ(List(panel).topLevelItemCount(), 0);
  EXPECT_FALSE(Find<QPushButton>(panel, "cmdRefresh").isEnabled());
  EXPECT_THAT(m_host.Boxes, testing::Contains(HasSubstr("libnodriver.so")));

  // A driver that comes later is found at the next showing.
  panel.hide();
  ASSERT_TRUE(manifest.remove());
  panel.show();
  Settle();
  EXPECT_GT(List(panel).topLevelItemCount(), 0);
  EXPECT_TRUE(Find<QPushButton>(panel, "cmdRefresh").isEnabled());
}

}  // namespace
}  // namespace tarvik
