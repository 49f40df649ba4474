#include <QApplication>

#include "Commands.h"

int main(int argc, char **argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  tarvik::test::Commands commands;
  return tarvik::test::ServeLines([&](const std::string &strLine) { return commands.Answer(strLine); });
}
