#include <QComboBox>
#include <QPushButton>
#include <QTimer>

#include "ProgramFixture.h"
#include "ServerDialog.h"
#include "controls/CboEnhanced.h"
#include "platform/CheckBox.h"
#include "platform/CommandButton.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char *Bench = "tarvik://bench:17830";
const DriverFailure Unreachable{static_cast<Long>(0x800706BA), "The driver server at bench:17830 cannot be reached"};

class Servers : public Program {
 protected:
  /// What the user does in the dialog of the next "Server address...".
  void AnswerDialog(const std::function<void(ServerDialog &dialog)> &answer) const {
    QTimer::singleShot(0, window.get(), [this, answer] {
      auto *dialog = window->findChild<ServerDialog *>();
      ASSERT_TRUE(dialog);
      answer(*dialog);
      if (dialog->isVisible()) dialog->reject();
    });
    Take("actionServerAddress");
  }
  static QComboBox &Address(ServerDialog &dialog) { return *dialog.findChild<QComboBox *>("cboAddress"); }
  static void Press(ServerDialog &dialog, const char *strButton) {
    QTest::mouseClick(dialog.findChild<QPushButton *>(QString::fromLatin1(strButton)), Qt::LeftButton);
  }
  void ConnectTo(const QString &strAddress) const {
    AnswerDialog([&](ServerDialog &dialog) {
      QLineEdit &text = *Address(dialog).lineEdit();
      QTest::keyClick(&text, Qt::Key_A, Qt::ControlModifier);
      QTest::keyClick(&text, Qt::Key_Delete);
      QTest::keyClicks(&text, strAddress);
      QTest::keyClick(&text, Qt::Key_Return);
    });
  }
  void OpenAlpha() const {
    User().OpenFirst();
    ASSERT_TRUE(InstrInterface()->IsOnline(True));
  }
  bool CanRefresh() const { return Get<CommandButton>("cmdRefresh").Enabled(); }
  int Rows() const { return User().Instruments().Count(); }
};

TEST_F(Servers, AFirstStartIsOnThisMachineAndTheTitleSaysSo) {
  Start();
  EXPECT_THAT(Created(), ElementsAre(""));
  EXPECT_EQ(Title(), "TarvikVI - this machine");
}

TEST_F(Servers, AChosenServerIsConnectedToAtEachStart) {
  Start();
  ConnectTo("tarvik://bench:17830 ");
  Created();
  for (int i = 0; i < 3; ++i) {
    Start();
    EXPECT_THAT(Created(), ElementsAre(Bench));
    EXPECT_EQ(StoredForInterface(), "") << "the instrument interface forgets it each time";
    EXPECT_EQ(Title(), "TarvikVI - tarvik://bench:17830");
  }
}

TEST_F(Servers, ADeadAddressOfAnEarlierVersionLocksNobodyOut) {
  StoreForInterface(Bench);
  driver.QueueFailingCreation(Unreachable);
  Start();
  EXPECT_THAT(Created(), ElementsAre(Bench));
  EXPECT_FALSE(CanRefresh());
  EXPECT_EQ(Title(), "TarvikVI - tarvik://bench:17830 (not connected)");
  EXPECT_THAT(host.TakeBoxes(), testing::Contains("box stop: The driver server at bench:17830 cannot be reached"));

  ConnectTo({});
  EXPECT_THAT(Created(), ElementsAre(""));
  EXPECT_TRUE(CanRefresh());
  EXPECT_EQ(Rows(), 1);
  EXPECT_EQ(Title(), "TarvikVI - this machine");
  EXPECT_THAT(host.TakeBoxes(), IsEmpty());
  Start();
  EXPECT_THAT(Created(), ElementsAre(""));
}

TEST_F(Servers, ConnectAgainFindsAServerThatHasComeBackAndListsNothingTwice) {
  StoreForInterface(Bench);
  driver.QueueFailingCreation(Unreachable);
  Start();
  const Long lngSources = Get<CboEnhanced>("cboPllRefSource").ListCount();
  Created();
  Take("actionConnectAgain");
  EXPECT_THAT(Created(), ElementsAre(Bench));
  EXPECT_TRUE(CanRefresh());
  EXPECT_EQ(Rows(), 1);
  EXPECT_EQ(Get<CboEnhanced>("cboPllRefSource").ListCount(), lngSources);
  EXPECT_EQ(Title(), "TarvikVI - tarvik://bench:17830");
}

TEST_F(Servers, ALostConnectionIsToldInTheTitleAfterConnectAgainFails) {
  Start();
  ASSERT_EQ(Title(), "TarvikVI - this machine");
  driver.QueueFailingCreation({429, "no such driver"});
  Take("actionConnectAgain");
  EXPECT_EQ(Title(), "TarvikVI - this machine (not connected)");
}

TEST_F(Servers, ConnectAgainKeepsOptionsAndZoomAndTyping) {
  Start();
  Take("actionTyping");
  Take("actionLarger");
  const Long lngZoom = window->Panel().Zoom();
  Get<CheckBox>("chkAutoDownload").SetValue(0);
  Take("actionConnectAgain");
  EXPECT_EQ(window->Panel().Zoom(), lngZoom);
  EXPECT_TRUE(window->Panel().TypingReplacesNumber());
  EXPECT_EQ(Get<CheckBox>("chkAutoDownload").Value(), 0);
}

TEST_F(Servers, AnOpenSessionEndsOnlyWhenTheUserSaysSo) {
  Start();
  OpenAlpha();
  host.arrEntries.clear();
  host.arrBoxAnswers = {BoxAnswer::No};
  Take("actionConnectAgain");
  EXPECT_TRUE(InstrInterface()->IsOnline(True));
  EXPECT_THAT(host.TakeBoxes(),
              ElementsAre("box question: Connecting ends the session with the instrument.\r\nWhat was not uploaded is "
                          "lost. Connect all the same?"));
  host.arrBoxAnswers = {BoxAnswer::Yes};
  Take("actionConnectAgain");
  EXPECT_FALSE(InstrInterface()->IsOnline(True));
  EXPECT_EQ(Rows(), 1);
}

TEST_F(Servers, AnAddressThatThePanelAskedForIsRememberedAsAChosenOne) {
  driver.QueueEmptyCreation();
  host.arrInputAnswers = {Bench};
  Start();
  EXPECT_THAT(Created(), ElementsAre("", Bench));
  EXPECT_EQ(Title(), "TarvikVI - tarvik://bench:17830");
  Start();
  EXPECT_THAT(Created(), ElementsAre(Bench)) << "it does not ask again";
}

TEST_F(Servers, TheCommandLineCountsForOneRun) {
  Start(QStringLiteral("tarvik://other"));
  EXPECT_THAT(Created(), ElementsAre("tarvik://other"));
  EXPECT_EQ(Title(), "TarvikVI - tarvik://other");
  Take("actionConnectAgain");
  EXPECT_THAT(Created(), ElementsAre("tarvik://other"));
  Start();
  EXPECT_THAT(Created(), ElementsAre(""));
}

TEST_F(Servers, AServerOfTheCommandLineThatFailsIsNotTakenForTheChosenOne) {
  driver.QueueFailingCreation(Unreachable);
  Start(QStringLiteral("tarvik://other"));
  EXPECT_EQ(Title(), "TarvikVI - tarvik://other (not connected)");
  Created();
  Start();
  EXPECT_THAT(Created(), ElementsAre(""));
}

TEST_F(Servers, TheCommandLineCanBringBackThisMachine) {
  StoreForInterface(Bench);
  Start(QString());
  EXPECT_THAT(Created(), ElementsAre(""));
  Start();
  EXPECT_THAT(Created(), ElementsAre(Bench)) << "the stored choice stands";
}

TEST_F(Servers, TheDialogOffersTheLatestFirstAndTakesOneOffTheList) {
  Start();
  for (const char *strAddress : {"tarvik://one", "tarvik://two", "tarvik://one", ""})
    ConnectTo(QString::fromLatin1(strAddress));
  AnswerDialog([](ServerDialog &dialog) {
    QComboBox &address = Address(dialog);
    EXPECT_EQ(address.currentText(), "");
    ASSERT_EQ(address.count(), 2);
    EXPECT_EQ(address.itemText(0), "tarvik://one");
    EXPECT_EQ(address.itemText(1), "tarvik://two");
    const auto *remove = dialog.findChild<QPushButton *>("cmdRemove");
    EXPECT_FALSE(remove->isEnabled()) << "this machine stays";
    QTest::keyClicks(&address, QStringLiteral("tarvik://one"));
    EXPECT_TRUE(remove->isEnabled());
    Press(dialog, "cmdRemove");
    EXPECT_EQ(address.currentText(), "");
    EXPECT_EQ(address.count(), 1);
  });
  Start();
  AnswerDialog([](ServerDialog &dialog) {
    ASSERT_EQ(Address(dialog).count(), 1);
    EXPECT_EQ(Address(dialog).itemText(0), "tarvik://two");
  });
}

TEST_F(Servers, ADialogThatIsCancelledChangesNothing) {
  Start();
  Created();
  AnswerDialog([](ServerDialog &dialog) {
    QTest::keyClicks(&Address(dialog), QString::fromLatin1(Bench));
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
  });
  EXPECT_THAT(Created(), IsEmpty());
  EXPECT_EQ(Title(), "TarvikVI - this machine");
}

TEST_F(Servers, AddressThatCannotBeHandedOverIsToldInABox) {
  Start();
  host.arrEntries.clear();
  host.arrSaveFailures = {{75, "Cannot write the settings file", 0}};
  ConnectTo(Bench);
  EXPECT_THAT(host.TakeBoxes(),
              testing::Contains("box exclamation: Unable to save the server address: Cannot write the settings file"));
}

TEST_F(Servers, SettingsThatCannotBeReadKeepNobodyFromStarting) {
  host.arrGetFailures = {{75, "Cannot read the settings file", 0}};
  Start();
  EXPECT_TRUE(window->isVisible());
  EXPECT_THAT(host.TakeBoxes(),
              testing::Contains("box exclamation: Unable to save the server address: Cannot read the settings file"));
}

}  // namespace
}  // namespace tarvik::test
