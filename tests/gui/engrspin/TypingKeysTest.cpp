#include <QDialog>
#include <QPushButton>
#include <QShortcut>

#include "FieldFixture.h"
#include "support/EventBoundary.h"

namespace tarvik {
namespace {

using test::Field;

struct Chord {
  Qt::Key key;
  Qt::KeyboardModifiers modifiers;
};

constexpr Chord KeysThatTypeNothing[] = {
    {Qt::Key_Shift, {}},
    {Qt::Key_Control, {}},
    {Qt::Key_Alt, {}},
    {Qt::Key_AltGr, {}},
    {Qt::Key_Meta, {}},
    {Qt::Key_CapsLock, {}},
    {Qt::Key_NumLock, {}},
    {Qt::Key_ScrollLock, {}},
    {Qt::Key_F1, {}},
    {Qt::Key_F5, {}},
    {Qt::Key_F12, {}},
    {Qt::Key_F24, {}},
    {Qt::Key_Insert, {}},
    {Qt::Key_Menu, {}},
    {Qt::Key_Print, {}},
    {Qt::Key_SysReq, {}},
    {Qt::Key_Pause, {}},
    {Qt::Key_VolumeUp, {}},
    {Qt::Key_C, Qt::ControlModifier},
    {Qt::Key_Insert, Qt::ControlModifier},
    {Qt::Key_S, Qt::ControlModifier},
    {Qt::Key_U, Qt::AltModifier},
    {Qt::Key_L, Qt::MetaModifier},
    {Qt::Key_Z, Qt::ControlModifier},
    {Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier},
    {Qt::Key_Backspace, Qt::AltModifier},
};

TEST_F(Field, AKeyThatTypesNothingBeginsNoTyping) {
  MakeVolts(1.23456);
  field->SetFocus();
  for (const Chord &chord : KeysThatTypeNothing) {
    // With the text that keyboards send for most of them: none.
    QTest::sendKeyEvent(QTest::Click, txt, chord.key, QString(), chord.modifiers);
    ASSERT_FALSE(IsTyping()) << "key " << chord.key << " with " << chord.modifiers.toInt();
  }
  QTest::keyClick(txt, Qt::Key_Return);
  EXPECT_EQ(field->Value(), 1.23456);
  EXPECT_EQ(intUpdates, 0);
}

TEST_F(Field, AKeyThatTypesNothingCarriesTheTextThatSomeKeyboardsSend) {
  MakeVolts(1.23456);
  field->SetFocus();
  for (const Qt::Key key : {Qt::Key_F5, Qt::Key_Menu, Qt::Key_Pause}) {
    QTest::sendKeyEvent(QTest::Click, txt, key, QString(QChar(0x1b)), Qt::NoModifier);
    EXPECT_FALSE(IsTyping()) << key;
  }
}

TEST_F(Field, AChordThatChangesTheTextBeginsTyping) {
  const Chord editing[] = {{Qt::Key_Delete, {}},
                           {Qt::Key_Backspace, {}},
                           {Qt::Key_X, Qt::ControlModifier},
                           {Qt::Key_Delete, Qt::ControlModifier}};
  for (const Chord &chord : editing) {
    MakeVolts(1.5);
    field->SetFocus();
    QTest::keyClick(txt, Qt::Key_Right);
    QTest::keyClick(txt, chord.key, chord.modifiers);
    EXPECT_TRUE(IsTyping()) << "key " << chord.key << " left " << field->Text();
    QTest::keyClick(txt, Qt::Key_Escape);
    EXPECT_EQ(field->Text(), "1.500") << "the text before the chord is kept";
    delete field;
  }
}

TEST_F(Field, AChordThatFindsNothingToChangeLeavesTheDigitChosen) {
  MakeVolts(1.5);
  field->SetFocus();
  QTest::keyClick(txt, Qt::Key_Right);
  QTest::keyClick(txt, Qt::Key_Backspace, Qt::ControlModifier);
  EXPECT_FALSE(IsTyping());
  EXPECT_EQ(field->Text(), "1.500");
  EXPECT_EQ(Selected(), "5");
}

TEST_F(Field, UndoWhileTypingTakesTheTypedBack) {
  MakeVolts(1.5);
  field->SetFocus();
  QTest::keyClicks(txt, "7");
  QTest::keyClick(txt, Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(field->Text(), "1.500");
  EXPECT_TRUE(IsTyping());
}

TEST_F(Field, ASwallowedKeyDropsOnlyItsOwnCharacter) {
  MakeVolts(1.5);
  field->SetFocus();
  QTest::keyClick(txt, Qt::Key_Right);
  QTest::keyClicks(txt, "7");
  EXPECT_EQ(field->Text(), "1.700");
}

TEST_F(Field, TheNumberPadTypesAsTheOtherKeysDo) {
  host.chSeparator = ',';
  MakeVolts(1.5);
  field->SetFocus();
  QTest::keyClick(txt, Qt::Key_A, Qt::ControlModifier);
  QTest::sendKeyEvent(QTest::Click, txt, Qt::Key_7, "7", Qt::KeypadModifier);
  QTest::sendKeyEvent(QTest::Click, txt, Qt::Key_Period, ".", Qt::KeypadModifier);
  QTest::sendKeyEvent(QTest::Click, txt, Qt::Key_2, "2", Qt::KeypadModifier);
  EXPECT_EQ(field->Text(), "7,2");
  QTest::sendKeyEvent(QTest::Click, txt, Qt::Key_Enter, "\r", Qt::KeypadModifier);
  EXPECT_EQ(field->Value(), 7.2);
}

struct InDialog : Field {
  QDialog dialog;
  QLineEdit *text = nullptr;
  EngrSpin *spinField = nullptr;

  void SetUp() override {
    spinField = new EngrSpin(&dialog);
    spinField->SetBaseUnit("V");
    spinField->SetValue(1.5);
    text = spinField->findChild<QLineEdit *>("txtNumber");
    dialog.open();
    dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    spinField->SetFocus();
    ASSERT_TRUE(text->hasFocus());
  }
};

TEST_F(InDialog, EscapeWhileTypingGivesUpTheEntryAndLeavesTheDialogOpen) {
  QTest::keyClicks(text, "7");
  QTest::keyClick(text, Qt::Key_Escape);
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_EQ(spinField->Text(), "1.500");
  EXPECT_EQ(host.intBeeps, 1);
}

TEST_F(InDialog, EscapeAtRestIsTheDialogs) {
  QTest::keyClick(text, Qt::Key_Escape);
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(host.intBeeps, 0);
}

TEST_F(InDialog, EscapeWhileTypingIsNotTakenByAShortcutOfTheHost) {
  int intTaken = 0;
  QShortcut shortcut(QKeySequence(Qt::Key_Escape), &dialog);
  QObject::connect(&shortcut, &QShortcut::activated, &dialog, [&] { ++intTaken; });
  QTest::keyClicks(text, "7");
  QTest::keyClick(text, Qt::Key_Escape);
  EXPECT_EQ(intTaken, 0);
  EXPECT_EQ(spinField->Text(), "1.500");
  QTest::keyClick(text, Qt::Key_Escape);
  EXPECT_EQ(intTaken, 1);
}

TEST_F(InDialog, EnterTakesTheEntryFirstAndPressesTheDefaultButtonAtRest) {
  QPushButton button("Ok", &dialog);
  button.setDefault(true);
  int intClicks = 0;
  QObject::connect(&button, &QPushButton::clicked, &dialog, [&] { ++intClicks; });
  button.show();
  QTest::keyClicks(text, "7");
  QTest::keyClick(text, Qt::Key_Return);
  EXPECT_EQ(spinField->Value(), 7.5);
  EXPECT_EQ(intClicks, 0);
  QTest::keyClick(text, Qt::Key_Return);
  EXPECT_EQ(intClicks, 1);
  spinField->SetValueArray("1;2;5");
  QTest::keyClick(text, Qt::Key_Return);
  EXPECT_EQ(intClicks, 2) << "a field with a list of values is at rest all the time";
}

TEST_F(Field, AnEntryIsTakenBeforeTheClickOfAButtonThatTookTheFocus) {
  MakeVolts(100e-9);
  QPushButton upload("&Upload", &form);
  upload.show();
  Double dblSent = 0;
  QObject::connect(&upload, &QPushButton::clicked, &form, [&] { dblSent = field->Value(); });
  field->SetFocus();
  QTest::keyClick(txt, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(txt, "60n");
  upload.setFocus(Qt::ShortcutFocusReason);
  upload.click();
  EXPECT_EQ(dblSent, 60e-9);
  EXPECT_FALSE(IsTyping());
}

TEST_F(Field, AnEntryThatWaitedInAnotherWindowIsTakenWhenTheFocusWentElsewhereMeanwhile) {
  MakeVolts(1.5);
  QLineEdit other(&form);
  other.show();
  field->SetFocus();
  QTest::keyClick(txt, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(txt, "7");
  QWidget box;
  box.show();
  box.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&box));
  EXPECT_TRUE(IsTyping()) << "a look at another window ends no entry";
  other.setFocus();
  form.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
  EXPECT_FALSE(IsTyping());
  EXPECT_EQ(field->Value(), 7);
}

TEST_F(Field, AnEntryThatDoesNotConvertIsReportedWhenItIsLeftAndTheFieldIsAtRest) {
  MakeVolts(1.5);
  field->SetFocus();
  QTest::keyClick(txt, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(txt, "3.0.5uV");
  form.setFocus();
  EXPECT_EQ(host.intBoxes, 1);
  EXPECT_EQ(field->Text(), "1.500");
  EXPECT_FALSE(IsTyping());
}

}  // namespace
}  // namespace tarvik
