#include "bitpattern/HScrollBar.h"

#include <QFocusEvent>
#include <limits>

#include "platform/ControlEvent.h"

namespace tarvik {

HScrollBar::HScrollBar(QWidget *parent) : WidgetControl(Qt::Horizontal, parent) {
  setRange(0, std::numeric_limits<Integer>::max());
  // Not in the tab order: the editor moves the focus on to the picture.
  setFocusPolicy(Qt::ClickFocus);
  connect(this, &QScrollBar::valueChanged, this, [this] {
    if (!m_fProgramChange) RunUserEvent(*this, "Change", [this] { Change.Raise(); });
  });
}

/// Exceptions must not pass through Qt's signals, so a change by the program raises Change directly.
template <class Write>
void HScrollBar::ByProgram(Write write) {
  const int intBefore = value();
  {
    const ScopedFlag byProgram(*this, m_fProgramChange);
    write();
  }
  if (value() != intBefore) Change.Raise();
}

void HScrollBar::Move(const TwipsRect &place) {
  m_place = place;
  setGeometry(TwipsToPixels(*parentWidget(), place));
}

void HScrollBar::SetMin(Integer intMin) {
  ByProgram([&] { setMinimum(intMin); });
}

void HScrollBar::SetMax(Integer intMax) {
  ByProgram([&] { setMaximum(intMax); });
}

void HScrollBar::SetValue(Integer intValue) {
  ByProgram([&] { setValue(intValue); });
}

void HScrollBar::focusInEvent(QFocusEvent *event) {
  QScrollBar::focusInEvent(event);
  RunFocusEvent(*this, "GotFocus", [this] { GotFocus.Raise(); });
}

}  // namespace tarvik
