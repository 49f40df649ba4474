#include "FieldFixture.h"

namespace tarvik {
namespace {

using test::Field;

struct CursorAtRest : Field {
  /// Puts the cursor on the tenths, in place 2 of the text.
  void MakeOnTenths(Double dblValue) {
    MakeVolts(dblValue);
    field->SetFocus();
    QTest::keyClick(txt, Qt::Key_Right);
    ASSERT_EQ(txt->selectionStart(), 2);
  }
  void Retype(const QString &strText) {
    QTest::keyClick(txt, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(txt, strText);
  }
};

TEST_F(CursorAtRest, AfterEnterTheArrowKeysStepTheDigitThatWasChosen) {
  MakeOnTenths(1.234);
  Retype("5");
  QTest::keyClick(txt, Qt::Key_Return);
  EXPECT_EQ(txt->selectionStart(), 2);
  EXPECT_EQ(txt->selectionLength(), 1);
  QTest::keyClick(txt, Qt::Key_Up);
  EXPECT_EQ(field->Text(), "5.100");
}

TEST_F(CursorAtRest, AfterEnterTheNextCharacterReplacesTheDigitThatWasChosen) {
  MakeOnTenths(1.234);
  Retype("5");
  QTest::keyClick(txt, Qt::Key_Return);
  QTest::keyClicks(txt, "7");
  EXPECT_EQ(field->Text(), "5.700");
}

TEST_F(CursorAtRest, AfterEscapeTheDigitIsChosenAgain) {
  MakeOnTenths(1.234);
  Retype("5");
  QTest::keyClick(txt, Qt::Key_Escape);
  EXPECT_EQ(txt->selectionStart(), 2);
  EXPECT_EQ(Selected(), "2");
}

TEST_F(CursorAtRest, AfterAnEmptyEntryTheDigitIsChosenAgain) {
  MakeOnTenths(1.234);
  QTest::keyClick(txt, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(txt, Qt::Key_Delete);
  QTest::keyClick(txt, Qt::Key_Return);
  EXPECT_EQ(field->Text(), "-999500");
  EXPECT_EQ(txt->selectionStart(), 2);
  EXPECT_EQ(txt->selectionLength(), 1);
}

TEST_F(CursorAtRest, AProgramsAssignmentKeepsTheDigit) {
  MakeOnTenths(1.234);
  field->SetValue(2);
  EXPECT_EQ(txt->selectionStart(), 2);
  field->SetValue(2);
  EXPECT_EQ(txt->selectionStart(), 2);
  EXPECT_EQ(txt->selectionLength(), 1);
  QTest::keyClick(txt, Qt::Key_Up);
  EXPECT_EQ(field->Text(), "2.100");
}

TEST_F(CursorAtRest, APlaceBeyondTheTextIsItsLastCharacter) {
  MakeVolts(-1.5);
  field->SetFocus();
  QTest::keyClick(txt, Qt::Key_Left);
  ASSERT_EQ(txt->selectionStart(), 5);
  field->SetValue(1.5);
  EXPECT_EQ(field->Text(), "1.500");
  EXPECT_EQ(txt->selectionStart(), 4);
  EXPECT_EQ(txt->selectionLength(), 1);
}

TEST_F(CursorAtRest, WhatIsWrittenWithoutTheFocusSelectsNothingAndTheFocusBringsTheDigitBack) {
  MakeOnTenths(1.234);
  form.setFocus();
  field->SetValue(2);
  EXPECT_EQ(txt->cursorPosition(), 0);
  EXPECT_EQ(txt->selectionLength(), 0);
  field->SetFocus();
  EXPECT_EQ(txt->selectionStart(), 2);
  EXPECT_EQ(txt->selectionLength(), 1);
}

TEST_F(CursorAtRest, LockedListAndBlankedFieldsGetNoCursorByAWrite) {
  MakeOnTenths(1.234);
  field->LockControl(True, False);
  field->SetValue(2);
  EXPECT_EQ(txt->selectionLength(), 0);
  field->LockControl(False, False);
  EXPECT_EQ(txt->selectionStart(), 2);
  EXPECT_EQ(txt->selectionLength(), 1);
  field->LockControl(True, True);
  EXPECT_EQ(field->Text(), "----");
  EXPECT_EQ(txt->selectionLength(), 0);
  field->LockControl(False, False);
  field->SetValueArray("1;2;5");
  field->SetValue(5);
  EXPECT_EQ(field->Text(), "5.000");
  EXPECT_EQ(txt->selectionLength(), 0);
}

TEST_F(CursorAtRest, TheFirstFocusOfAWindowSelectsTheDigit) {
  QWidget window;
  EngrSpin first(&window);
  first.SetBaseUnit("V");
  first.SetValue(1.5);
  first.SetFocus();
  window.show();
  window.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  auto *text = first.findChild<QLineEdit *>("txtNumber");
  ASSERT_TRUE(text->hasFocus());
  EXPECT_EQ(text->selectedText(), "1");
  QTest::keyClick(text, Qt::Key_Up);
  EXPECT_EQ(first.Text(), "2.500");
}

TEST_F(CursorAtRest, APieceThatTheUserMarkedOutlastsALookAtAnotherWindow) {
  MakeOnTenths(1.234);
  QTest::keyClick(txt, Qt::Key_A, Qt::ControlModifier);
  QFocusEvent away(QEvent::FocusOut, Qt::ActiveWindowFocusReason), back(QEvent::FocusIn, Qt::ActiveWindowFocusReason);
  QApplication::sendEvent(txt, &away);
  QApplication::sendEvent(txt, &back);
  EXPECT_EQ(Selected(), "1.234");
}

TEST_F(CursorAtRest, AFieldThatAProgramWroteWhileItWasTypedInComesToRest) {
  MakeOnTenths(1.23456);
  QTest::keyClicks(txt, "7");
  ASSERT_TRUE(IsTyping());
  field->SetValue(4.56789);
  QApplication::processEvents();
  EXPECT_FALSE(IsTyping());
  EXPECT_EQ(txt->selectionStart(), 2);
  EXPECT_EQ(txt->selectionLength(), 1);
  intUpdates = 0;
  form.setFocus();
  EXPECT_EQ(field->Value(), 4.56789) << "nothing of the entry is left that could cut the value";
  EXPECT_EQ(intUpdates, 0);
}

TEST_F(CursorAtRest, WhoTypesOnAfterAProgramWroteIsStillTyping) {
  MakeOnTenths(1.234);
  QTest::keyClicks(txt, "7");
  field->SetValue(4.5);
  txt->selectAll();
  QTest::keyClicks(txt, "3");
  QApplication::processEvents();
  EXPECT_TRUE(IsTyping());
  QTest::keyClick(txt, Qt::Key_Return);
  EXPECT_EQ(field->Value(), 3);
}

}  // namespace
}  // namespace tarvik
