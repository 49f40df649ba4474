#pragma once

#include <QPointer>
#include <QString>

#include "panel/Panel.h"
#include "panel/UndoHistory.h"

namespace tarvik {

/// What the panel's settings become while the object lives is one step of the history: UndoScope step(panel, "Open
/// setup bench.json"). A panel that the host has destroyed meanwhile takes none.
class TARVIK_HIDDEN UndoScope {
 public:
  UndoScope(TarvikGUI::Panel &panel, const QString &strName) : m_gui(&panel.gui), m_strName(strName) {}
  UndoScope(const UndoScope &) = delete;
  UndoScope &operator=(const UndoScope &) = delete;
  ~UndoScope() {
    if (m_gui) TarvikGUI::Panel::Of(*m_gui).undo->Take(m_strName);
  }

 private:
  const QPointer<TarvikGUI> m_gui;
  const QString m_strName;
};

}  // namespace tarvik
