#include "MainWindow.h"

#include <QApplication>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QScrollArea>
#include <QSettings>

#include "panel/TarvikGUI.h"

namespace tarvik {

namespace {
constexpr const char *PlaceKey = "Window/Geometry";
}

MainWindow::MainWindow() : m_panel(new TarvikGUI) {
  setObjectName(QStringLiteral("MainWindow"));
  setWindowTitle(QApplication::applicationName());
  // On a screen smaller than the panel the window scrolls instead of cutting it off.
  auto *area = new QScrollArea(this);
  area->setFrameShape(QFrame::NoFrame);
  area->setWidget(m_panel);
  area->setWidgetResizable(true);
  area->setFocusPolicy(Qt::NoFocus);
  setCentralWidget(area);
  MakeMenus();
  const QSize size = m_panel->sizeHint() + QSize(2, 2 + menuBar()->sizeHint().height());
  resize(size.boundedTo(screen()->availableSize()));
  RestorePlace();
}

void MainWindow::MakeMenus() {
  QMenu *file = menuBar()->addMenu(tr("&File"));
  QAction *quit = file->addAction(tr("&Quit"), QKeySequence::Quit, this, &QWidget::close);
  quit->setObjectName(QStringLiteral("actionQuit"));
  QMenu *help = menuBar()->addMenu(tr("&Help"));
  QAction *about = help->addAction(tr("&About TarvikVI"), this, &MainWindow::ShowAbout);
  about->setObjectName(QStringLiteral("actionAbout"));
}

void MainWindow::ShowAbout() {
  QMessageBox box(this);
  box.setObjectName(QStringLiteral("AboutBox"));
  box.setWindowTitle(tr("About TarvikVI"));
  box.setIconPixmap(windowIcon().pixmap(64, 64));
  box.setText(tr("<b>TarvikVI %1</b><p>Front panel for pulse generators with one or two channels.</p>")
                  .arg(QApplication::applicationVersion()));
  box.setInformativeText(
      tr("Toolkit: Qt %1 (built with %2)\nPlatform: %3")
          .arg(QString::fromLatin1(qVersion()), QStringLiteral(QT_VERSION_STR), QSysInfo::prettyProductName()));
  box.exec();
}

void MainWindow::RestorePlace() {
  const QSettings settings;
  if (const QByteArray place = settings.value(PlaceKey).toByteArray(); !place.isEmpty()) restoreGeometry(place);
}

void MainWindow::closeEvent(QCloseEvent *event) {
  QSettings().setValue(PlaceKey, saveGeometry());
  QMainWindow::closeEvent(event);
}

}  // namespace tarvik
