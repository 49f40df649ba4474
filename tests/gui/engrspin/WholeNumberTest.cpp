#include <QDropEvent>
#include <QInputMethodEvent>
#include <QMenu>
#include <QMimeData>

#include "FieldFixture.h"

namespace tarvik {
namespace {

using test::Field;

struct WholeNumber : Field {
  QPoint OnDigit(int intPlace) {
    const auto left = [this](int intCharacter) {
      txt->setCursorPosition(intCharacter);
      return txt->inputMethodQuery(Qt::ImCursorRectangle).toRectF().center().x();
    };
    const qreal sum = left(intPlace) + left(intPlace + 1);
    return {qRound(sum / 2), txt->height() / 2};
  }
  void Put(const QString &strText) { QApplication::clipboard()->setText(strText); }
  void Drop(const QString &strText, QWidget *target) {
    QMimeData data;
    data.setText(strText);
    const QPoint where(4, 4);
    QDragEnterEvent enter(where, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QApplication::sendEvent(target, &enter);
    fDropTaken = enter.isAccepted();
    if (!fDropTaken) return;
    QDropEvent drop(where, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &drop);
  }
  void Compose(const QString &strText) {
    QInputMethodEvent event;
    event.setCommitString(strText);
    QApplication::sendEvent(txt, &event);
  }
  /// The entry of the context menu whose text begins so; null where the menu has none that could be chosen.
  QAction *OpenMenuAt(const QString &strBegin) {
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(3, 3), txt->mapToGlobal(QPoint(3, 3)));
    QApplication::sendEvent(txt, &event);
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    if (!menu) return nullptr;
    for (QAction *action : menu->actions())
      if (action->text().startsWith(strBegin) && action->isEnabled()) return action;
    menu->close();
    return nullptr;
  }
  void Choose(QAction *action) {
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    ASSERT_TRUE(menu);
    menu->setActiveAction(action);
    QTest::keyClick(menu, Qt::Key_Return);
  }
  bool fDropTaken = false;
};

TEST_F(WholeNumber, AClickPicksTheDigitOnBothItsHalves) {
  MakeVolts(1.234);
  QTest::mouseClick(txt, Qt::LeftButton, {}, OnDigit(3) + QPoint(2, 0));
  EXPECT_EQ(Selected(), "3");
  QTest::mouseClick(txt, Qt::LeftButton, {}, OnDigit(0));
  EXPECT_EQ(Selected(), "1");
  QTest::mouseClick(txt, Qt::LeftButton, {}, OnDigit(3) - QPoint(2, 0));
  EXPECT_EQ(Selected(), "3");
  QTest::keyClick(txt, Qt::Key_Up);
  EXPECT_EQ(field->Text(), "1.244");
}

TEST_F(WholeNumber, ADoubleClickSelectsItAndWhatIsTypedReplacesIt) {
  MakeVolts(1.234);
  const QPoint where = OnDigit(2);
  QTest::mouseClick(txt, Qt::LeftButton, {}, where);
  QTest::mouseDClick(txt, Qt::LeftButton, {}, where);
  EXPECT_EQ(Selected(), "1.234");
  QTest::keyClicks(txt, "2.5");
  QTest::keyClick(txt, Qt::Key_Return);
  EXPECT_EQ(field->Text(), "2.500");
}

TEST_F(WholeNumber, AHandThatTremblesDoesNotUndoADoubleClick) {
  MakeVolts(1.234);
  const QPoint where = OnDigit(3);
  QTest::mousePress(txt, Qt::LeftButton, {}, where);
  QTest::mouseRelease(txt, Qt::LeftButton, {}, where);
  QMouseEvent twice(QEvent::MouseButtonDblClick, where, txt->mapToGlobal(where), Qt::LeftButton, Qt::LeftButton, {});
  QApplication::sendEvent(txt, &twice);
  const QPoint beside = where + QPoint(1, 0);
  QMouseEvent moved(QEvent::MouseMove, beside, txt->mapToGlobal(beside), Qt::NoButton, Qt::LeftButton, {});
  QApplication::sendEvent(txt, &moved);
  QTest::mouseRelease(txt, Qt::LeftButton, {}, beside);
  EXPECT_EQ(Selected(), "1.234");
}

TEST_F(WholeNumber, ATripleClickSelectsIt) {
  MakeVolts(1.234);
  const QPoint where = OnDigit(2);
  QTest::mouseClick(txt, Qt::LeftButton, {}, where);
  QTest::mouseDClick(txt, Qt::LeftButton, {}, where);
  QTest::mousePress(txt, Qt::LeftButton, {}, where);
  QTest::mouseRelease(txt, Qt::LeftButton, {}, where);
  EXPECT_EQ(Selected(), "1.234");
}

TEST_F(WholeNumber, ADoubleClickSelectsItAlsoWhileTyping) {
  MakeVolts(1.234);
  field->SetFocus();
  QTest::keyClick(txt, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(txt, "3.05 uV");
  QTest::mouseDClick(txt, Qt::LeftButton, {}, QPoint(3, 5));
  EXPECT_EQ(Selected(), "3.05 uV");
}

TEST_F(WholeNumber, ControlAAndPasteReplaceIt) {
  MakeVolts(1.234);
  field->SetFocus();
  Put("3.5");
  QTest::keyClick(txt, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(txt, Qt::Key_V, Qt::ControlModifier);
  EXPECT_TRUE(IsTyping());
  QTest::keyClick(txt, Qt::Key_Return);
  EXPECT_EQ(field->Value(), 3.5);
}

TEST_F(WholeNumber, APasteAtRestReplacesItByBothChords) {
  const std::pair<Qt::Key, Qt::KeyboardModifier> chords[] = {{Qt::Key_V, Qt::ControlModifier},
                                                             {Qt::Key_Insert, Qt::ShiftModifier}};
  for (const auto &[key, modifier] : chords) {
    MakeVolts(100);
    field->SetFocus();
    Put("250m");
    QTest::keyClick(txt, key, modifier);
    EXPECT_TRUE(IsTyping());
    EXPECT_EQ(field->Text(), "250m");
    QTest::keyClick(txt, Qt::Key_Return);
    EXPECT_EQ(field->Value(), 0.25);
    delete field;
  }
}

TEST_F(WholeNumber, EscapeTakesAPasteBack) {
  MakeVolts(100);
  field->SetFocus();
  Put("250m");
  QTest::keyClick(txt, Qt::Key_Insert, Qt::ShiftModifier);
  QTest::keyClick(txt, Qt::Key_Escape);
  EXPECT_EQ(field->Text(), "100.0");
  EXPECT_EQ(field->Value(), 100);
}

TEST_F(WholeNumber, LineBreaksAndTabsAroundPastedTextCountAsBlanks) {
  for (const char *strText : {"3.5\n", "\t3.5", "3.5\r\n", " 3.5\t", "3.5\tV", "\n3.5 V\n"}) {
    MakeVolts(1);
    field->SetFocus();
    Put(strText);
    QTest::keyClick(txt, Qt::Key_V, Qt::ControlModifier);
    QTest::keyClick(txt, Qt::Key_Return);
    EXPECT_EQ(field->Value(), 3.5) << strText;
    EXPECT_EQ(field->Text(), "3.500") << strText;
    delete field;
  }
  EXPECT_EQ(host.intBeeps, 0);
}

TEST_F(WholeNumber, APasteWhileTypingGoesWhereTheCaretIs) {
  MakeVolts(1);
  field->SetFocus();
  QTest::keyClick(txt, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(txt, "2");
  Put("5m");
  QTest::keyClick(txt, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(field->Text(), "25m");
}

TEST_F(WholeNumber, APasteOfNothingChangesNothing) {
  MakeVolts(1.5);
  field->SetFocus();
  QApplication::clipboard()->clear();
  QTest::keyClick(txt, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(field->Text(), "1.500");
  EXPECT_FALSE(IsTyping());
}

TEST_F(WholeNumber, TheMenuPastesOverIt) {
  MakeVolts(100);
  field->SetFocus();
  Put("250m");
  QAction *paste = OpenMenuAt("&Paste");
  ASSERT_TRUE(paste);
  Choose(paste);
  EXPECT_TRUE(IsTyping());
  EXPECT_EQ(field->Text(), "250m");
  QTest::keyClick(txt, Qt::Key_Return);
  EXPECT_EQ(field->Value(), 0.25);
}

TEST_F(WholeNumber, AMenuThatIsClosedAgainLeavesTheDigitChosen) {
  MakeVolts(1.234);
  field->SetFocus();
  QTest::keyClick(txt, Qt::Key_Right);
  ASSERT_TRUE(OpenMenuAt("&Copy"));
  EXPECT_EQ(Selected(), "1.234") << "what the menu would work on is shown";
  QApplication::activePopupWidget()->close();
  QTRY_COMPARE(txt->selectedText(), QString("2"));
}

TEST_F(WholeNumber, TheMenuCopiesItAndLeavesTheDigitChosen) {
  MakeVolts(1.234);
  field->SetFocus();
  QAction *copy = OpenMenuAt("&Copy");
  ASSERT_TRUE(copy);
  Choose(copy);
  EXPECT_EQ(QApplication::clipboard()->text(), "1.234");
  QTRY_COMPARE(txt->selectedText(), QString("1"));
  EXPECT_FALSE(IsTyping());
}

TEST_F(WholeNumber, APieceThatTheUserMarkedIsWhatTheMenuWorksOn) {
  MakeVolts(1.234);
  field->SetFocus();
  txt->setSelection(2, 2);
  QAction *all = OpenMenuAt("Select All");
  ASSERT_TRUE(all);
  EXPECT_EQ(Selected(), "23");
  Choose(all);
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(Selected(), "1.234");
}

TEST_F(WholeNumber, ADropReplacesItAndTakesTheFocusSoThatItCanEnd) {
  MakeVolts(100);
  Drop("250m", txt);
  EXPECT_TRUE(fDropTaken);
  EXPECT_TRUE(txt->hasFocus());
  EXPECT_TRUE(IsTyping());
  EXPECT_EQ(field->Text(), "250m");
  form.setFocus();
  EXPECT_FALSE(IsTyping());
  EXPECT_EQ(field->Value(), 0.25);
}

TEST_F(WholeNumber, ADragThatOnlyPassesLeavesTheDigitChosen) {
  MakeVolts(1.234);
  field->SetFocus();
  QMimeData data;
  data.setText("7");
  QDragEnterEvent enter(QPoint(4, 4), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(txt, &enter);
  QDragMoveEvent move(QPoint(30, 4), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(txt, &move);
  QDragLeaveEvent leave;
  QApplication::sendEvent(txt, &leave);
  EXPECT_EQ(Selected(), "1");
}

TEST_F(WholeNumber, AnInputMethodTypesInPlaceOfTheDigit) {
  MakeVolts(1.234);
  field->SetFocus();
  Compose("7");
  EXPECT_TRUE(IsTyping());
  EXPECT_EQ(field->Text(), "7.234");
  QTest::keyClick(txt, Qt::Key_Return);
  EXPECT_EQ(field->Value(), 7.234);
}

TEST_F(WholeNumber, NoWayOfPastingReachesAListALockedOrADisabledField) {
  const auto lock = [](EngrSpin &f) { f.LockControl(True, False); };
  const auto list = [](EngrSpin &f) { f.SetValueArray("1;2;5"); };
  const auto disable = [](EngrSpin &f) { f.SetEnabled(False); };
  for (const auto &prepare : {std::function<void(EngrSpin &)>(lock), std::function<void(EngrSpin &)>(list),
                              std::function<void(EngrSpin &)>(disable)}) {
    MakeVolts(1.5);
    field->SetFocus();
    prepare(*field);
    Put("7");
    QTest::keyClick(txt, Qt::Key_V, Qt::ControlModifier);
    QTest::keyClick(txt, Qt::Key_Insert, Qt::ShiftModifier);
    QTest::keyClick(txt, Qt::Key_X, Qt::ControlModifier);
    QTest::keyClick(txt, Qt::Key_Delete, Qt::ControlModifier);
    EXPECT_FALSE(OpenMenuAt("&Paste"));
    EXPECT_FALSE(OpenMenuAt("Cu&t"));
    Drop("7", txt);
    EXPECT_FALSE(fDropTaken && field->Enabled());
    Compose("7");
    EXPECT_EQ(field->Text(), "1.500");
    EXPECT_FALSE(IsTyping());
    delete field;
  }
  EXPECT_EQ(host.intBeeps, 0);
}

TEST_F(WholeNumber, AListFieldCanStillBeCopied) {
  MakeVolts(1.5);
  field->SetFocus();
  field->SetValueArray("1;2;5");
  QTest::keyClick(txt, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(txt, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), "1.500");
}

TEST_F(WholeNumber, TypingReplacesItWhereTheHostChoseThat) {
  MakeVolts(1);
  EXPECT_FALSE(field->TypingReplacesNumber());
  field->SetTypingReplacesNumber(True);
  field->SetFocus();
  EXPECT_EQ(Selected(), "1") << "at rest the digit is chosen as ever";
  QTest::keyClicks(txt, "2.5");
  EXPECT_EQ(field->Text(), "2.5");
  QTest::keyClick(txt, Qt::Key_Return);
  EXPECT_EQ(field->Value(), 2.5);
  QTest::keyClick(txt, Qt::Key_Right);
  QTest::keyClick(txt, Qt::Key_Up);
  EXPECT_EQ(field->Text(), "2.600");
  Wheel(-120);
  EXPECT_EQ(field->Text(), "2.500");
}

TEST_F(WholeNumber, ADeletedNumberAPieceThatWasMarkedAndAnInputMethodFollowTheChoice) {
  MakeVolts(1.234);
  field->SetTypingReplacesNumber(True);
  field->SetFocus();
  QTest::keyClick(txt, Qt::Key_Delete);
  EXPECT_EQ(field->Text(), "");
  QTest::keyClick(txt, Qt::Key_Escape);
  txt->setSelection(2, 2);
  QTest::keyClicks(txt, "9");
  EXPECT_EQ(field->Text(), "1.94");
  QTest::keyClick(txt, Qt::Key_Escape);
  Compose("7");
  EXPECT_EQ(field->Text(), "7");
}

TEST_F(WholeNumber, TypingReplacesItInAllFieldsOfAContainerThatChoseThat) {
  form.setProperty("TypingReplacesNumber", true);
  MakeVolts(1);
  field->SetFocus();
  QTest::keyClicks(txt, "2.5");
  EXPECT_EQ(field->Text(), "2.5");
  QTest::keyClick(txt, Qt::Key_Return);
  form.setProperty("TypingReplacesNumber", false);
  QTest::keyClicks(txt, "7");
  EXPECT_EQ(field->Text(), "7.500");
}

TEST_F(WholeNumber, TheChoiceIsAPropertyOfTheForm) {
  MakeVolts(1);
  ASSERT_TRUE(field->setProperty("TypingReplacesNumber", true));
  EXPECT_TRUE(field->TypingReplacesNumber());
  PropertyBag bag;
  field->WriteProperties(bag);
  EXPECT_EQ(bag.Written().size(), 15U) << "the stored properties stay what they were";
}

}  // namespace
}  // namespace tarvik
