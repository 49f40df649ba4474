#include "panel/HistoryWindow.h"

#include <QDialogButtonBox>
#include <QUndoStack>
#include <QUndoView>
#include <QVBoxLayout>

namespace tarvik {

HistoryWindow::HistoryWindow(QUndoStack &history, QWidget *parent) : QDialog(parent) {
  setObjectName(QStringLiteral("HistoryWindow"));
  setWindowTitle(QStringLiteral("History"));
  setAttribute(Qt::WA_DeleteOnClose);

  auto *view = new QUndoView(&history, this);
  view->setObjectName(QStringLiteral("lstHistory"));
  view->setAccessibleName(QStringLiteral("History"));
  view->setToolTip(QStringLiteral("Go back or forth to the step that you click"));
  view->setEmptyLabel(QStringLiteral("Before the first step"));

  auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
  auto *rows = new QVBoxLayout(this);
  rows->addWidget(view);
  rows->addWidget(buttons);
  const int intLine = fontMetrics().height();
  resize(28 * intLine, 24 * intLine);
}

}  // namespace tarvik
