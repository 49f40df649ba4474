#include <iostream>

#include "Arguments.h"
#include "common/Failure.h"
#include "support/RunTimeError.h"

namespace {

int Complain(const std::string &strText, int intExit) {
  std::cerr << "tarvik-scpi: " << strText << "\n";
  return intExit;
}

}  // namespace

int main(int argc, char *argv[]) {
  using namespace tarvik;
  const scpi::Arguments arguments = scpi::ReadArguments(argc, argv);
  if (!arguments.command) return arguments.intExit;
  int intExit = scpi::eExitDone;
  try {
    intExit = arguments.command(arguments);
  } catch (const driver::Failure &failure) {
    intExit = Complain(failure.what(), scpi::eExitNoConnection);
  } catch (const RunTimeError &error) {
    intExit =
        Complain(error.Description(), error.Number() == ErrInvalidPropertyValue ? scpi::eExitUsage : scpi::eExitFile);
  }
  std::cout.flush();
  if (!std::cout && intExit == scpi::eExitDone) return Complain("the output cannot be written", scpi::eExitFile);
  return intExit;
}
