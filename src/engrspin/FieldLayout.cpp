#include "engrspin/FieldLayout.h"

#include <algorithm>

namespace tarvik {

namespace {

constexpr Single MaxHeight = 1000, MaxWidth = 5000, DesignWidth = 2000;
constexpr Single LabelTop = 50, UnitsGap = 40, SpinGap = 10, CaptionGap = 100;
/// Room that the rest of the field needs beside the unit.
constexpr Single RoomBesideUnits = 1000;

}  // namespace

void FieldPart::Move(Single sngLeft, Single sngTop, Single sngWidth, Single sngHeight) {
  if (!(sngWidth >= 0 && sngHeight >= 0)) return;
  place = {sngLeft, sngTop, sngWidth, sngHeight};
  fMoved = true;
}

Single FieldLayout::MinWidth() const { return lblUnits.place.sngWidth + RoomBesideUnits; }

Single FieldLayout::WidthAround(Single sngTextBox) const {
  Single sngNeeded = sngTextBox;
  if (lblCaption.fVisible) sngNeeded += lblCaption.place.sngWidth + CaptionGap;
  if (fSpinVisible) sngNeeded += SpinGap + spinCtl.place.sngWidth;
  if (lblUnits.fVisible) sngNeeded += UnitsGap + lblUnits.place.sngWidth;
  return std::clamp(sngNeeded, MinWidth(), MaxWidth);
}

void FieldLayout::HoldSize(bool fDesignTime) {
  if (fDesignTime && !(sngHeight < MaxHeight && sngWidth < MaxWidth)) {
    sngHeight = MinHeight;
    sngWidth = DesignWidth;
  }
  const Single sngMinWidth = MinWidth();
  if (sngHeight > MaxHeight) sngHeight = MaxHeight;
  if (sngHeight < MinHeight) sngHeight = MinHeight;
  if (sngWidth > MaxWidth) sngWidth = MaxWidth;
  if (sngWidth < sngMinWidth) sngWidth = sngMinWidth;
}

void FieldLayout::Arrange(bool fDesignTime) {
  HoldSize(fDesignTime);
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
