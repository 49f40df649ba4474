#pragma once

#include <QMenu>
#include <QPointer>

class QAction;
class QMenuBar;

namespace tarvik {

class TarvikGUI;

/// Undo, redo and the history of the panel that it follows.
class EditMenu : public QMenu {
  Q_OBJECT

 public:
  explicit EditMenu(QMenuBar *bar);

  /// From now on this panel's steps are undone.
  void Follow(TarvikGUI &panel);

 private:
  void Show();

  QPointer<TarvikGUI> m_panel;
  QAction *m_actUndo;
  QAction *m_actRedo;
};

}  // namespace tarvik
