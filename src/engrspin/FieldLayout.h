#pragma once

#include "support/Types.h"

namespace tarvik {

/// A place within the field, in twips.
struct FieldPlace {
  Single sngLeft = 0;
  Single sngTop = 0;
  Single sngWidth = 0;
  Single sngHeight = 0;
  bool operator==(const FieldPlace &) const = default;
};

/// One inner control: where it stands, and whether it is shown.
struct FieldPart {
  FieldPlace place;
  bool fVisible = true;
  bool fMoved = false;  ///< a layout has moved it at least once

  /// A size below 0, or one that is no number, leaves the part where it is.
  void Move(Single sngLeft, Single sngTop, Single sngWidth, Single sngHeight);
};

/// Geometry of a field: caption, text box, spin button and unit from left to right. All in twips.
struct FieldLayout {
  Single sngWidth = 3630;
  Single sngHeight = 315;
  FieldPart txtNumber{{840, 0, 1815, 300}};
  FieldPart spinCtl{{0, 0, 240, 300}};
  FieldPart lblCaption{{0, 50, 740, 255}};
  FieldPart lblUnits{{0, 50, 500, 255}};
  /// Whether room for the spin button is wanted.
  bool fSpinVisible = true;
  /// Width of text box and spin button together, counted even when the button is hidden.
  Single sngTextBoxWidth = 0;

  /// Holds the size to its bounds and places the parts. At design time what was dragged far out of shape comes back to
  /// a usual size.
  void Arrange(bool fDesignTime);

  /// Width of a field whose text box has this width, held to the bounds of a field.
  Single WidthAround(Single sngTextBox) const;
  static constexpr Single MinHeight = 300, UsualHeight = 315, UsualTextBox = 1815;

 private:
  void HoldSize(bool fDesignTime);
  Single MinWidth() const;
};

}  // namespace tarvik
