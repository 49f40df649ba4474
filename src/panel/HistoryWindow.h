#pragma once

#include <QDialog>

class QUndoStack;

namespace tarvik {

/// Lists the steps of a history; the one that is clicked is the one that the panel goes back or forth to.
class HistoryWindow : public QDialog {
 public:
  HistoryWindow(QUndoStack &history, QWidget *parent);
};

}  // namespace tarvik
