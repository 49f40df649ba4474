#include <QDialog>
#include <QTimer>
#include <QTimerEvent>

#include "FieldFixture.h"

namespace tarvik::test {
namespace {

/// A field whose spin button is held. The test delivers the timer's events, so that no time passes.
struct HeldButton : Field {
  void Hold(int intDirection) {
    timer = spin->findChild<QTimer *>();
    ASSERT_NE(timer, nullptr);
    QTest::mousePress(spin, Qt::LeftButton, {}, Button(intDirection));
  }
  void Release(int intDirection) { QTest::mouseRelease(spin, Qt::LeftButton, {}, Button(intDirection)); }
  QPoint Button(int intDirection) const { return {3, intDirection > 0 ? 3 : spin->height() - 3}; }
  /// The timer runs out so many times. It does not if it was stopped.
  void TimeOut(int intCount = 1) {
    for (int i = 0; i < intCount && timer->isActive(); ++i) {
      QTimerEvent event(timer->timerId());
      QCoreApplication::sendEvent(timer, &event);
    }
  }

  QTimer *timer = nullptr;
};

TEST_F(HeldButton, ItStepsAtOnceThenAfter400MillisecondsAndThenEvery60) {
  MakeVolts(2);
  Hold(1);
  EXPECT_EQ(field->Value(), 3);
  EXPECT_TRUE(timer->isActive());
  EXPECT_EQ(timer->interval(), 400);
  for (int i = 1; i <= 5; ++i) {
    TimeOut();
    EXPECT_EQ(field->Value(), 3 + i);
    EXPECT_EQ(timer->interval(), 60);
  }
  EXPECT_EQ(intUpdates, 6);
  Release(1);
  EXPECT_FALSE(timer->isActive());

  Hold(-1);
  EXPECT_EQ(field->Value(), 7);
  EXPECT_EQ(timer->interval(), 400) << "the next press waits again";
  TimeOut(2);
  EXPECT_EQ(field->Value(), 5);
  Release(-1);
}

TEST_F(HeldButton, ItPausesWhileThePointerIsElsewhere) {
  MakeVolts(2);
  Hold(1);
  QTest::mouseMove(spin, Button(-1));
  TimeOut(3);
  EXPECT_EQ(field->Value(), 3);
  QTest::mouseMove(spin, Button(1));
  TimeOut(3);
  EXPECT_EQ(field->Value(), 6);
  Release(1);
}

TEST_F(HeldButton, ItEndsWhenItsFieldIsHidden) {
  MakeVolts(2);
  Hold(1);
  field->hide();
  TimeOut(3);
  EXPECT_EQ(field->Value(), 3);
  field->show();
  TimeOut(3);
  EXPECT_EQ(field->Value(), 3);
}

TEST_F(HeldButton, ItEndsWhenItsFieldIsLockedOrDisabled) {
  MakeVolts(2);
  Hold(1);
  field->LockControl(True, False);
  field->LockControl(False, False);
  TimeOut(3);
  EXPECT_EQ(field->Value(), 3);
  Hold(1);
  field->SetEnabled(False);
  field->SetEnabled(True);
  TimeOut(3);
  EXPECT_EQ(field->Value(), 4);
}

// The box takes the mouse, so the button never hears of the release.
TEST_F(HeldButton, ItEndsUnderABoxAndDoesNotGoOnBehindIt) {
  MakeVolts(2);
  QDialog box(&form);
  field->AfterUpdate.Connect([&] {
    if (field->Value() != 4) return;
    QMetaObject::invokeMethod(
        &box,
        [&] {
          TimeOut(3);
          EXPECT_EQ(field->Value(), 4);
          box.accept();
        },
        Qt::QueuedConnection);
    box.exec();
  });
  Hold(1);
  TimeOut();
  EXPECT_EQ(field->Value(), 4);
  TimeOut(3);
  EXPECT_EQ(field->Value(), 4);
  EXPECT_FALSE(timer->isActive());
}

TEST_F(HeldButton, ItGoesOnInABoxThatTheFieldStandsIn) {
  MakeVolts(2);
  QDialog box;
  field->setParent(&box);
  box.setModal(true);
  box.show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&box));
  Hold(1);
  TimeOut(3);
  EXPECT_EQ(field->Value(), 6);
  Release(1);
  field->setParent(&form);
}

}  // namespace
}  // namespace tarvik::test
