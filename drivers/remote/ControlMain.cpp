#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "remote/ControlSocket.h"

namespace {

constexpr const char *DefaultSocket = "/run/tarvikvi/control";
constexpr const char *Help =
    "Asks the driver server of this machine what its clients do, or ends one.\n"
    "Usage: tarvik-driver-server-ctl [--control SOCKET] sessions | holders | end NUMBER\n"
    "  sessions     number, name, address and begin of each session\n"
    "  holders      number of the session, instrument and holder of each instrument that is open\n"
    "  end NUMBER   ends a session; what it left open is closed\n"
    "  --control SOCKET  the server's socket (default: /run/tarvikvi/control)\n";

int Run(std::vector<std::string> arrWords) {
  std::string strSocket = DefaultSocket, strCommand;
  if (arrWords.size() >= 2 && arrWords[0] == "--control") {
    strSocket = arrWords[1];
    arrWords.erase(arrWords.begin(), arrWords.begin() + 2);
  }
  const bool fHelp = arrWords.size() == 1 && arrWords[0] == "--help";
  if (fHelp || arrWords.empty()) {
    (fHelp ? std::cout : std::cerr) << Help;
    return fHelp ? EXIT_SUCCESS : EXIT_FAILURE;
  }
  for (const std::string &strWord : arrWords) strCommand += (strCommand.empty() ? "" : " ") + strWord;
  const std::string strAnswer = tarvik::remote::ControlSocket::Ask(strSocket, strCommand);
  const bool fFailed = strAnswer.starts_with("error: ");
  (fFailed ? std::cerr << "tarvik-driver-server-ctl: " : std::cout) << strAnswer;
  return fFailed ? EXIT_FAILURE : EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char **argv) {
  try {
    return Run({argv + 1, argv + argc});
  } catch (const std::exception &error) {
    std::cerr << "tarvik-driver-server-ctl: " << error.what() << std::endl;
    return EXIT_FAILURE;
  }
}
