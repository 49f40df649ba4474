#include <QApplication>
#include <QLabel>
#include <QWidget>

#include "FirstFrame.h"

int main(int argc, char *argv[]) {
  QApplication app(argc, argv);
  QWidget window;
  window.resize(600, 440);
  // With an argument it shows one word, and so loads a font as every window with a text does.
  if (argc > 1) new QLabel(QString::fromLocal8Bit(argv[1]), &window);
  const FirstFrame frame(window, [] { return true; });
  window.show();
  return QApplication::exec();
}
