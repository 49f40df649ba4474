#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QTemporaryDir>
#include <QUrl>

#include "ProgramFixture.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class SetupFiles : public Program {
 protected:
  void StartWithSession() {
    Start();
    User().OpenFirst();
    host.TakeBoxes();
  }
  QString File(const char *strName) const { return folder.filePath(QString::fromLatin1(strName)); }
  std::vector<std::string> Recent() const {
    std::vector<std::string> arrNames;
    for (const QAction *action : window->findChild<QMenu *>("menuRecentSetups")->actions())
      arrNames.push_back(QFileInfo(action->text()).fileName().toStdString());
    return arrNames;
  }
  bool Drop(QWidget &on, const QList<QUrl> &arrUrls) {
    QMimeData data;
    data.setUrls(arrUrls);
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QApplication::sendEvent(&on, &enter);
    if (!enter.isAccepted()) return false;
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&on, &drop);
    QCoreApplication::sendPostedEvents();
    return true;
  }
  void TypeWidth(const char *strText) {
    User().ShowPage(ePageTiming);
    User().Type("esWidth(0)", strText);
    QCoreApplication::sendPostedEvents();
  }

  QTemporaryDir folder;
};

TEST_F(SetupFiles, TheTitleTellsFileAndModifiedMark) {
  StartWithSession();
  EXPECT_EQ(Title(), "TarvikVI - this machine");
  ASSERT_TRUE(window->Panel().SaveSetup(File("demo.json")));
  EXPECT_EQ(Title(), "demo.json[*] - TarvikVI - this machine");
  EXPECT_FALSE(window->isWindowModified());
  TypeWidth("61n");
  EXPECT_TRUE(window->isWindowModified());
  Take("actionSaveSetup");
  EXPECT_FALSE(window->isWindowModified());
}

TEST_F(SetupFiles, AFileThatIsDroppedAnywhereIsOpened) {
  StartWithSession();
  ASSERT_TRUE(window->Panel().SaveSetup(File("demo.json")));
  TypeWidth("61n");
  Take("actionSaveSetup");
  TypeWidth("62n");
  const QUrl url = QUrl::fromLocalFile(File("demo.json"));
  QWidget &field = *Get<EngrSpin>("esWidth(0)").findChild<QLineEdit *>();
  EXPECT_FALSE(Drop(*window, {url, url})) << "two files";
  EXPECT_TRUE(Drop(field, {url}));
  EXPECT_THAT(host.TakeBoxes(), ElementsAre(HasSubstr("The changes since demo.json was saved are lost.")));
  EXPECT_EQ(Get<EngrSpin>("esWidth(0)").Text(), "61.00");
  EXPECT_THAT(Recent(), ElementsAre("demo.json"));
}

TEST_F(SetupFiles, RecentFilesAreRememberedTheLatestFirst) {
  StartWithSession();
  for (const char *strName : {"a.json", "b.json"}) ASSERT_TRUE(window->Panel().SaveSetup(File(strName)));
  for (const char *strName : {"a.json", "b.json"}) EXPECT_TRUE(Drop(*window, {QUrl::fromLocalFile(File(strName))}));
  StartWithSession();
  EXPECT_THAT(Recent(), ElementsAre("b.json", "a.json"));
  window->findChild<QMenu *>("menuRecentSetups")->actions().at(1)->trigger();
  EXPECT_EQ(window->Panel().SetupFile(), File("a.json"));
}

TEST_F(SetupFiles, ClosingAsksOnlyWhereAChangedFileWouldBeLost) {
  StartWithSession();
  TypeWidth("61n");
  EXPECT_TRUE(window->close());
  EXPECT_THAT(host.TakeBoxes(), testing::IsEmpty());
  StartWithSession();
  ASSERT_TRUE(window->Panel().SaveSetup(File("demo.json")));
  TypeWidth("62n");
  host.arrBoxAnswers = {BoxAnswer::No};
  EXPECT_TRUE(window->close());
  EXPECT_THAT(host.TakeBoxes(), ElementsAre(HasSubstr("demo.json was changed. Save it before the program ends?")));
}

TEST_F(SetupFiles, MarksAreSwitchedInTheViewMenuAndStayOff) {
  Start();
  EXPECT_TRUE(Checked("actionMarks"));
  EXPECT_TRUE(window->Panel().Marks());
  Take("actionMarks");
  EXPECT_FALSE(window->Panel().Marks());
  Start();
  EXPECT_FALSE(Checked("actionMarks"));
  EXPECT_FALSE(window->Panel().Marks());
}

TEST_F(SetupFiles, CompareOpensAndClosesWithTheKeyboard) {
  StartWithSession();
  Take("actionCompare");
  auto *dialog = window->findChild<QDialog *>("CompareDialog");
  ASSERT_TRUE(dialog);
  EXPECT_TRUE(dialog->isVisible());
  QTest::keyClick(dialog, Qt::Key_Escape);
  EXPECT_FALSE(window->findChild<QDialog *>("CompareDialog") && dialog->isVisible());
}

}  // namespace
}  // namespace tarvik::test
