#pragma once

#include <QMainWindow>

namespace tarvik {

class TarvikGUI;

/// A host as any other: a window with the control on it, a menu, and a memory of its place on the screen.
class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  MainWindow();

  TarvikGUI &Panel() const { return *m_panel; }
  void ShowAbout();

 protected:
  void closeEvent(QCloseEvent *event) override;

 private:
  void MakeMenus();
  void RestorePlace();

  TarvikGUI *m_panel;
};

}  // namespace tarvik
