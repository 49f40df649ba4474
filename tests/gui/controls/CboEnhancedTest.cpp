#include <gmock/gmock.h>

#include <QAbstractItemView>
#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <QMetaProperty>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>

#include "RecordingHost.h"
#include "WidgetEnvironment.h"
#include "controls/CboEnhancedPrivate.h"
#include "platform/PropertyBag.h"
#include "platform/WidgetControl.h"
#include "support/modGlobals.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const CboEnhanced::Private &Inside(const CboEnhanced &list) { return CboEnhanced::Private::Of(list); }

/// Keeps what a panel would be told.
class ToldPanel : public PanelReference {
 public:
  ToldPanel() { gobjPanel() = this; }
  ~ToldPanel() override { gobjPanel() = nullptr; }
  void SetTabState(TabStates eState, TabNumEnum ePage) override { arrTold.emplace_back(eState, ePage); }
  std::vector<std::pair<TabStates, TabNumEnum>> arrTold;
};

/// A form that is being designed.
class DesignSite : public ControlSite {
 public:
  Boolean UserMode() const override { return False; }
  void PropertyChanged(const std::string &strProperty) override { arrChanged.push_back(strProperty); }
  std::vector<std::string> arrChanged;
};

class CboEnhancedTest : public testing::Test {
 protected:
  CboEnhancedTest() {
    list.SetCaption("Source");
    list.AddItemData("Internal", 1, 10, False);
    list.AddItemData("CLK-IN", 0, 10, True);
    list.AddItemData("PLL", 2, 20, True);
    list.resize(300, 30);
    list.Resize(3000);
    list.show();
    list.Click.Connect([this] { ++intClicks; });
  }
  QComboBox &Box() { return *list.findChild<QComboBox *>(); }
  void Wheel() {
    QWheelEvent event(QPointF(10, 10), Box().mapToGlobal(QPointF(10, 10)), {}, QPoint(0, -120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&Box(), &event);
  }

  RecordingHost host;
  ToldPanel panel;
  CboEnhanced list;
  int intClicks = 0;
};

TEST_F(CboEnhancedTest, AFreshListHasNoSelection) { EXPECT_EQ(list.ListIndex(), -1); }

TEST_F(CboEnhancedTest, AUsersChoiceClicksAndMarksThePage) {
  Box().showPopup();
  Box().view()->setCurrentIndex(Box().model()->index(2, 0));
  QTest::keyClick(Box().view(), Qt::Key_Return);
  EXPECT_EQ(list.Text(), "PLL");
  EXPECT_EQ(intClicks, 1);
  EXPECT_THAT(panel.arrTold, ElementsAre(std::pair(ePageIsDirty, eCurrPage)));
  QTest::keyClick(&Box(), Qt::Key_Up);
  EXPECT_EQ(list.Text(), "CLK-IN");
  EXPECT_EQ(intClicks, 2);
}

TEST_F(CboEnhancedTest, AProgramsChoiceClicksAndLeavesThePage) {
  EXPECT_TRUE(list.SetListIndexByItemData(2));
  EXPECT_EQ(intClicks, 1);
  EXPECT_THAT(panel.arrTold, IsEmpty());
  EXPECT_TRUE(list.SetListIndexByItemData(2));
  EXPECT_EQ(intClicks, 1);
  EXPECT_FALSE(list.SetListIndexByItemData(77));
  EXPECT_EQ(list.Text(), "PLL");
  EXPECT_THAT(host.TakeBoxes(), IsEmpty());
}

TEST_F(CboEnhancedTest, AChoiceOfWhatIsAlreadyChosenRaisesNothingAndMarksNothing) {
  list.SetListIndex(2);
  intClicks = 0;
  Box().showPopup();
  Box().view()->setCurrentIndex(Box().model()->index(2, 0));
  QTest::keyClick(Box().view(), Qt::Key_Return);
  list.SetListIndex(2);
  EXPECT_EQ(list.Text(), "PLL");
  EXPECT_EQ(intClicks, 0);
  EXPECT_THAT(panel.arrTold, IsEmpty());
}

TEST_F(CboEnhancedTest, AfterAHandlerThatFailsAUsersChoiceMarksThePageAsBefore) {
  auto failing = list.Click.ConnectScoped([] { RaiseError(ErrTypeMismatch); });
  EXPECT_THROW(list.SetListIndex(2), RunTimeError);
  EXPECT_EQ(list.Text(), "PLL");
  EXPECT_THAT(panel.arrTold, IsEmpty());
  QTest::keyClick(&Box(), Qt::Key_Up);
  EXPECT_EQ(list.Text(), "CLK-IN");
  EXPECT_THAT(panel.arrTold, ElementsAre(std::pair(ePageIsDirty, eCurrPage)));
  EXPECT_THAT(host.TakeBoxes(), ElementsAre("box stop: Type mismatch"));
  failing.Disconnect();
  QTest::keyClick(&Box(), Qt::Key_Up);
  EXPECT_EQ(intClicks, 3);
  EXPECT_EQ(panel.arrTold.size(), 2u);
}

TEST_F(CboEnhancedTest, AnIndexThatTheListDoesNotHaveIsRefused) {
  list.SetTagX("0");
  list.SetListIndex(2);
  list.SaveListIndex(1);
  intClicks = 0;
  list.SetListIndex(-2);
  EXPECT_EQ(list.ListIndex(), 2);
  EXPECT_EQ(intClicks, 0);

  // A list that came back shorter does not have the remembered item.
  list.Clear();
  list.AddItemData("Internal", 1);
  list.SetListIndex(0);
  intClicks = 0;
  list.RecallListIndex(1);
  EXPECT_EQ(list.Text(), "Internal");
  EXPECT_EQ(Inside(list).strSavedIndexes, "2 ");
  EXPECT_EQ(intClicks, 0);
  EXPECT_THAT(panel.arrTold, IsEmpty());

  // Nothing is stuck behind the refusals.
  list.AddItemData("CLK-IN", 0);
  QTest::keyClick(&Box(), Qt::Key_Down);
  EXPECT_EQ(intClicks, 1);
  EXPECT_THAT(panel.arrTold, ElementsAre(std::pair(ePageIsDirty, eCurrPage)));
}

TEST_F(CboEnhancedTest, TheWheelTurnsOnlyAListWithTheFocus) {
  list.SetListIndex(0);
  Wheel();
  EXPECT_EQ(list.ListIndex(), 0);
  list.activateWindow();
  Box().setFocus();
  QApplication::setActiveWindow(&list);
  ASSERT_TRUE(Box().hasFocus());
  Wheel();
  EXPECT_EQ(list.ListIndex(), 1);
}

TEST_F(CboEnhancedTest, TheWheelOverAListLeavesTheFocusWhereItIs) {
  QWidget form;
  QVBoxLayout rows(&form);
  QLineEdit entry;
  rows.addWidget(&entry);
  rows.addWidget(&list);
  form.show();
  form.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
  entry.setFocus();
  list.SetListIndex(0);
  Wheel();
  EXPECT_TRUE(entry.hasFocus());
  EXPECT_EQ(list.ListIndex(), 0);
  list.setParent(nullptr);
}

TEST_F(CboEnhancedTest, AssistiveTechnologyHearsCaptionAndChoiceAndFindsTheItems) {
  list.SetListIndex(1);
  QAccessibleInterface *box = QAccessible::queryAccessibleInterface(&Box());
  EXPECT_EQ(box->text(QAccessible::Name), QStringLiteral("Source"));
  EXPECT_EQ(box->text(QAccessible::Value), QStringLiteral("CLK-IN"));
  ASSERT_NE(box->child(0), nullptr);
  EXPECT_EQ(box->child(0)->object(), Box().view());
  EXPECT_EQ(box->child(0)->childCount(), 3);
  EXPECT_EQ(box->indexOfChild(box->child(0)), 0);
  EXPECT_EQ(box->child(1), nullptr);
  EXPECT_FALSE(box->state().expanded);
  box->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
  EXPECT_TRUE(box->state().expanded);
  box->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
  EXPECT_FALSE(box->state().expanded);
}

TEST_F(CboEnhancedTest, AListThatWasClearedAndFilledAnewHasTheDataOfItsNewItems) {
  list.Clear();
  list.AddItemData("Other", 8, 30, True);
  list.SetListIndex(0);
  EXPECT_EQ(list.ListCount(), 1);
  EXPECT_EQ(list.GetCurrItemData(), 8);
  EXPECT_FALSE(list.SetListIndexByItemData(2));
}

TEST_F(CboEnhancedTest, AnIndexBeyondTheListSelectsTheFirstItem) {
  list.SetListIndex(3);
  EXPECT_EQ(list.ListIndex(), 0);
  list.SetListIndex(-1);
  EXPECT_EQ(list.ListIndex(), -1);
  list.Clear();
  list.SetListIndex(0);
  EXPECT_EQ(list.ListIndex(), -1);
  EXPECT_EQ(list.ListCount(), 0);
}

TEST_F(CboEnhancedTest, ADisabledListGivesTheDefaultWhateverWasSelected) {
  list.SetListIndex(2);
  list.SetEnabled(False);
  EXPECT_EQ(list.GetCurrItemData(7), 7);
  EXPECT_EQ(list.GetCurrGroupData(8), 8);
  EXPECT_EQ(list.ListIndex(), -1);
  EXPECT_FALSE(list.Enabled());
  EXPECT_EQ(intClicks, 1);
  EXPECT_EQ(Box().palette().color(QPalette::Base), QColor(0xC0, 0xC0, 0xC0));
  list.SetEnabled(True);
  EXPECT_EQ(list.ListIndex(), -1) << "the selection is lost";
}

TEST_F(CboEnhancedTest, AGroupIsFoundByItsDefaultItem) {
  EXPECT_TRUE(list.SetListIndexByGroupData(10));
  EXPECT_EQ(list.Text(), "CLK-IN");
  EXPECT_EQ(list.GetCurrGroupData(), 10);
}

TEST_F(CboEnhancedTest, AGroupWithoutADefaultItemIsNotFound) {
  list.AddItemData("Other", 5, 30, False);
  list.SetListIndex(0);
  EXPECT_FALSE(list.SetListIndexByGroupData(30));
  EXPECT_EQ(list.ListIndex(), 0);
  EXPECT_THAT(host.TakeBoxes(), ElementsAre("box stop: Group not found"));
}

TEST_F(CboEnhancedTest, ThreePositionsAndNoFourth) {
  list.SetTagX("123");
  EXPECT_EQ(Inside(list).strSavedIndexes, "0 0 0 ");
  list.SetListIndex(2);
  list.SaveListIndex(4);
  list.SaveListIndex(2);
  list.SetListIndex(1);
  list.RecallListIndex(4);
  EXPECT_EQ(list.ListIndex(), 1);
  list.RecallListIndex(2);
  EXPECT_EQ(list.ListIndex(), 2);
  list.RecallListIndex(1);
  EXPECT_EQ(list.ListIndex(), 0);
  list.RecallListIndex(0);
  list.RecallListIndex(-1);
  EXPECT_EQ(list.ListIndex(), 0);
}

TEST_F(CboEnhancedTest, APositionThatIsNoDigitSavesNothingAndIsStillRecalled) {
  list.SetTagX("0D0");
  list.SetListIndex(2);
  list.SaveListIndex(2);
  list.RecallListIndex(2);
  EXPECT_EQ(list.ListIndex(), 0);
}

TEST_F(CboEnhancedTest, SavingWithoutASelectionKeepsTheEarlierEntry) {
  list.SetTagX("0");
  list.SetListIndex(2);
  list.SaveListIndex(1);
  list.SetListIndex(-1);
  list.SaveListIndex(1);
  list.EnableAndRecall(True, 1);
  EXPECT_EQ(list.ListIndex(), 2);
  list.EnableAndRecall(False, 1);
  EXPECT_EQ(list.ListIndex(), -1);
}

TEST_F(CboEnhancedTest, AnEmptyCaptionGivesTheListTheWholeWidth) {
  EXPECT_EQ(Inside(list).layout.list, (TwipsRect{1315, 0, 1685, 315}));
  EXPECT_EQ(Inside(list).layout.label, (TwipsRect{0, 50, 1215, 265}));
  list.SetCaption("");
  list.Resize(3000);
  EXPECT_FALSE(OwnVisible(*Inside(list).lblCaption));
  EXPECT_EQ(Inside(list).layout.list, (TwipsRect{0, 0, 3000, 315}));
}

TEST_F(CboEnhancedTest, APlaceThatAProgramGaveInTwipsStaysUnrounded) {
  QCoreApplication::processEvents();
  EXPECT_EQ(Inside(list).layout.list.sngWidth, 1685);
}

TEST_F(CboEnhancedTest, AFormsWidthIsLaidOutAndTheHeightStaysThatOfTheList) {
  list.resize(TwipsToPixels(list, 4500), 200);
  const Single sngWidth = PixelsToTwips(list, list.width());
  EXPECT_NEAR(sngWidth, 4500, 15);
  EXPECT_EQ(Inside(list).layout.list, (TwipsRect{1315, 0, sngWidth - 1315, 315}));
  EXPECT_EQ(list.height(), TwipsToPixels(list, 315));
  EXPECT_EQ(Box().geometry(), TwipsToPixels(list, TwipsRect{1315, 0, sngWidth - 1315, 315}));
}

TEST_F(CboEnhancedTest, AWidthOfTheFormRunsOneLayoutHoweverOftenItIsShown) {
  struct Counter : QObject {
    int intCount = 0;
    bool eventFilter(QObject *, QEvent *event) override {
      intCount += event->type() == QEvent::Resize;
      return false;
    }
  } counter;
  QCoreApplication::processEvents();
  Box().installEventFilter(&counter);
  list.resize(500, 200);
  list.hide();
  list.show();
  QCoreApplication::processEvents();
  EXPECT_EQ(counter.intCount, 1);
}

TEST_F(CboEnhancedTest, AListInALayoutGetsTheHeightOfItsText) {
  QWidget form;
  QVBoxLayout rows(&form);
  auto *other = new CboEnhanced;
  rows.addWidget(other);
  form.resize(400, 300);
  form.show();
  EXPECT_EQ(other->height(), TwipsToPixels(*other, 315));
  EXPECT_EQ(other->width(), rows.contentsRect().width());
  EXPECT_GE(other->minimumSizeHint().width(), TwipsToPixels(*other, 315));
}

TEST_F(CboEnhancedTest, AListThatAFormOnlyMakesHasTheDefaultsOfAStoredOne) {
  const CboEnhanced made;
  EXPECT_EQ(made.Caption(), "");
  EXPECT_EQ(made.CaptionWidth(), 1215);
  EXPECT_TRUE(made.Enabled());
}

TEST_F(CboEnhancedTest, TheLabelHasItsNewWidthAtOnceAndTheListWaitsForTheLayout) {
  QCoreApplication::processEvents();
  const QRect box = Box().geometry();
  list.SetCaptionWidth(700);
  EXPECT_EQ(list.findChild<QLabel *>()->width(), TwipsToPixels(list, 700));
  EXPECT_EQ(Box().geometry(), box);
  EXPECT_EQ(Inside(list).layout.list, (TwipsRect{1315, 0, 1685, 315}));
}

TEST_F(CboEnhancedTest, ACaptionThatAppearsIsNotCovered) {
  list.SetCaption("");
  list.Resize(3000);
  EXPECT_EQ(Box().geometry().left(), 0);
  list.SetCaption("Source");
  list.SetCaptionWidth(1215);
  EXPECT_GT(Box().geometry().left(), list.findChild<QLabel *>()->geometry().right());
  EXPECT_EQ(Inside(list).layout.list, (TwipsRect{0, 0, 3000, 315}));
}

TEST_F(CboEnhancedTest, AListThatTheToolkitDisablesIsDisabled) {
  list.SetListIndex(1);
  list.setEnabled(false);
  EXPECT_FALSE(list.Enabled());
  EXPECT_EQ(list.ListIndex(), -1);
  EXPECT_EQ(list.GetCurrItemData(7), 7);
  EXPECT_EQ(Box().palette().color(QPalette::Base), QColor(0xC0, 0xC0, 0xC0));
  list.setEnabled(true);
  list.SetListIndex(1);
  EXPECT_EQ(list.GetCurrItemData(7), 0);
  EXPECT_FALSE(Box().palette().color(QPalette::Base) == QColor(0xC0, 0xC0, 0xC0));
}

TEST_F(CboEnhancedTest, CurrentIndexChangedTellsOfEveryNewSelectionByWhomever) {
  std::vector<std::string> arrTold;
  QObject::connect(&list, &CboEnhanced::currentIndexChanged, &list, [&](int intIndex) {
    arrTold.push_back(std::to_string(intIndex));
    EXPECT_EQ(list.ListIndex(), intIndex);
  });
  QObject::connect(&list, &CboEnhanced::currentTextChanged, &list,
                   [&](const QString &strText) { arrTold.push_back(strText.toStdString()); });
  list.Click.Connect([&] { arrTold.push_back("Click"); });
  const auto told = [&] { return std::exchange(arrTold, {}); };
  list.SetListIndex(1);
  EXPECT_THAT(told(), ElementsAre("1", "CLK-IN", "Click"));
  list.SetListIndex(1);
  list.AddItemData("Other", 8);
  EXPECT_THAT(told(), IsEmpty());
  QTest::keyClick(&Box(), Qt::Key_Down);
  EXPECT_THAT(told(), ElementsAre("2", "PLL", "Click"));
  list.setProperty("currentIndex", 0);
  EXPECT_THAT(told(), ElementsAre("0", "Internal", "Click"));
  list.SetListIndex(-1);
  EXPECT_THAT(told(), ElementsAre("-1", ""));
  list.SetListIndex(2);
  told();
  list.Clear();
  EXPECT_THAT(told(), ElementsAre("-1", ""));
  const QMetaObject &meta = CboEnhanced::staticMetaObject;
  EXPECT_EQ(meta.property(meta.indexOfProperty("ListIndex")).notifySignal().name(), "currentIndexChanged");
}

TEST_F(CboEnhancedTest, AValueThatIsNoneEndsTheReadingInSilence) {
  EXPECT_NO_THROW(list.ReadProperties({{"Caption", "Slope"}, {"CaptionWidth", "wide"}, {"TagX", "12"}}));
  EXPECT_EQ(list.Caption(), "Slope");
  EXPECT_EQ(list.TagX(), "") << "what comes behind is not read any more";
  EXPECT_THAT(host.TakeBoxes(), IsEmpty());
}

TEST_F(CboEnhancedTest, ItemsKeepTheOrderOfAdding) {
  list.AddItemData("AAA", 9);
  EXPECT_EQ(list.ItemText(3), "AAA");
  EXPECT_EQ(list.ItemData(3), 9);
}

TEST_F(CboEnhancedTest, AFailureInTheClickEndsTheUsersEventInABox) {
  list.Click.Connect([] { RaiseError(ErrTypeMismatch); });
  QTest::keyClick(&Box(), Qt::Key_Down);
  EXPECT_THAT(host.TakeBoxes(), ElementsAre("box stop: Type mismatch"));
  EXPECT_TRUE(list.Enabled());
}

TEST(CboEnhancedDesign, ReportsItsChangesAndWritesItsProperties) {
  RecordingHost host;
  DesignSite site;
  CboEnhanced list(nullptr, site);
  list.ReadProperties({{"Caption", "Freq."}, {"TagX", "12"}});
  EXPECT_THAT(site.arrChanged, IsEmpty());
  list.SetCaption("F");
  list.SetEnabled(False);
  list.SetTagX("1");
  EXPECT_THAT(site.arrChanged, ElementsAre("Caption", "Enabled", "TagX"));
  PropertyBag bag;
  list.WriteProperties(bag);
  std::vector<std::string> arrKeys;
  for (const auto &entry : bag.Written()) arrKeys.push_back(entry.strKey);
  EXPECT_THAT(arrKeys, ElementsAre("Caption", "CaptionAlignment", "CaptionWidth", "Enabled", "TagX"));
  EXPECT_EQ(bag.ReadProperty("Caption", ""), "F");
  EXPECT_EQ(bag.ReadProperty("Enabled", True), False);
}

TEST(CboEnhancedDesign, ANewListReportsNoPropertyThatHasItsDefault) {
  RecordingHost host;
  DesignSite site;
  CboEnhanced list(nullptr, site);
  list.setProperty("NewOnForm", true);
  EXPECT_THAT(site.arrChanged, IsEmpty());
}

TEST(CboEnhancedDesign, SavesNothingAtRunTime) {
  CboEnhanced list;
  PropertyBag bag;
  list.WriteProperties(bag);
  EXPECT_THAT(bag.Written(), IsEmpty());
}

}  // namespace
}  // namespace tarvik::test
