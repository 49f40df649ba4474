#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <QWindow>

#include "SimulatorSession.h"
#include "WidgetEnvironment.h"
#include "platform/CommandButton.h"
#include "platform/Highlight.h"
#include "platform/TabControl.h"

namespace tarvik::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

/// A panel on its second show, with a field in front and its buttons enabled as an open session left them, that waits
/// for its start.
class WaitingPanel : public testing::Test {
 protected:
  WaitingPanel() {
    session.Open("VP-210");
    session->ShowPage(ePageLimits);
    session.Hide();
    session.host.TakeLines();
    session.panel->show();
    session.panel->activateWindow();
  }
  QLineEdit &Text() const { return *session->Field("esLimitHighVoltage(0)").findChild<QLineEdit *>(); }
  bool IsLit(const char *strName) const { return session->Get<Highlight>(strName).Visible(); }
  void ExpectDeaf(const char *strWhat) {
    EXPECT_THAT(session.host.TakeLines(), IsEmpty()) << strWhat;
    EXPECT_FALSE(IsLit("picUploadHighlight")) << strWhat;
    EXPECT_FALSE(IsLit("picDownloadHighlight")) << strWhat;
    EXPECT_EQ(session->Get<TabControl>("tabMain").Tab(), ePageLimits) << strWhat;
    EXPECT_EQ(Text().text().toStdString(), m_strBefore) << strWhat;
  }
  void TurnWheel(QWidget &widget) {
    const QPointF place = widget.rect().center();
    QWheelEvent event(place, widget.mapToGlobal(place), {}, {0, 120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                      false);
    QCoreApplication::sendEvent(&widget, &event);
  }
  bool OfferDrop(QWidget &widget) {
    QMimeData text;
    text.setText(QStringLiteral("7"));
    const QPoint place = widget.rect().center();
    QDragEnterEvent enter(place, Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &enter);
    QDropEvent drop(place, Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &drop);
    return enter.isAccepted();
  }

  SimulatorSession session;

 private:
  const std::string m_strBefore = Text().text().toStdString();
};

TEST_F(WaitingPanel, TakesNoCommandBeforeItsStart) {
  for (const char *strButton : {"cmdUpload", "cmdDownload", "cmdCheckErrors", "cmdCheckWarnings"}) {
    ASSERT_TRUE(session->Get<CommandButton>(strButton).Enabled()) << strButton;
    session->Click(strButton);
    ExpectDeaf(strButton);
    EXPECT_TRUE(session->Get<CommandButton>(strButton).Enabled()) << "the form's own";
  }
  for (const Qt::Key key : {Qt::Key_U, Qt::Key_D, Qt::Key_T}) {
    QTest::keyClick(session.panel.get(), key, Qt::AltModifier);
    ExpectDeaf("access key");
  }
  QTabBar &tabs = *session->Get<QTabWidget>("tabMain").tabBar();
  QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(ePageTiming).center());
  ExpectDeaf("tab");

  Text().setFocus();
  QTest::keyClicks(&Text(), QStringLiteral("3"));
  QTest::keyClick(&Text(), Qt::Key_Return);
  ExpectDeaf("keys in a field");
  TurnWheel(Text());
  ExpectDeaf("wheel");
  EXPECT_FALSE(OfferDrop(Text()));
  ExpectDeaf("drop");
  QContextMenuEvent menu(QContextMenuEvent::Mouse, Text().rect().center(), QPoint(1, 1));
  QCoreApplication::sendEvent(&Text(), &menu);
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
  QTest::mouseClick(&session->Get<QWidget>("optLimitsChanel(0)"), Qt::LeftButton, {}, QPoint(8, 8));
  ExpectDeaf("option");

  LetPanelsStart();
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
  EXPECT_FALSE(IsLit("picUploadHighlight"));
  EXPECT_EQ(session->Instruments().Count(), 5);
  session.Open("VP-210");
  EXPECT_THAT(session->Ticked(), ElementsAre("VP-210"));
}

TEST_F(WaitingPanel, KeepsTheFocusWhereItIsWhateverIsClicked) {
  auto &errors = session->Get<QWidget>("cmdCheckErrors");
  errors.setFocus();
  const QPointF place = Text().mapTo(session.panel.get(), Text().rect().center());
  QMouseEvent press(QEvent::MouseButtonPress, place, session.panel->mapToGlobal(place), Qt::LeftButton, Qt::LeftButton,
                    Qt::NoModifier);
  QCoreApplication::sendEvent(session.panel->windowHandle(), &press);
  EXPECT_EQ(session.panel->focusWidget(), &errors);
  LetPanelsStart();
}

TEST_F(WaitingPanel, LeavesTheRowsOfTheFormerListAlone) {
  session->Get<QTabWidget>("tabMain").setCurrentIndex(ePageInstr);
  session.host.TakeLines();
  session->Tick(0);
  session->DoubleClick(0);
  QTest::keyClick(&session->Instruments(), Qt::Key_Return);
  EXPECT_THAT(session.host.TakeLines(), IsEmpty());
  LetPanelsStart();
  EXPECT_THAT(session->Ticked(), IsEmpty());
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
}

TEST_F(WaitingPanel, IsNotMarkedByAnEditInAnotherPanel) {
  session.panel->SetTabState(ePageIsDirty, ePageLimits);
  EXPECT_FALSE(IsLit("picUploadHighlight"));
  LetPanelsStart();
  EXPECT_FALSE(IsLit("picUploadHighlight"));
  session.panel->SetTabState(ePageIsDirty, eCurrPage);
  EXPECT_TRUE(IsLit("picUploadHighlight"));
}

/// Presses a button as assistive technology does; the toolkit clicks a moment later.
void Press(QWidget &button) {
  QAccessible::queryAccessibleInterface(&button)->actionInterface()->doAction(
      QAccessibleActionInterface::pressAction());
}

void WaitUntilUp(const QAbstractButton &button) {
  ASSERT_TRUE(QTest::qWaitFor([&] { return !button.isDown(); }));
  QCoreApplication::processEvents();
}

TEST_F(WaitingPanel, TakesNoCommandFromTheClickOfAHost) {
  for (const char *strButton : {"cmdUpload", "cmdDownload", "cmdCheckErrors", "cmdCheckWarnings", "cmdRefresh",
                                "cmdResetInstr", "optLimitsChanel(0)", "chkAutoOutputOnOff"}) {
    session->Get<QAbstractButton>(strButton).click();
    ExpectDeaf(strButton);
  }
}

TEST_F(WaitingPanel, TakesNoCommandFromAPressByAssistiveTechnologyAlsoWhenItsClickComesBehindTheStart) {
  auto &refresh = session->Get<CommandButton>("cmdRefresh");
  Press(refresh);
  ASSERT_TRUE(refresh.isDown());
  ExpectDeaf("press");
  LetPanelsStart();
  session.host.TakeLines();
  ASSERT_TRUE(refresh.isDown());
  WaitUntilUp(refresh);
  EXPECT_THAT(session.host.TakeLines(), IsEmpty());

  Press(refresh);
  WaitUntilUp(refresh);
  EXPECT_THAT(session.host.TakeLines(), Contains("pointer 11"));
}

TEST_F(WaitingPanel, TakesNoChoiceInAListFromElsewhere) {
  int intClicks = 0;
  CboEnhanced &frequency = session->List("cboPllRefFreq");
  frequency.Click.Connect([&] { ++intClicks; });
  session->Instruments().Item(1)->setCheckState(0, Qt::Checked);
  ExpectDeaf("tick");
  frequency.findChild<QComboBox *>()->setCurrentIndex(frequency.ListIndex() == 0 ? 1 : 0);
  ExpectDeaf("choice");
  EXPECT_EQ(intClicks, 0);
}

TEST(WaitingPanelInAWindow, TheHostsOwnControlsWorkWhileThePanelWaits) {
  SimulatorSession session;
  session.NewPanel();
  QWidget window;
  QVBoxLayout layout(&window);
  auto *button = new QPushButton(QStringLiteral("Host's"));
  layout.addWidget(button);
  layout.addWidget(session.panel.get());
  int intClicks = 0;
  QObject::connect(button, &QPushButton::clicked, [&] { ++intClicks; });
  window.show();
  QTest::mouseClick(button, Qt::LeftButton);
  EXPECT_EQ(intClicks, 1);
  LetPanelsStart();
  session.panel->setParent(nullptr);
}

}  // namespace
}  // namespace tarvik::test
