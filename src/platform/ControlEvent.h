#pragma once

#include <QObject>
#include <QPointer>
#include <utility>

#include "platform/InputBlock.h"
#include "platform/WidgetControl.h"
#include "support/EventBoundary.h"

namespace tarvik {

/// RunUserEvent of a control, by its object name, for events that follow the focus. They are raised while the control's
/// input is blocked, too.
template <class Procedure>
bool RunFocusEvent(const QObject &control, const char *strEvent, Procedure &&procedure) {
  return RunUserEvent(ObjectName(control), strEvent, std::forward<Procedure>(procedure), &control);
}

/// RunUserEvent of a control, by its object name; does nothing while the control's input is blocked.
template <class Procedure>
bool RunUserEvent(const QObject &control, const char *strEvent, Procedure &&procedure) {
  return !InputBlock::Covers(control) && RunFocusEvent(control, strEvent, std::forward<Procedure>(procedure));
}

/// Sets a flag while a handler runs and restores it on every exit, unless the control that owns the flag has been
/// deleted meanwhile.
template <class Flag>
class EntryGuard {
 public:
  EntryGuard(QObject &control, Flag &fInside) : m_control(&control), m_fInside(fInside), m_fBefore(fInside) {
    m_fInside = Flag(true);
  }
  ~EntryGuard() {
    if (m_control) m_fInside = m_fBefore;
  }
  EntryGuard(const EntryGuard &) = delete;
  EntryGuard &operator=(const EntryGuard &) = delete;

 private:
  const QPointer<QObject> m_control;
  Flag &m_fInside;
  const Flag m_fBefore;
};

}  // namespace tarvik
