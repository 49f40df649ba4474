#include <QAccessible>
#include <QMetaProperty>
#include <random>

#include "FieldFixture.h"
#include "platform/ControlSite.h"
#include "platform/Twips.h"
#include "support/Conversions.h"

namespace tarvik {
namespace {

using test::Field;

TEST_F(Field, KeysStepTheDigitUnderTheCursor) {
  MakeVolts(1);
  field->SetFocus();
  QTest::keyClick(txt, Qt::Key_Down);
  EXPECT_EQ(field->Text(), "900.0");
  QTest::keyClick(txt, Qt::Key_Right);
  QTest::keyClick(txt, Qt::Key_Up);
  EXPECT_EQ(field->Text(), "910.0");
  EXPECT_EQ(intUpdates, 2);
}

TEST_F(Field, TypingWithPrefixIsTakenByEnterAndByLeaving) {
  for (const char chSeparator : {'.', ','}) {
    host.chSeparator = chSeparator;
    MakeVolts(1);
    field->SetFocus();
    QTest::keyClick(txt, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(txt, QString("3") + QLatin1Char(chSeparator) + "05mV");
    QTest::keyClick(txt, Qt::Key_Return);
    EXPECT_EQ(field->Text(), std::string("3") + chSeparator + "050") << chSeparator;
    QTest::keyClick(txt, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(txt, "7kV");
    form.setFocus();
    EXPECT_EQ(field->Value(), 7000);
    delete field;
  }
}

TEST_F(Field, EscapeBeepsAndRestores) {
  MakeVolts(1);
  field->SetFocus();
  QTest::keyClicks(txt, "77");
  QTest::keyClick(txt, Qt::Key_Escape);
  EXPECT_EQ(field->Text(), "1.000");
  EXPECT_EQ(host.intBeeps, 1);
}

TEST_F(Field, CopyAndModifiersBeginNoTypingAndPasteDoes) {
  MakeVolts(1.23456);
  field->SetFocus();
  QTest::keyClick(txt, Qt::Key_C, Qt::ControlModifier);
  QTest::keyClick(txt, Qt::Key_Shift);
  form.setFocus();
  EXPECT_EQ(field->Value(), 1.23456);
  field->SetFocus();
  QApplication::clipboard()->setText(QString(1 << 20, '9'));
  QTest::keyClick(txt, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(txt, Qt::Key_V, Qt::ControlModifier);
  QTest::keyClick(txt, Qt::Key_Return);
  EXPECT_EQ(field->Text(), "1.234");
  EXPECT_EQ(field->Value(), 1.23456);
}

TEST_F(Field, WheelWorksOnlyWithTheFocus) {
  MakeVolts(2);
  EXPECT_FALSE(Wheel(120));
  EXPECT_EQ(field->Value(), 2);
  field->SetFocus();
  EXPECT_TRUE(Wheel(120));
  EXPECT_EQ(field->Value(), 3);
  Wheel(-240);
  EXPECT_EQ(field->Value(), 1);
}

TEST_F(Field, HeldSpinButtonRepeats) {
  MakeVolts(2);
  QTest::mousePress(spin, Qt::LeftButton, {}, QPoint(3, 3));
  EXPECT_EQ(field->Value(), 3);
  EXPECT_TRUE(QTest::qWaitFor([&] { return field->Value() >= 5; }, 3000));
  QTest::mouseRelease(spin, Qt::LeftButton, {}, QPoint(3, 3));
  EXPECT_TRUE(txt->hasFocus());
}

TEST_F(Field, AHandlerThatFailsLeavesKeysSpinButtonAndWheelAlive) {
  MakeVolts(2);
  field->SetFocus();
  field->AfterUpdate.Connect([] { RaiseError(ErrTypeMismatch); });
  for (int i = 1; i <= 2; ++i) {
    QTest::keyClick(txt, Qt::Key_Up);
    QTest::mouseClick(spin, Qt::LeftButton, {}, QPoint(3, 3));
    Wheel(120);
    EXPECT_EQ(field->Value(), 2 + 3 * i);
  }
  EXPECT_EQ(host.intBoxes, 4) << "failures of a key end in it";
}

TEST_F(Field, SpinButtonTakesATypedEntryFirst) {
  MakeVolts(2);
  field->SetFocus();
  QTest::keyClick(txt, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(txt, "5V");
  QTest::mouseClick(spin, Qt::LeftButton, {}, QPoint(3, 3));
  EXPECT_EQ(field->Value(), 6);
}

TEST_F(Field, LockedFieldIgnoresTheUser) {
  MakeVolts(2);
  field->SetFocus();
  field->LockControl(True, True);
  QTest::keyClick(txt, Qt::Key_Up);
  QTest::keyClicks(txt, "5");
  EXPECT_FALSE(Wheel(120));
  EXPECT_EQ(field->Value(), 2);
  EXPECT_EQ(field->Text(), "----");
}

TEST_F(Field, ALockedFieldIgnoresItsSpinButtonAlsoAfterItWasDisabled) {
  MakeVolts(2);
  field->LockControl(True, False);
  field->SetEnabled(False);
  field->SetEnabled(True);
  QTest::mouseClick(spin, Qt::LeftButton, {}, QPoint(spin->width() / 2, 2));
  EXPECT_EQ(field->Value(), 2);
  field->LockControl(False, False);
  QTest::mouseClick(spin, Qt::LeftButton, {}, QPoint(spin->width() / 2, 2));
  EXPECT_EQ(field->Value(), 3);
}

/// What a screen reader hears of the field.
QString Spoken(const EngrSpin &field, QAccessible::Text eText) {
  return QAccessible::queryAccessibleInterface(field.focusProxy())->text(eText);
}

TEST_F(Field, IsSpokenOfByItsCaptionAndTellsItsValueWithTheUnit) {
  Make({{"Caption", std::string("Width")}, {"CaptionWidth", Single{740}}, {"BaseUnit", std::string("s")}});
  field->SetValue(3.05e-6);
  EXPECT_EQ(Spoken(*field, QAccessible::Name), "Width");
  EXPECT_EQ(Spoken(*field, QAccessible::Description), "3.050 us");
}

TEST_F(Field, RandomKeysLeaveValueLimitsAndCursorSound) {
  MakeVolts(1);
  field->SetFocus();
  std::mt19937 random(42);
  const int keys[] = {Qt::Key_Up,     Qt::Key_Down, Qt::Key_Left, Qt::Key_Right,  Qt::Key_5,     Qt::Key_M,
                      Qt::Key_Period, Qt::Key_E,    Qt::Key_Home, Qt::Key_Return, Qt::Key_Minus, Qt::Key_Escape};
  for (int i = 0; i < 5000; ++i) {
    QTest::keyClick(txt, static_cast<Qt::Key>(keys[random() % std::size(keys)]));
    ASSERT_GE(field->Value(), field->Min());
    ASSERT_LE(field->Value(), field->Max());
  }
  QTest::keyClick(txt, Qt::Key_Return);
  field->SetValue(2);
  EXPECT_EQ(field->Text(), "2.000");
}

TEST_F(Field, AFormOfFieldsCanBePictured) {
  Make({{"Caption", std::string("Width")}, {"CaptionWidth", Single{740}}, {"BaseUnit", std::string("s")}});
  field->SetValue(-999.95e-6);
  const char *units[] = {"V", "Ohm", "Hz", "A"};
  for (int i = 0; i < 4; ++i) {
    auto *other = new EngrSpin(&form);
    other->ReadProperties({{"Caption", std::string("Load Compens.")},
                           {"CaptionWidth", Single{1100}},
                           {"BaseUnit", std::string(units[i])},
                           {"DefaultValue", -888.88e3}});
    other->Move(300, static_cast<Single>(750 + 450 * i), 3630, 315);
    if (i == 1) other->LockControl(True, False);
    if (i == 2) other->SetEnabled(False);
    if (i == 3) other->LockControl(True, True);
    other->show();
  }
  field->SetFocus();
  QApplication::processEvents();
  const QPixmap picture = form.grab();
  EXPECT_FALSE(picture.isNull());
  const QString folder = qEnvironmentVariable("TARVIK_PICTURES");
  if (!folder.isEmpty()) {
    EXPECT_TRUE(picture.save(folder + "/engrspin.png"));
  }
}

TEST_F(Field, AFieldWithoutTheFocusShowsNeitherCaretNorDigitCursor) {
  MakeVolts(1);
  const QImage plain = field->grab().toImage();
  field->SetFocus();
  QTest::keyClick(txt, Qt::Key_Right);
  EXPECT_NE(field->grab().toImage(), plain);
  form.setFocus();
  EXPECT_EQ(txt->selectionLength(), 1) << "the place of the digit is kept";
  EXPECT_EQ(field->grab().toImage(), plain);
}

TEST_F(Field, ABadEntryThatIsLeftShowsNoCaret) {
  MakeVolts(1);
  const QImage plain = field->grab().toImage();
  field->SetFocus();
  QTest::keyClicks(txt, "x");
  form.setFocus();
  EXPECT_EQ(host.intBeeps, 1);
  EXPECT_EQ(field->grab().toImage(), plain);
}

TEST_F(Field, AValueAssignedAgainTakesTheNewUnitPrefixAndFormat) {
  MakeVolts(1);
  field->SetValue(0.002);
  field->SetSignificantDigits(6);
  EXPECT_EQ(field->Text(), "2.00000");
  field->SetBaseUnit("A");
  field->SetValue(0.002);
  EXPECT_EQ(Spoken(*field, QAccessible::Value), QString("2.00000 mA"));
}

TEST_F(Field, ABlankedFieldShowsTheValueThatItHasWhenItIsFreeAgain) {
  MakeVolts(1);
  field->LockControl(True, True);
  field->SetValue(1);
  EXPECT_EQ(field->Text(), "----");
  field->SetValue(0.25);
  field->SetValue(1);
  EXPECT_EQ(field->Text(), "----");
  field->LockControl(False, False);
  EXPECT_EQ(field->Text(), "1.000");
  EXPECT_EQ(Spoken(*field, QAccessible::Value), QString("1.000 V"));
}

TEST_F(Field, AValueAssignedAgainReplacesWhatWasTyped) {
  MakeVolts(1);
  field->SetFocus();
  QTest::keyClicks(txt, "77");
  field->SetValue(1);
  EXPECT_EQ(field->Text(), "1.000");
}

QRect Place(const QWidget &field, const char *strPart) {
  return field.findChild<QWidget *>(QString::fromLatin1(strPart))->geometry();
}

TEST_F(Field, ALabelHasItsNewWidthAtOnceAndTheOthersWaitForTheLayout) {
  Make({{"BaseUnit", std::string("V")}, {"Caption", std::string("Level")}, {"CaptionWidth", 740.0}});
  const QRect number = txt->geometry();
  const Single sngTextBox = field->TextBoxWidth();
  field->SetCaptionWidth(400);
  EXPECT_EQ(Place(*field, "lblCaption").width(), TwipsToPixels(*field, 400));
  EXPECT_EQ(txt->geometry(), number);
  field->SetCaption("");
  EXPECT_EQ(txt->geometry(), number);
  EXPECT_EQ(field->TextBoxWidth(), sngTextBox);
  field->Resize(3630, 315);
  EXPECT_EQ(txt->geometry().left(), 0);
}

/// A form that is being designed.
class DesignSite : public ControlSite {
 public:
  Boolean UserMode() const override { return False; }
  void PropertyChanged(const std::string &) override {}
};

TEST_F(Field, InAFormThatIsDesignedANewUnitTakesItsRoomAtOnce) {
  DesignSite site;
  EngrSpin designed(&form, site);
  designed.ReadProperties({{"BaseUnit", std::string()}});
  designed.Move(300, 900, 3630, 315);
  EXPECT_EQ(designed.TextBoxWidth(), 3630);
  designed.SetBaseUnit("V");
  EXPECT_EQ(designed.TextBoxWidth(), 3090);
}

TEST_F(Field, AClickOnTheOnlyDigitSelectsIt) {
  Make({{"MinExponent", Long{0}},
        {"MaxExponent", Long{0}},
        {"NumberFormat", std::string("#")},
        {"Max", 9.0},
        {"DefaultValue", 5.0}});
  field->SetFocus();
  txt->deselect();
  QTest::mouseClick(txt, Qt::LeftButton, {}, QPoint(txt->width() - 8, txt->height() / 2));
  EXPECT_EQ(Selected(), "5");
}

TEST_F(Field, AssistiveTechnologySelectsAPieceOfTheNumber) {
  MakeVolts(2.5);
  auto *text = QAccessible::queryAccessibleInterface(txt)->textInterface();
  text->addSelection(2, 4);
  EXPECT_EQ(Selected(), "50");
  int intStart = 0, intEnd = 0;
  text->selection(0, &intStart, &intEnd);
  EXPECT_EQ(intStart, 2);
  EXPECT_EQ(intEnd, 4);
}

TEST_F(Field, WhatIsSwitchedOnStandsInItsPlaceAndCoversNothing) {
  Make({{"SpinCtlVisible", False}});
  const Single sngTextBox = field->TextBoxWidth();
  field->SetBaseUnit("V");
  field->SetSpinCtlVisible(True);
  field->SetCaption("Level");
  field->SetCaptionWidth(740);
  const QRect caption = Place(*field, "lblCaption"), number = txt->geometry(), button = spin->geometry(),
              unit = Place(*field, "lblUnits");
  EXPECT_EQ(caption.left(), 0);
  EXPECT_LT(caption.right(), number.left());
  EXPECT_LT(number.right(), button.left());
  EXPECT_LT(button.right(), unit.left());
  EXPECT_EQ(unit.right(), field->width() - 1);
  EXPECT_EQ(unit.width(), TwipsToPixels(*field, 3630) - TwipsToPixels(*field, 3130));
  EXPECT_EQ(field->TextBoxWidth(), sngTextBox) << "the width that the latest layout found";
}

TEST_F(Field, AFieldThatTheToolkitDisablesIsDisabled) {
  MakeVolts(1);
  const QRgb rgbWhite = txt->palette().color(QPalette::Base).rgb();
  field->setEnabled(false);
  EXPECT_FALSE(field->Enabled());
  EXPECT_EQ(txt->palette().color(QPalette::Base), QColor(0xC0, 0xC0, 0xC0));
  EXPECT_FALSE(txt->focusPolicy() & Qt::TabFocus);
  field->setEnabled(true);
  EXPECT_TRUE(field->Enabled());
  EXPECT_EQ(txt->palette().color(QPalette::Base).rgb(), rgbWhite);
  form.setEnabled(false);
  EXPECT_TRUE(field->Enabled()) << "a container around it is disabled, not the field";
}

TEST_F(Field, ValueChangedTellsOfEveryNewNumberByWhomever) {
  MakeVolts(1);
  std::vector<std::string> arrTold;
  QObject::connect(field, &EngrSpin::valueChanged, field, [&](double dblValue) {
    arrTold.push_back("value " + CStr(Variant(dblValue)) + " " + field->Text());
  });
  QObject::connect(field, &EngrSpin::textChanged, field,
                   [&](const QString &strText) { arrTold.push_back("text " + strText.toStdString()); });
  field->AfterUpdate.Connect([&] { arrTold.push_back("AfterUpdate"); });
  const auto told = [&] { return std::exchange(arrTold, {}); };
  using Told = std::vector<std::string>;
  field->SetValue(2);
  EXPECT_EQ(told(), (Told{"text 2.000", "value 2 2.000"}));
  field->SetValue(2);
  EXPECT_EQ(told(), Told{}) << "the same number is no news";
  field->SetMax(1.5);
  EXPECT_EQ(told(), (Told{"text 1.500", "value 1.5 1.500"})) << "a limit moves the value";
  field->SetFocus();
  field->findChild<QLineEdit *>()->setCursorPosition(2);
  QTest::keyClick(txt, Qt::Key_Home);
  told();
  QTest::keyClick(txt, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(txt, "1");
  EXPECT_EQ(told(), (Told{"text 1"})) << "typing shows another text, and no number yet";
  QTest::keyClick(txt, Qt::Key_Return);
  EXPECT_EQ(told(), (Told{"text 1.000", "value 1 1.000", "AfterUpdate"}));
  field->setProperty("value", 0.5);
  EXPECT_EQ(told(), (Told{"text 500.0", "value 0.5 500.0"}));
}

TEST_F(Field, ItsPropertiesTellOfTheirChanges) {
  const QMetaObject &meta = EngrSpin::staticMetaObject;
  for (const auto &[strProperty, strSignal] :
       std::vector<std::pair<const char *, const char *>>{{"Value", "valueChanged"},
                                                          {"Reciprocal", "valueChanged"},
                                                          {"value", "valueChanged"},
                                                          {"Text", "textChanged"}})
    EXPECT_EQ(meta.property(meta.indexOfProperty(strProperty)).notifySignal().name().toStdString(), strSignal);
  EXPECT_STREQ(meta.userProperty().name(), "value");
}

TEST_F(Field, AValueThatASlotSetsEndsItsFailuresAtTheBoundary) {
  MakeVolts(1);
  field->AfterUpdate.Connect([] { RaiseError(ErrTypeMismatch); });
  field->SetFocus();
  QTest::keyClick(txt, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(txt, "3");
  EXPECT_NO_THROW(field->setValue(2));
  EXPECT_EQ(host.intBoxes, 1);
  EXPECT_EQ(field->Value(), 2);
}

}  // namespace
}  // namespace tarvik
