#pragma once

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

extern char **environ;

namespace tarvik::remote {

/// The server program as a process of its own, with the simulated instruments.
class ServerProcess {
 public:
  /// On a loopback port that the system chooses, without transport security.
  static std::vector<std::string> Insecure(const std::string &strPort = "0") {
    return {"--insecure", "--listen", "127.0.0.1", "--port", strPort};
  }

  explicit ServerProcess(std::vector<std::string> arrOptions) {
    static int intNumber = 0;
    m_strLog = "/tmp/tarvik-server-" + std::to_string(getpid()) + "-" + std::to_string(++intNumber) + ".log";
    for (const char *strOption : {"--log", m_strLog.c_str()}) arrOptions.emplace_back(strOption);
    arrOptions.insert(arrOptions.begin(), SERVER_PROGRAM);
    std::vector<char *> arrArguments;
    for (std::string &strOption : arrOptions) arrArguments.push_back(strOption.data());
    arrArguments.push_back(nullptr);

    int arrPipe[2];
    if (pipe2(arrPipe, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, arrPipe[1], STDOUT_FILENO);
    if (posix_spawn(&m_pid, SERVER_PROGRAM, &actions, nullptr, arrArguments.data(), environ) != 0)
      throw std::runtime_error("the server does not start");
    posix_spawn_file_actions_destroy(&actions);
    close(arrPipe[1]);
    std::string strLine;
    for (char ch = 0; read(arrPipe[0], &ch, 1) == 1 && ch != '\n';) strLine += ch;
    close(arrPipe[0]);
    const auto colon = strLine.rfind(':');
    if (strLine.find("listening on") == std::string::npos) throw std::runtime_error("the server said: " + strLine);
    m_strPort = strLine.substr(colon + 1);
  }
  ServerProcess(const ServerProcess &) = delete;
  ServerProcess &operator=(const ServerProcess &) = delete;
  ~ServerProcess() {
    Signal(SIGCONT);
    End(SIGKILL);
    unlink(m_strLog.c_str());
  }

  void Signal(int lngSignal) const {
    if (m_pid <= 0) return;
    kill(m_pid, lngSignal);
    // A stop takes its time: until the last thread has stopped the server may still answer.
    if (lngSignal == SIGSTOP) waitpid(m_pid, nullptr, WUNTRACED);
  }
  /// Sends the signal, waits for the end and answers the exit status, or -1 when the signal itself ended it.
  int End(int lngSignal) {
    if (m_pid <= 0) return -1;
    Signal(lngSignal);
    int lngStatus = 0;
    waitpid(m_pid, &lngStatus, 0);
    m_pid = 0;
    return WIFEXITED(lngStatus) ? WEXITSTATUS(lngStatus) : -1;
  }
  const std::string &Port() const { return m_strPort; }
  std::string LogText() const {
    std::ifstream file(m_strLog);
    return {std::istreambuf_iterator<char>(file), {}};
  }

 private:
  pid_t m_pid = 0;
  std::string m_strPort;
  std::string m_strLog;
};

}  // namespace tarvik::remote
