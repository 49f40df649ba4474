#include "ProgramFixture.h"

namespace tarvik::test {
namespace {

class Edit : public Program {
 protected:
  Edit() {
    Start();
    User().OpenFirst();
    User().ShowPage(ePageTiming);
    User().Type("esWidth(0)", "50n");
  }
  QAction &Action(const char *strName) const { return *window->findChild<QAction *>(QString::fromLatin1(strName)); }
  double Width() const { return User().Field("esWidth(0)").Value(); }
};

TEST_F(Edit, TheMenuNamesTheStepThatItUndoes) {
  EXPECT_EQ(Action("actionUndo").text(), "&Undo Width, channel 1: 100.0 ns to 50.00 ns\tCtrl+Z");
  EXPECT_FALSE(Action("actionRedo").isEnabled());
  Take("actionUndo");
  EXPECT_EQ(Width(), 100e-9);
  EXPECT_EQ(Action("actionRedo").text(), "&Redo Width, channel 1: 100.0 ns to 50.00 ns\tCtrl+Shift+Z");
  Take("actionRedo");
  EXPECT_EQ(Width(), 50e-9);
}

TEST_F(Edit, TheKeysReachThePanelOnce) {
  window->activateWindow();
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Width(), 100e-9);
}

TEST_F(Edit, TheMenuFollowsThePanelThatComesWithANewConnection) {
  Take("actionConnectAgain");
  EXPECT_FALSE(Action("actionUndo").isEnabled());
  User().OpenFirst();
  User().ShowPage(ePageTiming);
  User().Type("esWidth(0)", "60n");
  EXPECT_TRUE(Action("actionUndo").isEnabled());
  Take("actionHistory");
  EXPECT_NE(window->findChild<QWidget *>(QStringLiteral("HistoryWindow")), nullptr);
}

}  // namespace
}  // namespace tarvik::test
