#include <QApplication>
#include <iostream>
#include <string>

#include "Adapter.h"

/// Answers each line of standard input with one line of JSON on standard output.
int main(int argc, char **argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  tarvik::paneltest::Adapter adapter;
  std::string strLine;
  while (std::getline(std::cin, strLine))
    std::cout << adapter.Answer(strLine).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) << std::endl;
  return 0;
}
