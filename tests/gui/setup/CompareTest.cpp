#include <gmock/gmock.h>

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>

#include "RecordingHost.h"
#include "WidgetEnvironment.h"
#include "panel/CompareDialog.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A dialog over setups of a one-channel instrument, worked by keys and mouse.
class Compare : public testing::Test {
 protected:
  Compare() {
    panel.Instrument.lngNumChannels = 1;
    panel.Timing.dblFrequency = 1e6;
    panel.Timing.dblWidth[1] = 50e-9;
    panel.Levels.eOutputLevel[1] = eLevelHighLow;
    panel.Levels.dblAmplOrHigh[1] = 2.5;
    instrument = file = panel;
    instrument->Timing.dblWidth[1] = 100e-9;
    file->Levels.dblAmplOrHigh[1] = 3.3;
    dialog = std::make_unique<CompareDialog>(
        CompareDialog::Sources{.panel = [this] { return std::optional(panel); },
                               .instrument = [this] { return instrument; },
                               .file =
                                   [this](QString &strName) {
                                     strName = "demo.json";
                                     return file;
                                   },
                               .show = [this](const tarvik::Setup &setup) { panel = setup; }},
        nullptr);
    dialog->show();
  }

  template <class T>
  T &Get(const char *strName) const {
    return *dialog->findChild<T *>(QString::fromLatin1(strName));
  }
  void Click(const char *strName) const { QTest::mouseClick(&Get<QPushButton>(strName), Qt::LeftButton); }
  QTableWidget &Table() const { return Get<QTableWidget>("tblDifferences"); }
  std::vector<std::string> Lines() const {
    std::vector<std::string> arrLines;
    for (int row = 0; row < Table().rowCount(); ++row) {
      std::string strLine;
      for (int column = 0; column < Table().columnCount(); ++column)
        strLine += (column ? " | " : "") + Table().item(row, column)->text().toStdString();
      arrLines.push_back(strLine);
    }
    return arrLines;
  }

  RecordingHost host;
  tarvik::Setup panel;
  std::optional<tarvik::Setup> instrument, file;
  std::unique_ptr<CompareDialog> dialog;
};

TEST_F(Compare, ReadsTheInstrumentWhenTheUserAsksForIt) {
  EXPECT_THAT(Lines(), IsEmpty());
  EXPECT_EQ(Get<QLabel>("lblCount").text(), "Read the instrument or open a file to compare the panel with it.");
  Click("cmdReadInstrument");
  EXPECT_THAT(Lines(), ElementsAre("Timing | Width, channel 1 | 50.00 ns | 100.0 ns | "));
}

TEST_F(Compare, AReadThatFailsLeavesTheTable) {
  Click("cmdReadInstrument");
  instrument.reset();
  Click("cmdReadInstrument");
  EXPECT_THAT(Lines(), ElementsAre("Timing | Width, channel 1 | 50.00 ns | 100.0 ns | "));
}

TEST_F(Compare, ShowsOnePageOrWhatHoldsATypedText) {
  Click("cmdReadInstrument");
  Click("cmdOpenFile");
  ASSERT_EQ(Lines().size(), 2U);
  EXPECT_EQ(Table().horizontalHeaderItem(4)->text(), "demo.json");
  QTest::keyClicks(&Get<QLineEdit>("txtFilter"), "high");
  EXPECT_THAT(Lines(), ElementsAre("Levels | High, channel 1 | 2.500 V | 2.500 V | 3.300 V"));
  Get<QLineEdit>("txtFilter").clear();
  QTest::keyClick(&Get<QComboBox>("cboPage"), Qt::Key_T);
  EXPECT_THAT(Lines(), ElementsAre("Timing | Width, channel 1 | 50.00 ns | 100.0 ns | 50.00 ns"));
}

TEST_F(Compare, TakesOverTheChosenRowsByMouse) {
  Click("cmdReadInstrument");
  Click("cmdOpenFile");
  EXPECT_FALSE(Get<QPushButton>("cmdTakeInstrument").isEnabled());
  QTest::mouseClick(Table().viewport(), Qt::LeftButton, {}, Table().visualItemRect(Table().item(0, 1)).center());
  Click("cmdTakeInstrument");
  EXPECT_EQ(panel.Timing.dblWidth[1], 100e-9);
  EXPECT_EQ(panel.Levels.dblAmplOrHigh[1], 2.5);
}

TEST_F(Compare, TakesOverByKeysAlone) {
  Click("cmdOpenFile");
  dialog->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
  Table().setFocus();
  QTest::keyClick(&Table(), Qt::Key_A, Qt::ControlModifier);
  auto &take = Get<QPushButton>("cmdTakeFile");
  ASSERT_TRUE(take.isEnabled());
  take.setFocus();
  QTest::keyClick(&take, Qt::Key_Space);
  EXPECT_EQ(panel.Levels.dblAmplOrHigh[1], 3.3);
  EXPECT_THAT(Lines(), IsEmpty());
  EXPECT_EQ(Get<QLabel>("lblCount").text(), "No difference.");
}

TEST_F(Compare, CopiesTheListAsText) {
  Click("cmdReadInstrument");
  Click("cmdCopy");
  EXPECT_EQ(QApplication::clipboard()->text(),
            "Page\tSetting\tPanel\tInstrument\tFile\nTiming\tWidth, channel 1\t50.00 ns\t100.0 ns\t\n");
}

}  // namespace
}  // namespace tarvik::test
