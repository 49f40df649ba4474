#include <QApplication>
#include <cstdio>
#include <iostream>

#include "Commands.h"
#include "support/RunTimeError.h"

using namespace tarvik;
using namespace tarvik::conformance;

namespace {

Json ErrorOf(const RunTimeError &error) {
  if (error.Number() != ErrFieldProperty || error.Source() != "EngrSpin.ctl") return {{"kind", "run"}};
  char number[16];
  std::snprintf(number, sizeof number, "%08X", static_cast<unsigned>(error.Number()));
  return {{"kind", "field"}, {"number", number}, {"source", error.Source()}, {"description", error.Description()}};
}

Json Answer(Session &session, const std::string &strLine) {
  session.out = Json::array();
  Json error, result;
  try {
    result = Execute(session, strLine);
  } catch (const RunTimeError &failure) {
    error = ErrorOf(failure);
  } catch (const std::exception &failure) {
    error = {{"kind", "protocol"}, {"text", failure.what()}};
  }
  return {{"err", error}, {"out", session.out}, {"res", result}, {"st", session.State()}};
}

}  // namespace

int main(int argc, char **argv) {
  QApplication application(argc, argv);
  Session session;
  session.runHookCommand = [&](const std::string &strCommand) { Execute(session, strCommand); };
  std::string strLine;
  while (std::getline(std::cin, strLine)) {
    if (strLine.empty() || strLine.front() == '#') continue;
    if (strLine == "quit") break;
    std::cout << Answer(session, strLine).dump(-1, ' ', false, Json::error_handler_t::replace) << std::endl;
  }
  return 0;
}
