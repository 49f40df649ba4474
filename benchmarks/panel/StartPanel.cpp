#include <QApplication>

#include "FirstFrame.h"
#include "panel/TarvikGUI.h"
#include "platform/ListView.h"

int main(int argc, char *argv[]) {
  QApplication app(argc, argv);
  tarvik::TarvikGUI panel;
  panel.resize(panel.sizeHint());
  const auto *list = panel.findChild<tarvik::ListView *>(QStringLiteral("lvwInstruments"));
  // With an argument a frame counts only once it shows the instruments.
  const bool fListed = argc > 1;
  const FirstFrame frame(panel, [list, fListed] { return !fListed || list->Count() > 0; });
  panel.show();
  return QApplication::exec();
}
