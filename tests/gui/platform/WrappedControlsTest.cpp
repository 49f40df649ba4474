#include <gmock/gmock.h>

#include <QHelpEvent>
#include <QLineEdit>
#include <QMenu>
#include <QStyle>
#include <QTabBar>
#include <QTest>
#include <QTimer>
#include <QToolTip>

#include "RecordingHost.h"
#include "WidgetEnvironment.h"
#include "platform/CheckBox.h"
#include "platform/CommandButton.h"
#include "platform/ControlSite.h"
#include "platform/KeyCodes.h"
#include "platform/ListView.h"
#include "platform/OptionButton.h"
#include "platform/PlainControls.h"
#include "platform/PropertyBag.h"
#include "platform/StateArchive.h"
#include "platform/TabControl.h"
#include "platform/ToolPopup.h"
#include "platform/Twips.h"

namespace tarvik::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

/// Counts what a control raises.
template <class... Args>
int CountOf(Event<Args...> &event, int &intCount) {
  event.Connect([&intCount](Args...) { ++intCount; });
  return intCount = 0;
}

template <class Step>
Long ErrorOf(Step &&step) {
  try {
    step();
  } catch (const RunTimeError &error) {
    return error.Number();
  }
  return 0;
}

TEST(OptionButtonTest, ClicksRaiseOncePerChange) {
  QWidget box;
  OptionButton first(&box, Integer{0}), second(&box, Integer{1});
  second.move(0, 40);
  first.SetDesignValue(True);
  box.show();
  int intFirst, intSecond;
  CountOf(first.Click, intFirst);
  CountOf(second.Click, intSecond);
  QTest::mouseClick(&second, Qt::LeftButton, {}, QPoint(8, second.height() / 2));
  EXPECT_EQ(intSecond, 1);
  EXPECT_EQ(intFirst, 0) << "the button that goes off says nothing";
  QTest::mouseClick(&second, Qt::LeftButton, {}, QPoint(8, second.height() / 2));
  EXPECT_EQ(intSecond, 1);
  EXPECT_FALSE(first.Value());
}

TEST(OptionButtonTest, AnAssignmentRaisesExactlyWhenTheValueChanges) {
  QWidget box;
  OptionButton first(&box, Integer{0}), second(&box, Integer{1});
  int intFirst;
  CountOf(first.Click, intFirst);
  first.SetValue(True);
  first.SetValue(True);
  EXPECT_EQ(intFirst, 1);
  second.SetValue(True);
  EXPECT_FALSE(first.Value());
  first.SetDesignValue(True);
  EXPECT_EQ(intFirst, 1) << "the form brings its choice in silence";
}

TEST(OptionButtonTest, OutsideOfAnArrayThereIsNoIndex) {
  OptionButton alone;
  EXPECT_EQ(ErrorOf([&] { alone.Index(); }), ErrNotAnArray);
}

/// Three options between two entries, with the focus in the first entry.
class OptionTabTest : public testing::Test {
 protected:
  OptionTabTest() {
    for (QWidget *part : {static_cast<QWidget *>(&m_before), &m_group, static_cast<QWidget *>(&m_behind)})
      part->setParent(&m_window);
    int intTop = 0;
    for (OptionButton *button : {&m_first, &m_second, &m_third}) button->setGeometry(0, 20 * intTop++, 100, 20);
    QWidget *const Order[] = {&m_before, &m_first, &m_second, &m_third, &m_behind};
    for (std::size_t i = 1; i < std::size(Order); ++i) QWidget::setTabOrder(Order[i - 1], Order[i]);
    m_window.show();
    m_window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window));
  }
  /// Where the tab key leads from the first entry, and back from the last one.
  std::vector<QWidget *> ReachedByTab() {
    std::vector<QWidget *> arrReached;
    m_before.setFocus();
    QTest::keyClick(&m_before, Qt::Key_Tab);
    arrReached.push_back(QApplication::focusWidget());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_TRUE(m_behind.hasFocus()) << "the group takes the tab key once";
    m_behind.setFocus();
    QTest::keyClick(&m_behind, Qt::Key_Backtab);
    arrReached.push_back(QApplication::focusWidget());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
    EXPECT_TRUE(m_before.hasFocus()) << "the group takes the tab key once on the way back";
    return arrReached;
  }

  QWidget m_window;
  QLineEdit m_before, m_behind;
  QWidget m_group;
  OptionButton m_first{&m_group, Integer{0}}, m_second{&m_group, Integer{1}}, m_third{&m_group, Integer{2}};
};

TEST_F(OptionTabTest, TheTabKeyEntersOnTheChosenOptionBothWays) {
  m_second.SetDesignValue(True);
  EXPECT_THAT(ReachedByTab(), Each(&m_second));
  m_third.SetValue(True);
  EXPECT_THAT(ReachedByTab(), Each(&m_third));
  m_third.setFocus();
  QTest::keyClick(&m_third, Qt::Key_Up);
  EXPECT_TRUE(m_second.Value());
  EXPECT_THAT(ReachedByTab(), Each(&m_second));
}

TEST_F(OptionTabTest, AnOptionThatOnlyHadTheFocusIsNotEntered) {
  m_second.SetDesignValue(True);
  m_first.SetFocus();
  EXPECT_THAT(ReachedByTab(), Each(&m_second));
}

TEST_F(OptionTabTest, WithoutAChoiceTheTabKeyEntersOnTheFirst) { EXPECT_THAT(ReachedByTab(), Each(&m_first)); }

TEST_F(OptionTabTest, AChosenOptionThatIsDisabledLeavesTheGroupInReach) {
  m_first.SetDesignValue(True);
  m_first.SetEnabled(False);
  EXPECT_THAT(ReachedByTab(), Each(&m_second));
  m_first.SetEnabled(True);
  EXPECT_THAT(ReachedByTab(), Each(&m_first));
}

TEST(CheckBoxTest, TicksAndAssignments) {
  CheckBox check;
  check.setText("Auto");
  check.show();
  int intClicks;
  CountOf(check.Click, intClicks);
  QTest::mouseClick(&check, Qt::LeftButton, {}, QPoint(8, check.height() / 2));
  EXPECT_EQ(check.Value(), 1);
  QTest::keyClick(&check, Qt::Key_Space);
  EXPECT_EQ(check.Value(), 0);
  EXPECT_EQ(intClicks, 2);
  check.SetValue(0);
  EXPECT_EQ(intClicks, 2);
  check.SetValue(1);
  EXPECT_EQ(intClicks, 3);
  EXPECT_EQ(ErrorOf([&] { check.SetValue(3); }), ErrInvalidPropertyValue);
  EXPECT_EQ(ErrorOf([&] { check.SetValue(-1); }), ErrInvalidPropertyValue);
}

TEST(CheckBoxTest, AGreyBoxStaysGreyUntilTheUserTicksIt) {
  CheckBox check;
  check.show();
  int intClicks;
  CountOf(check.Click, intClicks);
  check.SetValue(2);
  EXPECT_EQ(check.Value(), 2);
  EXPECT_EQ(check.checkState(), Qt::PartiallyChecked);
  EXPECT_EQ(intClicks, 1);
  check.SetValue(2);
  EXPECT_EQ(intClicks, 1);

  QTest::keyClick(&check, Qt::Key_Space);
  EXPECT_EQ(check.Value(), 1);
  QTest::keyClick(&check, Qt::Key_Space);
  EXPECT_EQ(check.Value(), 0);
  QTest::keyClick(&check, Qt::Key_Space);
  EXPECT_EQ(check.Value(), 1) << "a user only ticks and unticks";
  EXPECT_EQ(intClicks, 4);
}

TEST(CommandButtonTest, KeysAndMouseClickAndAFailureEndsTheEventInABox) {
  RecordingHost host;
  CommandButton button;
  button.setObjectName("cmdTest");
  button.show();
  int intClicks;
  CountOf(button.Click, intClicks);
  QTest::mouseClick(&button, Qt::LeftButton);
  QTest::keyClick(&button, Qt::Key_Space);
  EXPECT_EQ(intClicks, 2);
  button.Click.Connect([] { RaiseError(ErrDivisionByZero); });
  QTest::mouseClick(&button, Qt::LeftButton);
  EXPECT_THAT(
      host.TakeLines(),
      ElementsAre("box stop: Division by zero",
                  "log: 02/03/01 04:05\r\n  Error: 11 Division by zero\r\n  Mod: cmdTest; Proc: Click\r\n\r\n\r\n"));
  button.SetEnabled(False);
  QTest::mouseClick(&button, Qt::LeftButton);
  EXPECT_EQ(intClicks, 3);
}

class ListViewTest : public testing::Test {
 protected:
  ListViewTest() {
    list.SetColumns({"Name", "Slot"});
    for (const char *strName : {"A", "B"}) list.Add(std::string("Key") + strName, strName)->SetText(1, "7");
    list.resize(300, 200);
    list.show();
    list.ItemCheck.Connect(
        [this](ListItem *item) { arrChecked.push_back(item->Text() + (item->Checked() ? "+" : "-")); });
    list.KeyDown.Connect([this](Integer intCode) { arrKeys.push_back(intCode); });
    CountOf(list.DblClick, intDoubleClicks);
  }
  QPoint Box(int intRow) {
    const QRect rect = list.visualItemRect(list.Item(intRow));
    return {rect.left() + list.style()->pixelMetric(QStyle::PM_FocusFrameHMargin) +
                list.style()->pixelMetric(QStyle::PM_IndicatorWidth) / 2 + 2,
            rect.center().y()};
  }

  ListView list;
  std::vector<std::string> arrChecked;
  std::vector<Integer> arrKeys;
  int intDoubleClicks = 0;
};

TEST_F(ListViewTest, ATickRaisesWithTheNewStateAndAProgramsTickDoesNot) {
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, Box(1));
  list.Item(0)->SetChecked(True);
  EXPECT_THAT(arrChecked, ElementsAre("B+"));
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, Box(1));
  EXPECT_THAT(arrChecked, ElementsAre("B+", "B-"));
}

TEST_F(ListViewTest, AProgramsTickIsShownAndTheUsersClickTakesItBack) {
  list.Item(0)->SetChecked(True);
  EXPECT_EQ(list.Item(0)->checkState(0), Qt::Checked);
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, Box(0));
  EXPECT_THAT(arrChecked, ElementsAre("A-"));
}

TEST_F(ListViewTest, ADoubleClickOnARowIsNoTick) {
  const QPoint middle(150, list.visualItemRect(list.Item(0)).center().y());
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, middle);
  QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, middle);
  EXPECT_EQ(intDoubleClicks, 1);
  EXPECT_THAT(arrChecked, IsEmpty());
  EXPECT_EQ(list.SelectedItem(), list.Item(0));
}

TEST_F(ListViewTest, ADoubleClickOnTheBoxIsTwoTicks) {
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, Box(0));
  QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, Box(0));
  QTest::mouseRelease(list.viewport(), Qt::LeftButton, {}, Box(0));
  EXPECT_EQ(intDoubleClicks, 0);
  EXPECT_THAT(arrChecked, ElementsAre("A+", "A-"));
}

TEST_F(ListViewTest, KeysComeWithTheirCodes) {
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Down, Qt::Key_F2}) QTest::keyClick(&list, key);
  EXPECT_THAT(arrKeys, ElementsAre(13, 13, 40, 113));
}

TEST_F(ListViewTest, RowsHaveKeysAndColumns) {
  EXPECT_EQ(list.Count(), 2);
  EXPECT_EQ(list.Item(1)->Key(), "KeyB");
  EXPECT_EQ(list.Item(1)->Text(1), "7");
  EXPECT_EQ(list.Item(2), nullptr);
  EXPECT_THAT(list.Columns(), ElementsAre("Name", "Slot"));
  list.Clear();
  EXPECT_EQ(list.Count(), 0);
  EXPECT_EQ(list.SelectedItem(), nullptr);
  EXPECT_THAT(arrChecked, IsEmpty());
}

TEST(ToolPopupTest, KeysOpenTheMenuAndTakeAnEntry) {
  ToolPopup popup;
  popup.SetCaption("Channel1 ");
  popup.SetEntries({{"Fill0", "Fill 0"}, {"Fill1", "Fill1"}});
  std::vector<std::string> arrTaken;
  int intButton;
  CountOf(popup.ButtonClick, intButton);
  popup.ButtonMenuClick.Connect([&](const std::string &strKey) { arrTaken.push_back(strKey); });
  popup.show();
  QTimer::singleShot(0, [&] {
    QTest::keyClick(popup.menu(), Qt::Key_Down);
    QTest::keyClick(popup.menu(), Qt::Key_Down);
    QTest::keyClick(popup.menu(), Qt::Key_Return);
  });
  QTest::keyClick(&popup, Qt::Key_Down);
  EXPECT_THAT(arrTaken, ElementsAre("Fill1"));
  EXPECT_EQ(intButton, 0);
  QTest::keyClick(&popup, Qt::Key_Space);
  EXPECT_EQ(intButton, 1);
  EXPECT_EQ(popup.accessibleName(), QStringLiteral("Channel1"));
}

TEST(TabControlTest, AChangeRaisesWithThePageBefore) {
  TabControl tabs;
  for (const char *strCaption : {"One", "Two", "Three"}) tabs.addTab(new QWidget, strCaption);
  std::vector<Long> arrBefore;
  tabs.Click.Connect([&](Long lngBefore) { arrBefore.push_back(lngBefore); });
  tabs.resize(400, 200);
  tabs.show();
  QTest::mouseClick(tabs.tabBar(), Qt::LeftButton, {}, tabs.tabBar()->tabRect(2).center());
  tabs.SetTab(2);
  tabs.SetTab(0);
  EXPECT_THAT(arrBefore, ElementsAre(0, 2));
  EXPECT_EQ(tabs.Tabs(), 3);
  EXPECT_EQ(ErrorOf([&] { tabs.SetTab(3); }), ErrInvalidPropertyValue);
  QTest::keyClick(tabs.tabBar(), Qt::Key_Right);
  EXPECT_EQ(tabs.Tab(), 1);
}

TEST(PropertyBagTest, MissingKeysGiveTheDefault) {
  const PropertyBag bag;
  EXPECT_EQ(bag.ReadProperty("Caption", "none"), "none");
  EXPECT_EQ(bag.ReadProperty("Min", 1.5), 1.5);
  EXPECT_EQ(bag.ReadProperty("Enabled", True), True);
  EXPECT_EQ(bag.ReadProperty("MaxExponent", Long{-9}), -9);
}

TEST(PropertyBagTest, TextsAreConvertedWithAPointWhateverTheLocale) {
  RecordingHost host;
  host.chSeparator = ',';
  const PropertyBag bag{{"Min", "-0.8"}, {"Exponent", "-9"}, {"On", "True"}, {"Off", "False"}, {"Bad", "x"}};
  EXPECT_EQ(bag.ReadProperty("Min", 0.0), -0.8);
  EXPECT_EQ(bag.ReadProperty("Exponent", Long{0}), -9);
  EXPECT_TRUE(bag.ReadProperty("On", False));
  EXPECT_FALSE(bag.ReadProperty("Off", True));
  EXPECT_EQ(ErrorOf([&] { bag.ReadProperty("Bad", 0.0); }), ErrTypeMismatch);
}

TEST(PropertyBagTest, WritingKeepsTheOrder) {
  PropertyBag bag;
  bag.WriteProperty("Caption", std::string("Width"), std::string());
  bag.WriteProperty("Min", 1.0, 0.0);
  ASSERT_EQ(bag.Written().size(), 2u);
  EXPECT_EQ(bag.Written()[0].strKey, "Caption");
  EXPECT_EQ(bag.Written()[1].strKey, "Min");
  EXPECT_EQ(bag.ReadProperty("Caption", ""), "Width");
}

TEST(TwipsTest, EverythingGrowsWithTheFont) {
  QWidget widget;
  const qreal before = PixelsPerTwip(widget);
  QFont font = widget.font();
  font.setPointSizeF(font.pointSizeF() * 2);
  widget.setFont(font);
  EXPECT_NEAR(PixelsPerTwip(widget), 2 * before, 0.15 * before);
  EXPECT_NEAR(PixelsToTwips(widget, TwipsToPixels(widget, 6000)), 6000, 15);
}

TEST(TwipsTest, ALineOfTextIsAHundredAndNinetyFiveTwipsHigh) {
  QWidget widget;
  EXPECT_NEAR(TwipsToPixels(widget, 195), QFontMetricsF(widget.font()).height(), 0.5);
}

TEST(TwipsTest, NeighboursStayNeighbours) {
  QWidget widget;
  for (int i = 0; i < 50; ++i) {
    const auto sngWidth = static_cast<Single>(37 + i);
    const QRect left = TwipsToPixels(widget, {10, 0, sngWidth, 100});
    const QRect right = TwipsToPixels(widget, {10 + sngWidth, 0, 100, 100});
    EXPECT_EQ(left.right() + 1, right.left()) << i;
  }
}

struct KeyRow {
  int intKey;
  Qt::KeyboardModifiers modifiers;
  const char *strText;
  Integer intCode;
};

TEST(KeyCodesTest, KeysHaveTheirCodes) {
  const KeyRow Rows[] = {{Qt::Key_A, {}, "a", 65},
                         {Qt::Key_7, {}, "7", 55},
                         {Qt::Key_7, Qt::KeypadModifier, "7", 103},
                         {Qt::Key_0, Qt::KeypadModifier, "0", 96},
                         {Qt::Key_Period, Qt::KeypadModifier, ".", 110},
                         {Qt::Key_Comma, Qt::KeypadModifier, ",", 110},
                         {Qt::Key_Period, {}, ".", 190},
                         {Qt::Key_Plus, {}, "+", 187},
                         {Qt::Key_Minus, {}, "-", 189},
                         {Qt::Key_Return, {}, "\r", 13},
                         {Qt::Key_Enter, Qt::KeypadModifier, "\r", 13},
                         {Qt::Key_F1, {}, "", 112},
                         {Qt::Key_F12, {}, "", 123},
                         {Qt::Key_Left, {}, "", 37},
                         {Qt::Key_Shift, {}, "", 16},
                         {Qt::Key_Control, {}, "", 17},
                         {Qt::Key_AltGr, {}, "", 18},
                         {Qt::Key_NumLock, {}, "", 144},
                         {Qt::Key_AsciiTilde, {}, "~", 191},
                         {Qt::Key_VolumeUp, {}, "", 0}};
  for (const KeyRow &row : Rows) {
    const QKeyEvent event(QEvent::KeyPress, row.intKey, row.modifiers, QString::fromLatin1(row.strText));
    EXPECT_EQ(KeyCodeOf(event), row.intCode) << row.intKey;
  }
}

TEST(PlainControlsTest, DisplaysShowTextsAndTakeNoTyping) {
  DisplayField field;
  field.SetText("4095");
  field.show();
  QTest::keyClicks(&field, "12");
  EXPECT_EQ(field.Text(), "4095");
  EXPECT_EQ(field.cursorPosition(), 0);
  DisplayBox box;
  box.SetText("Offline");
  box.show();
  QTest::keyClicks(&box, "12");
  EXPECT_EQ(box.Text(), "Offline");
}

TEST(PlainControlsTest, AToolTipShowsTheWholeOfATextThatIsCut) {
  QWidget page;
  page.setToolTip(QStringLiteral("The page"));
  DisplayField field(&page);
  field.setToolTip(QStringLiteral("What it is"));
  field.resize(100, 24);
  page.show();
  const auto tip = [&field] {
    QHelpEvent event(QEvent::ToolTip, QPoint(5, 5), field.mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(&field, &event);
    return QToolTip::text().toStdString();
  };
  field.SetText("short");
  EXPECT_EQ(tip(), "What it is");
  field.SetText("010 VXI trigger, <020> Complement outputs");
  EXPECT_EQ(tip(), "<qt>010 VXI trigger, &lt;020&gt; Complement outputs</qt>");
}

TEST(StateArchiveTest, AStateCountsAllOfItsTexts) {
  const KeptState state{"12", "345", "6789"};
  EXPECT_EQ(state.Bytes(), sizeof state + 9);
}

TEST(PlainControlsTest, OwnFlagsDoNotFollowTheContainer) {
  QWidget around;
  PlainContainer container(&around);
  Label label(&container);
  around.setEnabled(false);
  EXPECT_TRUE(label.Enabled());
  EXPECT_FALSE(label.isEnabled());
  EXPECT_TRUE(label.Visible()) << "nobody has hidden it";
  label.SetVisible(False);
  EXPECT_FALSE(label.Visible());
}

TEST(ControlSiteTest, ARunningFormIsInUserMode) { EXPECT_TRUE(RunTimeSite().UserMode()); }

}  // namespace
}  // namespace tarvik::test
