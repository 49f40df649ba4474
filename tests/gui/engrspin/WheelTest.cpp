#include "FieldFixture.h"

namespace tarvik::test {
namespace {

/// A wheel of fine resolution tells of parts of a notch, which is 120.
struct FineWheel : Field {
  FineWheel() {
    MakeVolts(5);
    field->SetFocus();
  }
};

TEST_F(FineWheel, PartsOfANotchAddUpAndTheRestIsKept) {
  Wheel(80);
  EXPECT_EQ(field->Value(), 5);
  Wheel(80);
  EXPECT_EQ(field->Value(), 6);
  Wheel(80);
  EXPECT_EQ(field->Value(), 7) << "three times 80 is two notches";
  for (int i = 0; i < 8; ++i) Wheel(-15);
  EXPECT_EQ(field->Value(), 6);
}

TEST_F(FineWheel, OneEventMayBringMoreThanItsNotches) {
  Wheel(300);
  EXPECT_EQ(field->Value(), 7);
  Wheel(60);
  EXPECT_EQ(field->Value(), 8);
  Wheel(-119);
  EXPECT_EQ(field->Value(), 8);
  Wheel(-1);
  EXPECT_EQ(field->Value(), 7);
}

TEST_F(FineWheel, ATurnBackTakesThePartBack) {
  Wheel(100);
  Wheel(-100);
  Wheel(100);
  EXPECT_EQ(field->Value(), 5);
  Wheel(20);
  EXPECT_EQ(field->Value(), 6);
}

TEST_F(FineWheel, ATurnWithoutTheFocusForgetsThePart) {
  Wheel(80);
  form.setFocus();
  EXPECT_FALSE(Wheel(80));
  field->SetFocus();
  Wheel(80);
  EXPECT_EQ(field->Value(), 5);
  Wheel(40);
  EXPECT_EQ(field->Value(), 6);
}

TEST_F(FineWheel, ATurnOfALockedFieldForgetsThePart) {
  Wheel(80);
  field->LockControl(True, False);
  EXPECT_FALSE(Wheel(80));
  field->LockControl(False, False);
  Wheel(80);
  EXPECT_EQ(field->Value(), 5);
}

}  // namespace
}  // namespace tarvik::test
