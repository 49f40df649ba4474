#include <iostream>

#include "Arguments.h"
#include "CtlFailure.h"
#include "CtlHost.h"
#include "automation/Activation.h"
#include "instrument/KolvenDriver.h"
#include "support/RunTimeError.h"

int main(int argc, char *argv[]) {
  using namespace tarvik;
  const Arguments arguments = ReadArguments(argc, argv);
  if (!arguments.command) return arguments.intExit;
  automation::ChooseDriver(kolven::DriverProgId, arguments.strDriver);
  int intExit = eExitDone;
  try {
    intExit = arguments.command(arguments);
  } catch (const CtlFailure &failure) {
    if (!failure.strText.empty()) Complain(failure.strText);
    intExit = failure.eExit;
  } catch (const RunTimeError &error) {
    Complain(error.Description());
    intExit = eExitRefused;
  }
  std::cout.flush();
  if (!std::cout && intExit == eExitDone) {
    Complain("the output cannot be written");
    intExit = eExitFile;
  }
  return intExit;
}
