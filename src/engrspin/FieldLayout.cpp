#include "engrspin/FieldLayout.h"

namespace tarvik {

namespace {

constexpr Single MinHeight = 300, MaxHeight = 1000, MaxWidth = 5000, DesignWidth = 2000;
constexpr Single LabelTop = 50, UnitsGap = 40, SpinGap = 10, CaptionGap = 100;
/// Room that the rest of the field needs beside the unit.
constexpr Single RoomBesideUnits = 1000;

}  // namespace

void FieldPart::Move(Single sngLeft, Single sngTop, Single sngWidth, Single sngHeight) {
  if (!(sngWidth >= 0 && sngHeight >= 0)) return;
  place = {sngLeft, sngTop, sngWidth, sngHeight};
  fMoved = true;
}

void FieldLayout::HoldSize(bool fUserMode) {
  // What a designer drags far out of shape comes back to the usual size.
  if (!fUserMode && !(sngHeight < MaxHeight && sngWidth < MaxWidth)) {
    sngHeight = MinHeight;
    sngWidth = DesignWidth;
  }
  const Single sngMinWidth = lblUnits.place.sngWidth + RoomBesideUnits;
  if (sngHeight > MaxHeight) sngHeight = MaxHeight;
  if (sngHeight < MinHeight) sngHeight = MinHeight;
  if (sngWidth > MaxWidth) sngWidth = MaxWidth;
  if (sngWidth < sngMinWidth) sngWidth = sngMinWidth;
}

void FieldLayout::Arrange(bool fUserMode) {
  HoldSize(fUserMode);
  Single x = sngWidth;
  if (lblUnits.fVisible) {
    const Single sngUnits = lblUnits.place.sngWidth;
    lblUnits.Move(sngWidth - sngUnits, LabelTop, sngUnits, sngHeight - LabelTop);
    x = lblUnits.place.sngLeft - UnitsGap;
  }
  if (fSpinVisible) {
    const Single sngSpin = spinCtl.place.sngWidth;
    spinCtl.Move(x - sngSpin, 0, sngSpin, sngHeight);
    x = spinCtl.place.sngLeft - SpinGap;
  }
  if (lblCaption.fVisible) {
    const Single sngCaption = lblCaption.place.sngWidth;
    txtNumber.Move(sngCaption + CaptionGap, 0, x - sngCaption - CaptionGap, sngHeight);
    lblCaption.Move(0, LabelTop, sngCaption, sngHeight - LabelTop);
  } else {
    txtNumber.Move(0, 0, x, sngHeight);
  }
  sngTextBoxWidth = txtNumber.place.sngWidth + SpinGap + spinCtl.place.sngWidth;
}

}  // namespace tarvik
