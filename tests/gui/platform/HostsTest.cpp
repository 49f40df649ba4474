#include <gmock/gmock.h>

#include <QApplication>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "WidgetEnvironment.h"
#include "platform/ConsoleHost.h"
#include "platform/QtHost.h"
#include "support/RunTimeError.h"
#include "support/modUtils.h"

namespace tarvik::test {
namespace {

class QtHostTest : public testing::Test {
 protected:
  QtHostTest() {
    setenv("XDG_CONFIG_HOME", folder.path().toLocal8Bit().constData(), 1);
    // The store reads its place once for the process.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
  }
  /// Answers the box that comes up by the key, and keeps what it showed.
  void AnswerBox(Qt::Key key) {
    QTimer::singleShot(0, [this, key] {
      auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
      ASSERT_NE(box, nullptr);
      strText = box->text().toStdString();
      strTitle = box->windowTitle().toStdString();
      icon = box->icon();
      shape = QApplication::overrideCursor() ? QApplication::overrideCursor()->shape() : Qt::ArrowCursor;
      QTest::keyClick(box, key);
    });
  }

  QTemporaryDir folder;
  QtHost host;
  std::string strText, strTitle;
  QMessageBox::Icon icon = QMessageBox::NoIcon;
  Qt::CursorShape shape = Qt::BlankCursor;
};

TEST_F(QtHostTest, SettingsLiveInTheUsersConfigurationAndLastBeyondTheHost) {
  EXPECT_EQ(host.GetSetting("TarvikVI", "Config", "Upload", "All"), "All");
  host.SaveSetting("TarvikVI", "Config", "Upload", "");
  host.SaveSetting("TarvikVI", "LastUsed", "ServerURL", "host,1; \"x\" = \xC3\xA4");
  QtHost second;
  EXPECT_EQ(second.GetSetting("TarvikVI", "Config", "Upload", "All"), "");
  EXPECT_EQ(second.GetSetting("TarvikVI", "LastUsed", "ServerURL", ""), "host,1; \"x\" = \xC3\xA4");
  bool fHasFile = false;
  for (const auto &entry : std::filesystem::recursive_directory_iterator(folder.path().toStdString()))
    fHasFile = fHasFile || entry.path().filename() == "TarvikVI.conf";
  EXPECT_TRUE(fHasFile);
}

TEST_F(QtHostTest, TheStoreIsOneWithThatOfTheConsoleAndOfTheToolkit) {
  ConsoleHost console;
  const std::string strAddress = "tarvik://lab:1, \"x\" = \\ \xC3\xA4";
  console.SaveSetting("TarvikVI", "LastUsed", "ServerURL", strAddress);
  EXPECT_EQ(host.GetSetting("TarvikVI", "LastUsed", "ServerURL", "Unknown"), strAddress);
  QSettings toolkit("TarvikVI", "TarvikVI");
  EXPECT_EQ(toolkit.value("LastUsed/ServerURL").toString().toStdString(), strAddress);
  toolkit.setValue("Config/Upload", QString::fromUtf8(" @ ;\xC3\xA4 "));
  toolkit.setValue("place", QByteArray("\x01\xD9\0\"", 4));
  toolkit.sync();
  EXPECT_EQ(console.GetSetting("TarvikVI", "Config", "Upload", "All"), " @ ;\xC3\xA4 ");
  host.SaveSetting("TarvikVI", "Config", "Upload", "None");
  EXPECT_EQ(console.GetSetting("TarvikVI", "Config", "Upload", "All"), "None");
  EXPECT_EQ(QSettings("TarvikVI", "TarvikVI").value("place").toByteArray(), QByteArray("\x01\xD9\0\"", 4));
}

TEST_F(QtHostTest, GarbageOrAFolderInPlaceOfTheStoreIsAFailureOfReadingAndNotUnknown) {
  const std::filesystem::path file = folder.filePath("TarvikVI/TarvikVI.conf").toStdString();
  ConsoleHost console;
  const auto expectFailure = [&](const std::string &strWhy) {
    for (Host *each : {static_cast<Host *>(&host), static_cast<Host *>(&console)}) {
      try {
        each->GetSetting("TarvikVI", "LastUsed", "ServerURL", "Unknown");
        ADD_FAILURE() << "read";
      } catch (const RunTimeError &error) {
        EXPECT_EQ(error.Number(), ErrPathFileAccess);
        EXPECT_EQ(error.Description(), "Cannot read the settings file " + file.string() + ": " + strWhy);
      }
    }
  };
  std::filesystem::create_directories(file);
  expectFailure("it is a folder");
  std::filesystem::remove(file);
  std::ofstream(file) << "garbage";
  expectFailure("line 1 is no setting");
}

TEST_F(QtHostTest, AStoreThatCannotBeWrittenIsAFailure) {
  // A file where the folder would have to be.
  std::filesystem::remove_all(folder.path().toStdString());
  {
    std::FILE *file = std::fopen(folder.path().toLocal8Bit().constData(), "w");
    std::fclose(file);
  }
  try {
    host.SaveSetting("TarvikVI", "Config", "Upload", "All");
    FAIL() << "the failure was swallowed";
  } catch (const RunTimeError &error) {
    EXPECT_EQ(error.Number(), ErrPathFileAccess);
  }
  std::filesystem::remove(folder.path().toStdString());
}

TEST_F(QtHostTest, ABoxWhoseWindowIsEndedUnderItIsAnsweredWithNo) {
  auto *window = new QWidget;
  window->show();
  window->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window));
  QTimer::singleShot(0, [window] { delete window; });
  EXPECT_EQ(host.MsgBox("Really?", BoxIcon::Question, BoxButtons::YesNo, "TarvikVI: Ask"), BoxAnswer::No);
}

TEST_F(QtHostTest, AQuestionTakesYesByDefaultAndNoByEscape) {
  AnswerBox(Qt::Key_Return);
  EXPECT_EQ(host.MsgBox("Really?\r\n<b>plain</b>", BoxIcon::Question, BoxButtons::YesNo, "TarvikVI: Ask"),
            BoxAnswer::Yes);
  EXPECT_EQ(strText, "Really?\n<b>plain</b>");
  EXPECT_EQ(strTitle, "TarvikVI: Ask");
  EXPECT_EQ(icon, QMessageBox::Question);
  AnswerBox(Qt::Key_Escape);
  EXPECT_EQ(host.MsgBox("Really?", BoxIcon::Question, BoxButtons::YesNo, "TarvikVI"), BoxAnswer::No);
}

TEST_F(QtHostTest, ABoxHasOneAnswerAndItsIcon) {
  AnswerBox(Qt::Key_Escape);
  EXPECT_EQ(host.MsgBox("Done", BoxIcon::Stop, BoxButtons::Ok, "TarvikVI"), BoxAnswer::Ok);
  EXPECT_EQ(icon, QMessageBox::Critical);
}

TEST_F(QtHostTest, TheBusyPointerGivesWayWhileABoxAsks) {
  host.SetMousePointer(PointerHourglass);
  EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
  AnswerBox(Qt::Key_Return);
  host.MsgBox("Done", BoxIcon::Information, BoxButtons::Ok, "TarvikVI");
  EXPECT_EQ(shape, Qt::ArrowCursor);
  EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
  host.SetMousePointer(PointerDefault);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(QtHostTest, APointerThatTheProgramSetStaysWhateverTheHourglassDoes) {
  Host *before = SetHost(&host);
  QApplication::setOverrideCursor(Qt::CrossCursor);
  SetHourglass(True);
  EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::CrossCursor);
  SetHourglass(False);
  EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::CrossCursor);
  QApplication::restoreOverrideCursor();
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  SetHost(before);
}

TEST_F(QtHostTest, AnHourglassThatTheProgramsPointerReplacedNeverComesBack) {
  Host *before = SetHost(&host);
  SetHourglass(True);
  QApplication::setOverrideCursor(Qt::CrossCursor);
  SetHourglass(False);
  EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::CrossCursor);
  QApplication::restoreOverrideCursor();
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);

  SetHourglass(True);
  EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
  QApplication::restoreOverrideCursor();
  SetHourglass(False);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  SetHost(before);
}

TEST_F(QtHostTest, AnEntryIsTakenAndACancelledOneIsEmpty) {
  QTimer::singleShot(0, [] {
    auto *box = qobject_cast<QInputDialog *>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->labelText(), QStringLiteral("Base\nplease"));
    EXPECT_EQ(box->textValue(), QStringLiteral("7"));
    box->setTextValue(QStringLiteral("12"));
    box->accept();
  });
  EXPECT_EQ(host.InputBox("Base\r\nplease", "TarvikVI", "7"), "12");
  QTimer::singleShot(0, [] { qobject_cast<QInputDialog *>(QApplication::activeModalWidget())->reject(); });
  EXPECT_EQ(host.InputBox("Base", "TarvikVI", "7"), "");
}

TEST_F(QtHostTest, AnEntryWhoseWindowIsEndedUnderItIsEmpty) {
  auto *window = new QWidget;
  window->show();
  window->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window));
  QTimer::singleShot(0, [window] { delete window; });
  EXPECT_EQ(host.InputBox("Base", "TarvikVI", "7"), "");
}

TEST_F(QtHostTest, BoxesHaveRoomForTheirTitleBetweenTheSignsOfATitleBar) {
  const std::string strLong = "TarvikVI: Confirm Instrument Selftest";
  QFont bold = QApplication::font();
  bold.setBold(true);
  // A sign at the left and three buttons at the right, 24 pixels each.
  const int intNeeded = QFontMetrics(bold).horizontalAdvance(QString::fromStdString(strLong)) + 4 * 24;
  int intWidth = 0;
  const auto close = [&intWidth] {
    auto *box = qobject_cast<QDialog *>(QApplication::activeModalWidget());
    intWidth = box->width();
    box->reject();
  };
  QTimer::singleShot(0, close);
  host.MsgBox("Done", BoxIcon::Information, BoxButtons::Ok, strLong);
  EXPECT_GE(intWidth, intNeeded);
  QTimer::singleShot(0, close);
  host.InputBox("n", strLong, "7");
  EXPECT_GE(intWidth, intNeeded);
}

TEST_F(QtHostTest, TheSeparatorIsThatOfTheLocale) {
  EXPECT_EQ(host.DecimalSeparator(), '.');
  QLocale::setDefault(QLocale(QLocale::German));
  EXPECT_EQ(host.DecimalSeparator(), ',');
  QLocale::setDefault(QLocale::c());
}

TEST(ConsoleHostTest, QuestionsTakeTheirDefaultAndArePrinted) {
  QTemporaryDir folder;
  ConsoleHost host(folder.filePath("deep/console.conf").toStdString());
  testing::internal::CaptureStderr();
  EXPECT_EQ(host.MsgBox("Reset?\r\nNow", BoxIcon::Question, BoxButtons::YesNo, "TarvikVI"), BoxAnswer::Yes);
  EXPECT_EQ(host.MsgBox("Failed", BoxIcon::Stop, BoxButtons::Ok, "TarvikVI"), BoxAnswer::Ok);
  EXPECT_EQ(host.InputBox("Server", "TarvikVI", "here"), "here");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "TarvikVI: Reset?\nNow [Yes]\nTarvikVI: Failed\nTarvikVI: Server [here]\n");
}

TEST(ConsoleHostTest, SettingsAreKeptLineByLine) {
  QTemporaryDir folder;
  const std::string strFile = folder.filePath("deep/console.conf").toStdString();
  ConsoleHost host(strFile);
  EXPECT_EQ(host.GetSetting("TarvikVI", "Config", "Upload", "All"), "All");
  host.SaveSetting("TarvikVI", "Config", "Upload", "a=b\r\n\\c");
  host.SaveSetting("TarvikVI", "Config", "Download", "");
  ConsoleHost second(strFile);
  EXPECT_EQ(second.GetSetting("TarvikVI", "Config", "Upload", "All"), "a=b\r\n\\c");
  EXPECT_EQ(second.GetSetting("TarvikVI", "Config", "Download", "All"), "");
  EXPECT_EQ(second.GetSetting("TarvikVI", "Other", "Upload", "none"), "none");
}

TEST(ConsoleHostTest, ASettingThatCannotBeWrittenIsAFailure) {
  ConsoleHost host("/proc/none/console.conf");
  try {
    host.SaveSetting("TarvikVI", "Config", "Upload", "All");
    FAIL() << "the failure was swallowed";
  } catch (const RunTimeError &error) {
    EXPECT_EQ(error.Number(), ErrPathFileAccess);
  }
}

}  // namespace
}  // namespace tarvik::test
