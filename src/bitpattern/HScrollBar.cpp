#include "bitpattern/HScrollBar.h"

#include <QFocusEvent>
#include <limits>

#include "platform/ControlEvent.h"

namespace tarvik {

HScrollBar::HScrollBar(QWidget *parent) : WidgetControl(Qt::Horizontal, parent) {
  setRange(0, std::numeric_limits<Integer>::max());
  // The Tab key passes it by: whoever comes here is sent on at once.
  setFocusPolicy(Qt::ClickFocus);
  connect(this, &QScrollBar::valueChanged, this, [this] {
    if (!m_fProgramChange) RunUserEvent(*this, "Change", [this] { Change.Raise(); });
  });
}

/// The toolkit's signals cannot carry a failure of the handler, so a program's change is told from here.
template <class Write>
void HScrollBar::ByProgram(Write write) {
  const int intBefore = value();
  const bool fOuter = m_fProgramChange;
  m_fProgramChange = true;
  write();
  m_fProgramChange = fOuter;
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
  MaxChanging.Raise(intMax);
  ByProgram([&] { setMaximum(intMax); });
}

void HScrollBar::SetValue(Integer intValue) {
  ByProgram([&] { setValue(intValue); });
}

void HScrollBar::focusInEvent(QFocusEvent *event) {
  QScrollBar::focusInEvent(event);
  RunUserEvent(*this, "GotFocus", [this] { GotFocus.Raise(); });
}

}  // namespace tarvik
