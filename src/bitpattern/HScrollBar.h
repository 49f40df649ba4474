#pragma once

#include <QScrollBar>

#include "platform/Twips.h"
#include "platform/WidgetControl.h"
#include "support/Event.h"

namespace tarvik {

/// A horizontal scroll bar of 16-bit numbers. It holds its value within its bounds and raises Change whenever the
/// value really changes: by the user, by the program, or because a bound pushed it.
class HScrollBar : public WidgetControl<QScrollBar> {
  Q_OBJECT

 public:
  explicit HScrollBar(QWidget *parent = nullptr);

  Integer Min() const { return static_cast<Integer>(minimum()); }
  Integer Max() const { return static_cast<Integer>(maximum()); }
  Integer Value() const { return static_cast<Integer>(value()); }
  /// What a click beside the slider moves.
  Integer LargeChange() const { return static_cast<Integer>(pageStep()); }

  /// Place in its container, in twips.
  const TwipsRect &Place() const { return m_place; }
  void Move(const TwipsRect &place);

  void SetMin(Integer intMin);
  void SetMax(Integer intMax);
  void SetValue(Integer intValue);
  void SetLargeChange(Integer intLargeChange) { setPageStep(intLargeChange); }

  Event<> Change;
  Event<> GotFocus;

 protected:
  void focusInEvent(QFocusEvent *event) override;

 private:
  template <class Write>
  void ByProgram(Write write);

  TwipsRect m_place;
  bool m_fProgramChange = false;
};

}  // namespace tarvik
