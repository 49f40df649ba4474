#pragma once

#include <sys/wait.h>

#include <cstdio>
#include <stdexcept>
#include <string>
#include <utility>

namespace tarvik::test {

/// What a command of the shell says on both outputs, and its exit status; -1 when a signal ended it.
inline std::pair<std::string, int> SaidBy(const std::string &strCommand) {
  FILE *pipe = popen((strCommand + " 2>&1").c_str(), "r");
  if (!pipe) throw std::runtime_error("the program does not start");
  std::string strSaid;
  for (int ch = 0; (ch = std::fgetc(pipe)) != EOF;) strSaid += static_cast<char>(ch);
  const int intStatus = pclose(pipe);
  return {strSaid, WIFEXITED(intStatus) ? WEXITSTATUS(intStatus) : -1};
}

}  // namespace tarvik::test
