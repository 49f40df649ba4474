// A host with the panel on its form. It has no instrument code: the panel starts when the form is shown.
#include <QApplication>
#include <QPlainTextEdit>
#include <QTimer>
#include <QTreeWidget>
#include <cstdio>

#include "ui_Bench.h"

int main(int argc, char *argv[]) {
  QApplication app(argc, argv);
  QWidget bench;
  Ui::Bench form;
  form.setupUi(&bench);
  bench.show();

  // With the name of a picture as argument the host tells what it shows, and ends.
  if (argc > 1)
    QTimer::singleShot(500, &bench, [&] {
      const auto *list = bench.findChild<QTreeWidget *>("lvwInstruments");
      std::printf("status: %s\n", qPrintable(bench.findChild<QPlainTextEdit *>("txtStatus")->toPlainText()));
      std::printf("instruments: %d\n", list->topLevelItemCount());
      app.exit(bench.grab().save(argv[1]) ? 0 : 1);
    });
  return app.exec();
}
