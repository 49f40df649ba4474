#include <gmock/gmock.h>

#include <QLineEdit>
#include <QRadioButton>
#include <QTest>
#include <QVBoxLayout>

#include "RecordingHost.h"
#include "WatchedCalls.h"
#include "WidgetEnvironment.h"
#include "controls/FrameEnhanced.h"
#include "platform/CheckBox.h"
#include "platform/ControlSite.h"
#include "platform/OptionButton.h"
#include "platform/PropertyBag.h"
#include "platform/WidgetControl.h"
#include "support/Variant.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// A control that counts how often its Enabled is written.
class CountingCheck : public CheckBox {
 public:
  using CheckBox::CheckBox;
  void SetEnabled(Boolean fEnable) override {
    ++intWrites;
    CheckBox::SetEnabled(fEnable);
  }
  int intWrites = 0;
};

class FrameEnhancedTest : public testing::Test {
 protected:
  FrameEnhancedTest() {
    frame.ReadProperties({{"Caption", "Mode"}});
    first.SetTag("1");
    second.SetTag("2");
    second.move(0, 40);
    check.move(0, 80);
    frame.resize(200, 150);
    frame.show();
    first.Click.Connect([this] { arrClicked.push_back("first"); });
    second.Click.Connect([this] { arrClicked.push_back("second"); });
  }

  RecordingHost host;
  FrameEnhanced frame;
  CountingCheck check{frame.Container()};  // stands before the options and is none
  OptionButton first{frame.Container(), Integer{4}};
  OptionButton second{frame.Container(), Integer{5}};
  std::vector<std::string> arrClicked;
};

TEST_F(FrameEnhancedTest, WithoutAChoiceTheIndexIsZeroAndTheValueEmpty) {
  EXPECT_EQ(frame.ArrayIndex(), 0);
  EXPECT_TRUE(tarvik::IsEmpty(frame.Value()));
}

TEST_F(FrameEnhancedTest, AUsersClickIsTheFramesValue) {
  QTest::mouseClick(&second, Qt::LeftButton, {}, QPoint(8, second.height() / 2));
  EXPECT_EQ(frame.ArrayIndex(), 5);
  EXPECT_EQ(CStr(frame.Value()), "2");
  EXPECT_THAT(arrClicked, ElementsAre("second"));
}

TEST_F(FrameEnhancedTest, ArrowKeysGoThroughTheOptions) {
  first.SetDesignValue(True);
  frame.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&frame));
  first.setFocus();
  QTest::keyClick(&first, Qt::Key_Down);
  EXPECT_EQ(frame.ArrayIndex(), 5);
}

TEST_F(FrameEnhancedTest, AValueIsMatchedByItsText) {
  frame.SetValue(Long{1});
  EXPECT_EQ(frame.ArrayIndex(), 4);
  frame.SetValue(2.0);
  EXPECT_EQ(frame.ArrayIndex(), 5);
  frame.SetValue(std::string("3"));
  EXPECT_EQ(frame.ArrayIndex(), 5) << "no tag has this text";
  EXPECT_THAT(arrClicked, ElementsAre("first", "second"));
}

TEST_F(FrameEnhancedTest, ATagIsComparedLetterByLetter) {
  first.SetTag("all");
  frame.SetValue(std::string("All"));
  EXPECT_TRUE(tarvik::IsEmpty(frame.Value()));
}

TEST_F(FrameEnhancedTest, AnIndexThatNoButtonHasChangesNothing) {
  frame.SetArrayIndex(5);
  frame.SetArrayIndex(1);
  EXPECT_EQ(frame.ArrayIndex(), 5);
  EXPECT_THAT(host.TakeBoxes(), testing::IsEmpty());
}

TEST_F(FrameEnhancedTest, MatchFallsBackToItsSecondValue) {
  frame.Match(std::string("9"), std::string("1"));
  EXPECT_EQ(CStr(frame.Value()), "1");
  frame.Match(std::string("9"), std::string("8"));
  EXPECT_EQ(CStr(frame.Value()), "1");
  frame.Match(std::string("2"), std::string("1"));
  EXPECT_EQ(CStr(frame.Value()), "2");
}

TEST_F(FrameEnhancedTest, EnabledReachesEverythingAndItsPresentValueNothing) {
  frame.SetEnabled(True);
  EXPECT_EQ(check.intWrites, 0);
  frame.SetEnabled(False);
  EXPECT_EQ(check.intWrites, 1);
  EXPECT_FALSE(check.Enabled());
  EXPECT_FALSE(first.Enabled());
  EXPECT_FALSE(frame.Enabled());
  QTest::mouseClick(&first, Qt::LeftButton, {}, QPoint(8, first.height() / 2));
  EXPECT_THAT(arrClicked, testing::IsEmpty());
}

TEST_F(FrameEnhancedTest, TheFocusGoesToTheChosenButton) {
  std::vector<std::string> arrAsked;
  first.setObjectName("first");
  second.setObjectName("second");
  const auto connection =
      test::FocusRequested().ConnectScoped([&](const std::string &strName) { arrAsked.push_back(strName); });
  frame.SetFocusOnOpt();
  EXPECT_THAT(arrAsked, testing::IsEmpty());
  second.SetDesignValue(True);
  frame.SetFocusOnOpt();
  EXPECT_THAT(arrAsked, ElementsAre("second"));
  second.SetEnabled(False);
  frame.SetFocusOnOpt();
  EXPECT_THAT(arrAsked, ElementsAre("second"));
  second.SetEnabled(True);
  frame.SetEnabled(False);
  frame.SetFocusOnOpt();
  EXPECT_THAT(arrAsked, ElementsAre("second"));
}

TEST_F(FrameEnhancedTest, AButtonOutsideOfAnArrayIsAReportedFailure) {
  OptionButton loose(frame.Container());
  loose.SetValue(True);
  EXPECT_EQ(frame.ArrayIndex(), 0);
  const std::vector<std::string> arrLines = host.TakeLines();
  ASSERT_EQ(arrLines.size(), 2u);
  EXPECT_THAT(arrLines[1], HasSubstr("Mod: FrameEnhanced; Proc: ArrayIndex"));
}

/// Radio buttons and other widgets of the toolkit that a form put into the control itself.
struct FormFrame {
  FormFrame() {
    slow.setProperty("Index", 0);
    slow.setProperty("Tag", QStringLiteral("S"));
    fast.setProperty("Index", 7);
    fast.setProperty("Tag", QStringLiteral("F"));
  }
  FrameEnhanced frame;
  QRadioButton slow{&frame};
  QLineEdit text{&frame};
  QRadioButton fast{&frame};
};

TEST_F(FrameEnhancedTest, RadioButtonsOfAFormAreItsOptions) {
  FormFrame form;
  EXPECT_TRUE(std::holds_alternative<std::monostate>(form.frame.Value()));
  form.frame.SetValue(std::string("F"));
  EXPECT_TRUE(form.fast.isChecked());
  EXPECT_EQ(form.frame.ArrayIndex(), 7);
  form.frame.SetArrayIndex(0);
  EXPECT_TRUE(form.slow.isChecked());
  EXPECT_FALSE(form.fast.isChecked());
  EXPECT_EQ(CStr(form.frame.Value()), "S");
  form.frame.Match(std::string("X"), std::string("F"));
  EXPECT_EQ(form.frame.ArrayIndex(), 7);
  form.frame.show();
  QTest::mouseClick(&form.slow, Qt::LeftButton, {}, QPoint(8, form.slow.height() / 2));
  EXPECT_EQ(CStr(form.frame.Value()), "S");
}

TEST_F(FrameEnhancedTest, ARadioButtonWithoutIndexIsAReportedFailure) {
  FormFrame form;
  form.slow.setProperty("Index", QVariant());
  form.slow.setChecked(true);
  EXPECT_EQ(form.frame.ArrayIndex(), 0);
  const std::vector<std::string> arrLines = host.TakeLines();
  ASSERT_EQ(arrLines.size(), 2u);
  EXPECT_THAT(arrLines[1], HasSubstr("Mod: FrameEnhanced; Proc: ArrayIndex"));
}

TEST_F(FrameEnhancedTest, TheChosenRadioButtonOfAFormCanBeUncheckedAndTheOthersStillTakeTurns) {
  FormFrame form;
  form.frame.SetArrayIndex(7);
  for (OptionButtonControl *button : form.frame.OptionButtons()) button->SetValue(False);
  EXPECT_FALSE(form.fast.isChecked());
  EXPECT_TRUE(tarvik::IsEmpty(form.frame.Value()));
  form.frame.SetArrayIndex(7);
  form.frame.SetArrayIndex(0);
  EXPECT_FALSE(form.fast.isChecked());
  EXPECT_EQ(CStr(form.frame.Value()), "S");
}

TEST_F(FrameEnhancedTest, AnIndexThatIsNoWholeNumberOrTooLargeIsAReportedFailure) {
  FormFrame form;
  form.fast.setChecked(true);
  for (const QVariant &index : {QVariant(QStringLiteral("x")), QVariant(32768), QVariant(-32769)}) {
    form.fast.setProperty("Index", index);
    host.TakeLines();
    EXPECT_EQ(form.frame.ArrayIndex(), 0);
    EXPECT_EQ(host.TakeBoxes().size(), 1u) << index.toString().toStdString();
  }
  form.fast.setProperty("Index", 32767);
  EXPECT_EQ(form.frame.ArrayIndex(), 32767);
}

TEST_F(FrameEnhancedTest, EnabledReachesEveryWidgetOfAForm) {
  FormFrame form;
  form.frame.SetEnabled(False);
  for (const QWidget *widget : std::initializer_list<QWidget *>{&form.slow, &form.text, &form.fast}) {
    EXPECT_FALSE(OwnEnabled(*widget));
  }
  form.frame.SetEnabled(True);
  EXPECT_TRUE(form.text.isEnabled());
  EXPECT_TRUE(form.fast.isEnabled());
}

TEST_F(FrameEnhancedTest, TheFocusGoesToTheChosenRadioButtonOfAForm) {
  FormFrame form;
  form.fast.setObjectName("fast");
  form.fast.setChecked(true);
  std::vector<std::string> arrAsked;
  const auto connection =
      test::FocusRequested().ConnectScoped([&](const std::string &strName) { arrAsked.push_back(strName); });
  form.frame.SetFocusOnOpt();
  EXPECT_THAT(arrAsked, ElementsAre("fast"));
}

TEST_F(FrameEnhancedTest, WhatAFormChangesLaterIsNoticed) {
  FormFrame form;
  form.frame.SetValue(std::string("S"));
  form.slow.setProperty("Tag", QStringLiteral("slowest"));
  form.fast.setProperty("Tag", QStringLiteral("S"));
  form.frame.SetValue(std::string("S"));
  EXPECT_TRUE(form.fast.isChecked());
  {
    QRadioButton third(&form.frame);
    third.setProperty("Tag", QStringLiteral("T"));
    form.frame.SetValue(std::string("T"));
    EXPECT_EQ(CStr(form.frame.Value()), "T");
  }
  EXPECT_EQ(form.frame.OptionButtons().size(), 2u);
  form.frame.SetValue(std::string("T"));
  EXPECT_FALSE(form.slow.isChecked());
}

TEST_F(FrameEnhancedTest, AFrameThatAFormOnlyMakesHasTheDefaultsOfAStoredOne) {
  const FrameEnhanced made;
  EXPECT_EQ(made.Caption(), "Frame");
  EXPECT_EQ(made.BorderStyle(), 1);
  EXPECT_TRUE(made.Enabled());
}

TEST_F(FrameEnhancedTest, ALayoutOfAFormStaysWithinTheFrame) {
  FrameEnhanced made;
  QVBoxLayout rows(&made);
  QRadioButton button(&made);
  rows.addWidget(&button);
  made.resize(200, 120);
  made.show();
  EXPECT_TRUE(made.Container()->contentsRect().contains(button.geometry()));
  EXPECT_GE(made.sizeHint().height(), button.sizeHint().height());
}

TEST_F(FrameEnhancedTest, TheFrameFillsTheControl) {
  frame.resize(300, 120);
  EXPECT_EQ(frame.Container()->geometry(), QRect(0, 0, 300, 120));
  EXPECT_EQ(frame.Caption(), "Mode");
  EXPECT_EQ(frame.BorderStyle(), 1);
}

TEST_F(FrameEnhancedTest, AFrameThatTheToolkitDisablesIsDisabled) {
  frame.setEnabled(false);
  EXPECT_FALSE(frame.Enabled());
  EXPECT_FALSE(first.Enabled());
  frame.setEnabled(true);
  EXPECT_TRUE(frame.Enabled());
  EXPECT_TRUE(first.Enabled());
}

TEST_F(FrameEnhancedTest, OnlyBorderAndCaptionAreSaved) {
  PropertyBag bag;
  frame.SetEnabled(False);
  frame.WriteProperties(bag);
  std::vector<std::string> arrKeys;
  for (const auto &entry : bag.Written()) arrKeys.push_back(entry.strKey);
  EXPECT_THAT(arrKeys, ElementsAre("BorderStyle", "Caption"));
}

TEST_F(FrameEnhancedTest, AnOptionThatCameOrWentLaterCounts) {
  frame.SetValue(std::string("2"));
  auto third = std::make_unique<OptionButton>(frame.Container(), Integer{6});
  third->SetTag("3");
  frame.SetValue(std::string("3"));
  EXPECT_EQ(frame.ArrayIndex(), 6);
  EXPECT_EQ(frame.OptionButtons().size(), 3u);
  third.reset();
  frame.SetValue(std::string("3"));
  EXPECT_EQ(frame.ArrayIndex(), 0) << "the chosen button is gone, and nothing was chosen in its place";
  EXPECT_THAT(frame.OptionButtons(), ElementsAre(&first, &second));
}

TEST_F(FrameEnhancedTest, AValueSetAgainFollowsTagsThatChangedInBetween) {
  frame.SetValue(Long{2});
  frame.SetValue(Long{2});
  EXPECT_EQ(frame.ArrayIndex(), 5);
  first.SetTag("2");
  second.SetTag("1");
  frame.SetValue(Long{2});
  EXPECT_EQ(frame.ArrayIndex(), 4);
  frame.SetValue(Long{1});
  EXPECT_EQ(frame.ArrayIndex(), 5);
}

TEST_F(FrameEnhancedTest, AValueSetAgainComesBackAfterAUsersClick) {
  frame.SetValue(Long{2});
  QTest::mouseClick(&first, Qt::LeftButton, {}, QPoint(8, first.height() / 2));
  frame.SetValue(Long{2});
  EXPECT_EQ(frame.ArrayIndex(), 5);
  EXPECT_THAT(arrClicked, ElementsAre("second", "first", "second"));
}

/// A form that is being designed.
class FrameDesignSite : public ControlSite {
 public:
  Boolean UserMode() const override { return False; }
  void PropertyChanged(const std::string &strProperty) override { arrChanged.push_back(strProperty); }
  std::vector<std::string> arrChanged;
};

TEST(FrameEnhancedDesign, ReportsThatItWasDisabled) {
  FrameDesignSite site;
  FrameEnhanced frame(nullptr, site);
  frame.SetEnabled(False);
  EXPECT_THAT(site.arrChanged, ElementsAre("Enabled"));
}

}  // namespace
}  // namespace tarvik::test
