#pragma once

#include <QObject>
#include <utility>

#include "platform/InputBlock.h"
#include "platform/ScopedFlag.h"
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

}  // namespace tarvik
