#include <QApplication>

#include "FirstFrame.h"
#include "panel/TarvikGUI.h"
#include "platform/ListView.h"

int main(int argc, char *argv[]) {
  QApplication app(argc, argv);
  tarvik::TarvikGUI panel;
  panel.resize(panel.sizeHint());
  const auto *list = panel.findChild<tarvik::ListView *>(QStringLiteral("lvwInstruments"));
  // A frame counts once it shows the instruments.
  const FirstFrame frame(panel, [list] { return list->Count() > 0; });
  panel.show();
  return QApplication::exec();
}
