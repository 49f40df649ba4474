#include <QApplication>
#include <QWidget>

#include "FirstFrame.h"

int main(int argc, char *argv[]) {
  QApplication app(argc, argv);
  QWidget window;
  window.resize(600, 440);
  const FirstFrame frame(window, [] { return true; });
  window.show();
  return QApplication::exec();
}
