#include <gmock/gmock.h>

#include <QAbstractItemModel>
#include <QClipboard>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <algorithm>

#include "RecordingHost.h"
#include "ToolkitBoxes.h"
#include "WidgetEnvironment.h"
#include "platform/MessageWindow.h"
#include "support/Boxes.h"
#include "support/EventBoundary.h"
#include "support/modErrorLog.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class Messages : public testing::Test {
 protected:
  /// What was kept, as "kind: text" and, where it came more than once, its count.
  std::vector<std::string> Kept() {
    std::vector<std::string> arrLines;
    for (const HostMessage &message : boxes.Messages().All())
      arrLines.push_back(std::string(KindName(message.icon)) + ": " + message.strText +
                         (message.lngCount > 1 ? " x" + std::to_string(message.lngCount) : ""));
    return arrLines;
  }
  std::vector<std::string> Shown() {
    std::vector<std::string> arrTexts;
    for (const auto &box : boxes.arrBoxes) arrTexts.push_back(box.strText + (box.fOffersList ? " [list?]" : ""));
    return arrTexts;
  }
  /// One action of the user.
  static void Act(const std::function<void()> &action) { RunUserEvent("cmdUpload", "Click", action); }
  static void Fail(const std::string &strText) { ShowStopMessage(strText); }
  static bool Asked(const std::string &strText) {
    return ShowBox(strText, BoxIcon::Question, BoxButtons::YesNo) == BoxAnswer::Yes;
  }

  RecordingHost recording;
  ToolkitBoxes boxes;
};

TEST_F(Messages, EveryBoxIsKeptWithItsKindAndAnswer) {
  Act([] {
    Fail("Dead");
    ShowBox("Done", BoxIcon::Information);
    Asked("Really?");
    ShowBox("Hot", BoxIcon::Exclamation);
  });
  EXPECT_THAT(Kept(), ElementsAre("Stop: Dead", "Information: Done", "Question: Really?\r\n[Yes]", "Warning: Hot"));
  EXPECT_EQ(boxes.Messages().Unseen(), 0);
}

TEST_F(Messages, TheSameTextInARowOnlyCounts) {
  Act([] {
    Fail("Dead");
    Fail("Dead");
    Fail("Cold");
    Fail("Dead");
  });
  EXPECT_THAT(Kept(), ElementsAre("Stop: Dead x2", "Stop: Cold", "Stop: Dead"));
}

TEST_F(Messages, OnlyABoxThatFollowsAnotherOffersTheListForTheRest) {
  Act([] {
    Fail("1");
    Fail("2");
    Fail("3");
  });
  Act([] { Fail("4"); });
  EXPECT_THAT(Shown(), ElementsAre("1", "2 [list?]", "3 [list?]", "4"));
}

TEST_F(Messages, TheRestOfAnActionComesIntoTheListAndTheNextActionHasBoxesAgain) {
  boxes.fTakesListOnly = true;
  Act([] {
    for (int i = 1; i <= 48; ++i) Fail(std::to_string(i));
  });
  EXPECT_THAT(Shown(), ElementsAre("1", "2 [list?]"));
  EXPECT_THAT(Kept(), SizeIs(48));
  EXPECT_EQ(boxes.Messages().Unseen(), 46);
  Act([] { Fail("next"); });
  EXPECT_THAT(Shown(), ElementsAre("1", "2 [list?]", "next"));
}

TEST_F(Messages, QuestionsAreAskedWhateverWasChosen) {
  boxes.fTakesListOnly = true;
  boxes.eAnswer = Qt::Key_Escape;
  bool fAgreed = true;
  Act([&] {
    Fail("1");
    Fail("2");
    Fail("3");
    fAgreed = Asked("Really?");
  });
  EXPECT_FALSE(fAgreed);
  EXPECT_THAT(Shown(), ElementsAre("1", "2 [list?]", "Really?"));
}

TEST_F(Messages, AnActionBehindABoxHasItsOwnChoice) {
  boxes.fTakesListOnly = true;
  bool fNested = false;
  boxes.OnBox = [&](QMessageBox &) {
    if (std::exchange(fNested, true)) return;
    boxes.OnBox = nullptr;
    RunUserEvent("cmdOther", "Click", [] { Fail("other"); });
  };
  Act([] {
    Fail("1");
    Fail("2");
    Fail("3");
  });
  EXPECT_THAT(Shown(), ElementsAre("1", "other", "2 [list?]"));
}

TEST_F(Messages, BoxesOfTheHostItselfBelongToNoAction) {
  boxes.MsgBox("1", BoxIcon::Stop, BoxButtons::Ok, "TarvikVI");
  boxes.MsgBox("2", BoxIcon::Stop, BoxButtons::Ok, "TarvikVI");
  EXPECT_THAT(Shown(), ElementsAre("1", "2"));
}

TEST_F(Messages, AHostThatAsksForTheListAloneGetsQuestionsOnly) {
  boxes.SetBoxes(QtHost::Boxes::ListOnly);
  Act([] {
    Fail("1");
    EXPECT_TRUE(Asked("Really?"));
  });
  EXPECT_THAT(Shown(), ElementsAre("Really?"));
  EXPECT_THAT(Kept(), ElementsAre("Stop: 1", "Question: Really?\r\n[Yes]"));
  EXPECT_EQ(boxes.Messages().Unseen(), 1);
}

TEST_F(Messages, TheListIsBounded) {
  boxes.SetBoxes(QtHost::Boxes::ListOnly);
  for (int i = 1; i <= 1001; ++i) Fail(std::to_string(i));
  EXPECT_THAT(boxes.Messages().All(), SizeIs(1000));
  EXPECT_EQ(boxes.Messages().All().front().strText, "2");
  EXPECT_EQ(boxes.Messages().All().back().strText, "1001");

  // The cut would fall into a character of two bytes.
  Fail("x" + std::string(MessageList::MaxText - 2, 'y') + "\xC3\xA4" + "end");
  EXPECT_EQ(boxes.Messages().All().back().strText, "x" + std::string(MessageList::MaxText - 2, 'y') + " ...");
}

TEST_F(Messages, TheWindowFollowsTheListAndTellsWhereTheLogIs) {
  boxes.SetBoxes(QtHost::Boxes::ListOnly);
  recording.SetClock(2026, 3, 9, 14, 5);
  Fail("before");
  boxes.ShowMessages(nullptr);
  const auto arrWindows = QApplication::topLevelWidgets();
  const auto found = std::ranges::find(arrWindows, QStringLiteral("MessageWindow"), &QWidget::objectName);
  ASSERT_NE(found, arrWindows.end());
  QWidget *window = *found;
  ASSERT_TRUE(QTest::qWaitForWindowActive(window));
  EXPECT_EQ(boxes.Messages().Unseen(), 0);
  EXPECT_THAT(window->findChild<QLabel *>("lblLog")->text().toStdString(), HasSubstr("Error log: error.log"));
  EXPECT_THAT(window->findChild<QLabel *>("lblLog")->text().toStdString(), HasSubstr("the last 1000 messages"));

  Fail("after\r\nline two");
  Fail("after\r\nline two");
  const QAbstractItemModel &model = *window->findChild<QTableView *>("tblMessages")->model();
  ASSERT_EQ(model.rowCount(), 2);
  EXPECT_EQ(model.index(1, 1).data().toString(), QStringLiteral("Stop"));
  EXPECT_EQ(model.index(1, 2).data().toInt(), 2);
  EXPECT_EQ(model.index(1, 3).data().toString(), QStringLiteral("after\nline two"));
  EXPECT_THAT(model.index(1, 0).data(Qt::ToolTipRole).toString().toStdString(),
              testing::MatchesRegex("[0-9]+-[0-9]+-[0-9]+"));
  EXPECT_FALSE(model.index(1, 3).data(Qt::ToolTipRole).isValid()) << "the day belongs to the time";
  EXPECT_FALSE(model.index(1, 0).data(Qt::CheckStateRole).isValid());

  // The second call finds the window that is open.
  boxes.ShowMessages(nullptr);
  EXPECT_EQ(QApplication::activeWindow(), window);
  window->findChild<QTableView *>("tblMessages")->clearSelection();
  QTest::mouseClick(window->findChild<QPushButton *>("cmdCopy"), Qt::LeftButton);
  const auto lines = QGuiApplication::clipboard()->text().split(QLatin1Char('\n'));
  ASSERT_EQ(lines.size(), 2);
  EXPECT_THAT(lines[1].toStdString(), testing::EndsWith("\tStop\t2\tafter line two"));
  QTest::keyClick(window, Qt::Key_Escape);
  EXPECT_FALSE(window->isVisible());
}

TEST_F(Messages, ThePathOfTheLogIsShownAsItIsAndCanBeSelected) {
  MessageList list;
  MessageWindow window(list, QStringLiteral("/home/<b>user</b>/error.log"), nullptr);
  window.show();
  auto *log = window.findChild<QLabel *>("lblLog");
  log->setFocus();
  QTest::keySequence(log, QKeySequence::SelectAll);
  EXPECT_THAT(log->selectedText().toStdString(), HasSubstr("Error log: /home/<b>user</b>/error.log"));
}

TEST_F(Messages, ALongPathOfTheLogLeavesTheWindowItsWidth) {
  MessageList list;
  QString strPath;
  for (int i = 0; i < 40; ++i) strPath += QStringLiteral("/a long name");
  MessageWindow window(list, strPath, nullptr);
  window.show();
  EXPECT_LT(window.minimumSizeHint().width(), window.fontMetrics().horizontalAdvance(strPath) / 2);
}

TEST_F(Messages, KeysBeginAtTheNewestMessage) {
  boxes.SetBoxes(QtHost::Boxes::ListOnly);
  Fail("1");
  MessageWindow window(boxes.Messages(), QStringLiteral("error.log"), nullptr);
  window.show();
  const auto *table = window.findChild<QTableView *>("tblMessages");
  Fail("2");
  EXPECT_EQ(table->currentIndex().row(), 1);
}

TEST_F(Messages, AfterALostConnectionTheListIsProposedAndWhoDeclinesIsNotAskedAgain) {
  boxes.OnBox = [](QMessageBox &box) {
    if (box.checkBox()->isChecked()) QTest::keyClick(box.checkBox(), Qt::Key_Space);
  };
  Act([&] {
    boxes.ConnectionLost("The connection is lost");
    Fail("1");
    Fail("2");
  });
  ASSERT_THAT(Shown(), ElementsAre("1 [list?]", "2 [list?]"));
  EXPECT_TRUE(boxes.arrBoxes[0].fListChosen);
  EXPECT_FALSE(boxes.arrBoxes[1].fListChosen);
}

TEST_F(Messages, AMessageThatIsHigherThanTheWindowCanBeReadToItsEnd) {
  boxes.SetBoxes(QtHost::Boxes::ListOnly);
  std::string strText;
  for (int i = 1; i <= 100; ++i) strText += "line " + std::to_string(i) + "\r\n";
  Fail(strText);
  MessageWindow window(boxes.Messages(), QStringLiteral("error.log"), nullptr);
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  const QScrollBar *scroll = window.findChild<QTableView *>("tblMessages")->verticalScrollBar();
  EXPECT_GT(scroll->maximum(), 50 * window.fontMetrics().height());
}

}  // namespace
}  // namespace tarvik::test
