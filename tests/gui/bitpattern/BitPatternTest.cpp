
#include "EditorFixture.h"
#include "RefusedScrolling.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Heights within the bands of the rows, in twips of the picture.
constexpr Single Chan1Y = 240, Chan2Y = 720, BothY = 1200, StrobeY = 1680;

class BitPatternTest : public EditorFixture {};

TEST_F(BitPatternTest, ClickSelectsTheRowAndKeysWriteThere) {
  TypeNumber(esLast(), "8");
  ClickRow(StrobeY);
  TypeBits("1011");
  EXPECT_EQ(FirstByte(8), 0xB0);
  EXPECT_EQ(FirstByte(1), 0x00);
  EXPECT_EQ(esAddress().Value(), 5);
}

TEST_F(BitPatternTest, WithoutSelectedRowKeysDoNothingButArrowsAreUsed) {
  TypeNumber(esLast(), "8");
  m_intDirty = 0;
  m_editor.SetFocus();
  TypeBits("1+");
  Keys({Qt::Key_Right, Qt::Key_Down, Qt::Key_PageDown});
  EXPECT_EQ(FirstByte(1), 0x00);
  EXPECT_EQ(esAddress().Value(), 1);
  EXPECT_EQ(m_intDirty, 0);
  EXPECT_TRUE(picWave().hasFocus());
}

TEST_F(BitPatternTest, SignsToggle) {
  Deliver(0xF0, 0x00, 0x00);
  ClickRow(Chan1Y);
  TypeBits("+-+-+");
  EXPECT_EQ(FirstByte(1), 0x08);
  EXPECT_EQ(esAddress().Value(), 6);
}

TEST_F(BitPatternTest, DigitsOfBothChannels) {
  Deliver(0xFF, 0x00, 0x00);
  ClickRow(BothY);
  TypeBits("0123");
  EXPECT_EQ(FirstByte(1), 0x5F);
  EXPECT_EQ(FirstByte(2), 0x30);
}

TEST_F(BitPatternTest, TwoAndThreeAreRefusedOnASingleChannel) {
  Deliver(0x00, 0x00, 0x00);
  ClickRow(Chan1Y);
  TypeBits("2");
  EXPECT_EQ(esAddress().Value(), 1);
  TypeBits("3");
  EXPECT_EQ(FirstByte(1), 0x00);
  EXPECT_EQ(esAddress().Value(), 1);
}

TEST_F(BitPatternTest, ChordsWithControlWriteNothing) {
  Deliver(0x00, 0x00, 0x00);
  ClickRow(Chan1Y);
  QTest::keyClick(&picWave(), Qt::Key_1, Qt::ControlModifier);
  EXPECT_EQ(FirstByte(1), 0x00);
}

TEST_F(BitPatternTest, NumberPadWritesBits) {
  Deliver(0x00, 0x00, 0x00);
  ClickRow(Chan1Y);
  QTest::keyClick(&picWave(), Qt::Key_1, Qt::KeypadModifier);
  EXPECT_EQ(FirstByte(1), 0x80);
}

TEST_F(BitPatternTest, ArrowsMoveTheAddressAndStopAtTheEnds) {
  Deliver(0x00, 0x00, 0x00, 6);
  ClickRow(Chan1Y);
  Keys({Qt::Key_Left});
  EXPECT_EQ(esAddress().Value(), 1);
  Keys({Qt::Key_Right, Qt::Key_Right});
  EXPECT_EQ(esAddress().Value(), 3);
  EXPECT_EQ(HScroll1().Value(), 3);
  Keys({Qt::Key_End});
  EXPECT_EQ(esAddress().Value(), 6);
  Keys({Qt::Key_Right});
  EXPECT_EQ(esAddress().Value(), 6);
  Keys({Qt::Key_Home});
  EXPECT_EQ(esAddress().Value(), 1);
}

TEST_F(BitPatternTest, UpAndDownPassThroughAllRows) {
  m_editor.EnableChannel2(False);
  TypeNumber(esLast(), "8");
  ClickRow(StrobeY);
  Keys({Qt::Key_Up, Qt::Key_Up});
  TypeBits("1");
  EXPECT_EQ(Stream(2).front(), 0x80) << "channel 2 can be reached by key while it is disabled";
  Keys({Qt::Key_Up, Qt::Key_Up});
  TypeBits("1");
  EXPECT_EQ(FirstByte(1), 0x40);
}

TEST_F(BitPatternTest, DigitAtTheLastAddressIsWrittenAndNotShownYet) {
  Deliver(0x00, 0x00, 0x00);
  ClickRow(Chan1Y);
  Keys({Qt::Key_End});
  m_intDirty = 0;
  TypeBits("1");
  EXPECT_EQ(FirstByte(1), 0x01);
  EXPECT_EQ(esAddress().Value(), 8);
  EXPECT_EQ(m_intDirty, 0);
}

TEST_F(BitPatternTest, ClicksOutsideOfTheBandsKeepTheSelection) {
  Deliver(0x00, 0x00, 0x00);
  ClickRow(StrobeY);
  ClickRow(500);
  TypeBits("1");
  EXPECT_EQ(FirstByte(8), 0x80);
}

TEST_F(BitPatternTest, RightButtonSelectsNothing) {
  Deliver(0x00, 0x00, 0x00);
  m_intDirty = 0;
  QTest::mouseClick(&picWave(), Qt::RightButton, {}, QPoint(20, 16));
  TypeBits("1");
  EXPECT_EQ(FirstByte(1), 0x00);
  EXPECT_EQ(m_intDirty, 0);
}

TEST_F(BitPatternTest, ClicksOnRowsOfADisabledChannel2DoNothing) {
  Deliver(0x00, 0x00, 0x00);
  m_editor.EnableChannel2(False);
  EXPECT_FALSE(Tool(1).isEnabled());
  EXPECT_FALSE(Tool(2).isEnabled());
  EXPECT_FALSE(Option(2).isEnabled());
  m_intDirty = 0;
  ClickRow(Chan2Y);
  ClickRow(BothY);
  EXPECT_EQ(m_intDirty, 0);
}

TEST_F(BitPatternTest, RowButtonSelectsItsRow) {
  Deliver(0x00, 0x00, 0x00);
  for (const auto &[intTool, eChannel] : {std::pair{0, 1}, {1, 2}, {3, 8}}) {
    QTest::mouseClick(&Tool(intTool), Qt::LeftButton, {}, QPoint(10, 10));
    TypeBits("1");
    Keys({Qt::Key_Home});
    EXPECT_EQ(FirstByte(eChannel), 0x80) << intTool;
  }
}

TEST_F(BitPatternTest, KeysWorkOnThePictureAfterARowButton) {
  Deliver(0x00, 0x00, 0x00);
  Click(Tool(0), QPoint(10, 10));
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_1);
  EXPECT_EQ(FirstByte(1), 0x80);
  Tool(1).setFocus();
  QTest::keyClick(&Tool(1), Qt::Key_Space);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_1);
  EXPECT_EQ(FirstByte(2), 0x40);
  EXPECT_TRUE(picWave().hasFocus());
}

TEST_F(BitPatternTest, KeysWorkOnThePictureAfterAnOperationAlsoOneThatWasGivenUp) {
  for (const char *strKey : {"Invert", "Clock/n"}) {
    Tool(3).setFocus();
    Menu(3, strKey);
    EXPECT_TRUE(picWave().hasFocus()) << strKey;
  }
}

TEST_F(BitPatternTest, AnAddressThatIsBeingTypedCountsForTheRowButton) {
  Deliver(0x00, 0x00, 0x00);
  auto *txtNumber = esAddress().findChild<QLineEdit *>(QStringLiteral("txtNumber"));
  txtNumber->setFocus();
  txtNumber->selectAll();
  QTest::keyClicks(txtNumber, "3");
  Click(Tool(0), QPoint(10, 10));
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_1);
  EXPECT_EQ(FirstByte(1), 0x20);
}

TEST_F(BitPatternTest, AClickSelectsTheRowKeepsTheAddressAndTheToolTipSaysSo) {
  Deliver(0x00, 0x00, 0x00);
  for (const int intX : {20, 200, picWave().width() - 20}) {
    Click(picWave(), QPoint(intX, picWave().height() / 8));
    EXPECT_EQ(esAddress().Value(), 1) << intX;
  }
  EXPECT_EQ(picWave().toolTip(), QStringLiteral("A click selects the row; keys write bits at the actual address"));
}

TEST_F(BitPatternTest, MenuOpensAndRunsFromTheKeyboard) {
  Deliver(0x00, 0x00, 0x00);
  bool fShown = false;
  QMenu *menu = Tool(0).menu();
  QObject::connect(menu, &QMenu::aboutToShow, menu, [&] {
    QMetaObject::invokeMethod(
        menu,
        [&] {
          fShown = menu->isVisible();
          QTest::keyClick(menu, Qt::Key_Down);
          QTest::keyClick(menu, Qt::Key_Down);
          QTest::keyClick(menu, Qt::Key_Return);
        },
        Qt::QueuedConnection);
  });
  Tool(0).setFocus();
  QTest::keyClick(&Tool(0), Qt::Key_Down);
  EXPECT_TRUE(fShown);
  EXPECT_EQ(FirstByte(1), 0xFF) << "the second entry fills with 1";
}

TEST_F(BitPatternTest, MenusOfAllRowsHaveTheNineEntries) {
  const char *const Captions[] = {"Channel1 ", "Channel2 ", "Both ", "Strobe "};
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(Tool(i).Caption(), Captions[i]);
    QStringList texts;
    for (const QAction *action : Tool(i).menu()->actions()) texts << action->text();
    EXPECT_EQ(texts, QStringList({"Fill 0", "Fill1", "Invert", "Set First Bit Only", "Set Last Bit Only", "Insert Bit",
                                  "Delete Bit", "Clock / n", "PRBS 2^n - 1"}));
  }
}

TEST_F(BitPatternTest, OperationsStartAtTheActualAddress) {
  TypeNumber(esLast(), "6");
  TypeNumber(esAddress(), "4");
  m_host.arrInputAnswers = {"4"};
  Menu(3, "Clock/n");
  EXPECT_EQ(FirstByte(8), 0x0C);
}

TEST_F(BitPatternTest, CancelledDialogOnlyRedraws) {
  Deliver(0xF0, 0x00, 0x00);
  m_intDirty = 0;
  Menu(0, "Clock/n");
  EXPECT_EQ(FirstByte(1), 0xF0);
  EXPECT_EQ(m_intDirty, 1);
}

TEST_F(BitPatternTest, GrowthFollowsTheGeneratorOfEachRow) {
  TypeNumber(esLast(), "8");
  Menu(0, "Fill1");
  Menu(1, "SetFirstBitOnly");
  Menu(3, "SetLastBitOnly");
  TypeNumber(esLast(), "12");
  EXPECT_THAT(Stream(1), ElementsAre(0xFF, 0xFF)) << "whole bytes are written";
  EXPECT_THAT(Stream(2), ElementsAre(0x80, 0x00));
  EXPECT_THAT(Stream(8), ElementsAre(0x00, 0x10));
}

TEST_F(BitPatternTest, ShrinkingChangesNoBit) {
  Deliver(0xFF, 0xFF, 0xFF);
  TypeNumber(esLast(), "3");
  EXPECT_EQ(m_editor.GetPatternLength(), 3);
  EXPECT_EQ(FirstByte(1), 0xFF);
}

TEST_F(BitPatternTest, LengthBelowTheAddressPullsTheAddressDown) {
  TypeNumber(esLast(), "20");
  TypeNumber(esAddress(), "15");
  TypeNumber(esLast(), "6");
  EXPECT_EQ(esAddress().Value(), 6);
  EXPECT_EQ(esAddress().Max(), 6);
  EXPECT_EQ(HScroll1().Value(), 6);
}

TEST_F(BitPatternTest, ScrollBarWorksFromALengthOfFive) {
  TypeNumber(esLast(), "4");
  EXPECT_FALSE(HScroll1().isEnabled());
  TypeNumber(esLast(), "5");
  EXPECT_TRUE(HScroll1().isEnabled());
  EXPECT_EQ(HScroll1().Min(), 1);
  EXPECT_EQ(HScroll1().Max(), 5);
  EXPECT_EQ(HScroll1().LargeChange(), 12);
}

TEST_F(BitPatternTest, ScrollingMovesTheAddress) {
  TypeNumber(esLast(), "100");
  m_intDirty = 0;
  HScroll1().setValue(42);
  EXPECT_EQ(esAddress().Value(), 42);
  EXPECT_EQ(m_intDirty, 1);
}

TEST_F(BitPatternTest, ClickOnTheScrollBarLeavesTheFocusOnThePicture) {
  TypeNumber(esLast(), "100");
  EXPECT_FALSE(picWave().hasFocus());
  Click(HScroll1(), QPoint(HScroll1().width() / 2, 5));
  EXPECT_TRUE(picWave().hasFocus());
}

TEST_F(BitPatternTest, HostsFocusGoesToThePicture) {
  esLast().SetFocus();
  m_editor.SetFocus();
  EXPECT_TRUE(picWave().hasFocus());
}

TEST_F(BitPatternTest, TabLeadsThroughTheControlsAsTheyAreReadBothWays) {
  const auto name = [] {
    const QWidget *widget = QApplication::focusWidget();
    return (widget->objectName() == "txtNumber" ? widget->parentWidget() : widget)->objectName().toStdString();
  };
  QTest::mouseClick(&Option(3), Qt::LeftButton, {}, QPoint(8, Option(3).height() / 2));
  const std::vector<std::string> arrExpected = {
      "cmdNumOrGraph", "esAddress",    "esLast",  "toolPopup(0)",       "toolPopup(1)",
      "toolPopup(2)",  "toolPopup(3)", "picWave", "optChannelRzNrz(0)", "optChannelRzNrz(3)"};
  std::vector<std::string> arrForward, arrBack;
  Find<CommandButton>("cmdNumOrGraph").setFocus();
  for (std::size_t i = 0; i < arrExpected.size(); ++i) {
    arrForward.push_back(name());
    if (i + 1 < arrExpected.size()) QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  }
  for (std::size_t i = 0; i < arrExpected.size(); ++i) {
    arrBack.insert(arrBack.begin(), name());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
  }
  EXPECT_EQ(arrForward, arrExpected);
  EXPECT_EQ(arrBack, arrExpected);
}

TEST_F(BitPatternTest, NumericalPressedTwiceBringsTheWaveformBack) {
  auto &button = Find<CommandButton>("cmdNumOrGraph");
  const auto countTexts = [&] {
    int count = 0;
    for (const auto &primitive : picWave().DisplayList()) count += primitive.kind == DrawPrimitive::Kind::Text;
    return count;
  };
  Deliver(0xA5, 0x00, 0x00);
  Click(button, button.rect().center());
  EXPECT_EQ(button.Caption(), "Graphical");
  EXPECT_EQ(countTexts(), 4 * 8);
  Click(button, button.rect().center());
  EXPECT_EQ(button.Caption(), "Numerical");
  EXPECT_EQ(countTexts(), 8) << "only the row of both channels";
}

TEST_F(BitPatternTest, OptionRaisesRzChangeWithTheNewFlags) {
  std::vector<std::pair<bool, bool>> arrFlags;
  m_editor.RzChange.Connect([&] {
    BooleanArray fRz(1, {False, False});
    m_editor.GetRz(fRz);
    arrFlags.emplace_back(fRz[1], fRz[2]);
  });
  Click(Option(1), QPoint(8, Option(1).height() / 2));
  Click(Option(1), QPoint(8, Option(1).height() / 2));
  Click(Option(3), QPoint(8, Option(3).height() / 2));
  EXPECT_THAT(arrFlags, ElementsAre(std::pair(false, true), std::pair(false, false)));
}

TEST_F(BitPatternTest, SetRzWithoutGroupLeavesTheOptionsAlone) {
  int intChanges = 0;
  m_editor.RzChange.Connect([&] { ++intChanges; });
  m_editor.SetRz(BooleanArray(1, {False, True}), False);
  EXPECT_TRUE(Option(0).Value());
  BooleanArray fRz(1, {True, False});
  m_editor.GetRz(fRz);
  EXPECT_FALSE(fRz[1]);
  EXPECT_TRUE(fRz[2]);
  EXPECT_EQ(intChanges, 0);
}

TEST_F(BitPatternTest, SetRzWithGroupMovesTheOptionsAndSurvivesTheHostsEcho) {
  BooleanArray mfRz(1, {False, False});
  int intChanges = 0;
  m_editor.RzChange.Connect([&] {
    ++intChanges;
    m_editor.GetRz(mfRz);
    m_editor.SetRz(mfRz, False);
  });
  m_editor.SetRz(mfRz, True);
  EXPECT_TRUE(Option(1).Value());
  EXPECT_TRUE(Option(3).Value());
  EXPECT_EQ(intChanges, 2);
  EXPECT_FALSE(mfRz[1]);
  EXPECT_FALSE(mfRz[2]);
}

TEST_F(BitPatternTest, RzArraysWithoutBothEntriesFail) {
  BooleanArray fZeroBased(0, {False, False});
  EXPECT_THROW(m_editor.SetRz(fZeroBased, False), RunTimeError);
  EXPECT_THROW(m_editor.GetRz(fZeroBased), RunTimeError);
  BooleanArray fRz(1, {False, False});
  m_editor.GetRz(fRz);
  EXPECT_TRUE(fRz[1]) << "a refused call changed a flag";
}

TEST_F(BitPatternTest, DeliveredLengthIsHeldToItsLimits) {
  for (const auto &[lngNumBits, lngLength] :
       {std::pair{0, 2}, {1, 2}, {2, 2}, {9, 9}, {16384, 16384}, {16385, 16384}, {-5, 2}}) {
    m_editor.SetPatternInit();
    EXPECT_TRUE(m_editor.SetPattern(1, ByteArray(1, {0xFF, 0xFF}), lngNumBits));
    EXPECT_EQ(m_editor.GetPatternLength(), lngLength) << lngNumBits;
  }
  EXPECT_THAT(m_host.TakeBoxes(), IsEmpty());
}

TEST_F(BitPatternTest, LongerDeliveryRunsNoGenerator) {
  TypeNumber(esLast(), "8");
  Menu(0, "Fill1");
  m_editor.SetPatternInit();
  EXPECT_TRUE(m_editor.SetPattern(1, ByteArray(1, {0xFF, 0x00, 0x00}), 24));
  EXPECT_THAT(Stream(1), ElementsAre(0xFF, 0x00, 0x00));
}

TEST_F(BitPatternTest, FailingSetPatternIsLoggedAndKeepsThePattern) {
  Deliver(0xA5, 0x00, 0x00);
  m_host.TakeLines();
  m_editor.SetPatternInit();
  EXPECT_FALSE(m_editor.SetPattern(1, ByteArray(1), 16));
  EXPECT_FALSE(m_editor.SetPattern(1, ByteArray::WithDimensions(2), 16));
  const auto arrLines = m_host.TakeLines();
  ASSERT_EQ(arrLines.size(), 4u);
  EXPECT_EQ(arrLines[0], "box stop: Subscript out of range");
  EXPECT_THAT(arrLines[1], testing::HasSubstr("Mod: BitPattern; Proc: SetPattern"));
  EXPECT_EQ(FirstByte(1), 0xA5);
  EXPECT_EQ(m_editor.GetPatternLength(), 8);
}

TEST_F(BitPatternTest, RefusedSetPatternKeepsTheLength) {
  Deliver(0xA5, 0x00, 0x00);
  m_editor.SetPatternInit();
  EXPECT_FALSE(m_editor.SetPattern(1, ByteArray(0, {0xFF}), 16));
  EXPECT_FALSE(m_editor.SetPattern(4, ByteArray(1, {0xFF}), 16));
  EXPECT_EQ(m_editor.GetPatternLength(), 8);
  EXPECT_EQ(FirstByte(1), 0xA5);
}

TEST_F(BitPatternTest, FailureInTheRangeIsLoggedAndTheNextScrollHeals) {
  TypeNumber(esLast(), "9");
  RefuseNextScrollMax();
  m_host.TakeLines();
  TypeNumber(esLast(), "12");
  const auto arrLines = m_host.TakeLines();
  ASSERT_EQ(arrLines.size(), 2u);
  EXPECT_THAT(arrLines[1], testing::HasSubstr("Mod: BitPattern; Proc: SetWaveformRange"));
  TypeNumber(esLast(), "13");
  EXPECT_EQ(HScroll1().Max(), 9);
  HScroll1().setValue(4);
  TypeNumber(esLast(), "14");
  EXPECT_EQ(HScroll1().Max(), 14);
}

TEST_F(BitPatternTest, AfterAnArrowKeyThatFailedTheArrowKeysSelectRowsAgain) {
  Deliver(0x00, 0x00, 0x00);
  ClickRow(Chan1Y);
  m_host.TakeLines();
  m_fPanelFails = true;
  Keys({Qt::Key_Down});
  EXPECT_EQ(m_host.TakeLines().front(), "box stop: Type mismatch");
  m_fPanelFails = false;
  Keys({Qt::Key_Up});
  TypeBits("1");
  EXPECT_EQ(FirstByte(1), 0x80) << "down to channel 2, and back up to channel 1";
}

TEST_F(BitPatternTest, AfterABitWhoseSlotFailedTheKeysWriteBitsAgain) {
  Deliver(0x00, 0x00, 0x00);
  ClickRow(Chan1Y);
  m_host.TakeLines();
  const auto failing = QObject::connect(&esAddress(), &EngrSpin::valueChanged, [] { RaiseError(ErrTypeMismatch); });
  TypeBits("1");
  EXPECT_EQ(m_host.TakeLines().front(), "box stop: Type mismatch");
  QObject::disconnect(failing);
  Keys({Qt::Key_End});
  TypeBits("1");
  EXPECT_EQ(FirstByte(1), 0x81);
}

TEST_F(BitPatternTest, EnabledReachesTheWholeControl) {
  m_editor.SetEnabled(False);
  EXPECT_FALSE(m_editor.Enabled());
  EXPECT_FALSE(picWave().isEnabled());
  m_editor.SetEnabled(True);
  EXPECT_TRUE(picWave().isEnabled());
}

TEST_F(BitPatternTest, WorksWithoutAPanel) {
  gobjPanel() = nullptr;
  Deliver(0x00, 0x00, 0x00);
  ClickRow(Chan1Y);
  TypeBits("1");
  EXPECT_EQ(FirstByte(1), 0x80);
}

}  // namespace
}  // namespace tarvik::test
