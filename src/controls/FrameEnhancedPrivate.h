#pragma once

#include <QGroupBox>
#include <vector>

#include "controls/FrameEnhanced.h"
#include "platform/PropertyTable.h"

namespace tarvik {

/// Implementation of FrameEnhanced.
class TARVIK_HIDDEN FrameEnhanced::Private {
 public:
  explicit Private(FrameEnhanced &frame);
  Private(const Private &) = delete;
  Private &operator=(const Private &) = delete;

  static const Private &Of(const FrameEnhanced &frame) { return *frame.m; }
  static const PropertyTable &Properties();

  /// All controls in the frame, and all other widgets of a form as controls.
  std::vector<Control *> ContainedControls() const;
  bool Choose(const Variant &vValue);
  void ShowBorder();
  void KeepContentsWithin();

  FrameEnhanced &frame;
  QGroupBox *const fra;
  Boolean fEnabled = False;
  Long lngAppearance = 1;
  Long lngBorderStyle = 1;
};

}  // namespace tarvik
