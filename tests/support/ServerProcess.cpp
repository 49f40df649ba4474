#include "ServerProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

extern char **environ;

namespace tarvik::remote {

namespace fs = std::filesystem;

bool WaitUntil(const std::function<bool()> &condition, std::chrono::milliseconds limit) {
  const auto until = std::chrono::steady_clock::now() + limit;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > until) return condition();
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return true;
}

ChildProcess::ChildProcess(std::vector<std::string> arrArguments, const std::vector<std::string> &arrEnvironment) {
  std::vector<char *> arrArgv, arrEnv;
  for (std::string &strArgument : arrArguments) arrArgv.push_back(strArgument.data());
  arrArgv.push_back(nullptr);
  // Of two entries with one name the first is found.
  for (const std::string &strEntry : arrEnvironment) arrEnv.push_back(const_cast<char *>(strEntry.c_str()));
  for (char **ppEntry = environ; *ppEntry; ++ppEntry) arrEnv.push_back(*ppEntry);
  arrEnv.push_back(nullptr);

  int arrPipe[2];
  if (pipe2(arrPipe, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, arrPipe[1], STDOUT_FILENO);
  const int lngError = posix_spawn(&m_pid, arrArgv[0], &actions, nullptr, arrArgv.data(), arrEnv.data());
  posix_spawn_file_actions_destroy(&actions);
  close(arrPipe[1]);
  m_intOutput = arrPipe[0];
  if (lngError != 0) throw std::runtime_error(arrArguments.front() + " does not start");
}

ChildProcess::~ChildProcess() {
  Kill();
  close(m_intOutput);
}

void ChildProcess::Kill() {
  Signal(SIGCONT);
  if (std::getenv("TARVIK_ORDERLY_END")) {
    Signal(SIGTERM);
    WaitUntil([this] {
      if (m_pid > 0 && waitpid(m_pid, nullptr, WNOHANG) == m_pid) m_pid = 0;
      return m_pid <= 0;
    });
  }
  End(SIGKILL);
}

void ChildProcess::Signal(int lngSignal) const {
  if (m_pid > 0) kill(m_pid, lngSignal);
}

int ChildProcess::End(int lngSignal) {
  if (m_pid <= 0) return -1;
  if (lngSignal) Signal(lngSignal);
  int lngStatus = 0;
  waitpid(m_pid, &lngStatus, 0);
  m_pid = 0;
  return WIFEXITED(lngStatus) ? WEXITSTATUS(lngStatus) : -1;
}

std::string ChildProcess::ReadLine() {
  std::string strLine;
  for (char ch = 0; read(m_intOutput, &ch, 1) == 1 && ch != '\n';) strLine += ch;
  return strLine;
}

void ChildProcess::AwaitStop() const {
  siginfo_t info{};
  waitid(P_PID, static_cast<id_t>(m_pid), &info, WSTOPPED | WEXITED | WNOWAIT);
}

namespace {

std::string NewLogFile() {
  static int intNumber = 0;
  return (fs::temp_directory_path() /
          ("tarvik-server-" + std::to_string(getpid()) + "-" + std::to_string(++intNumber) + ".log"))
      .string();
}

}  // namespace

std::vector<std::string> ServerProcess::Insecure(const std::string &strPort) {
  return {"--insecure", "--share", "--listen", "127.0.0.1", "--port", strPort};
}

std::vector<std::string> ServerProcess::CommandLine(std::vector<std::string> arrOptions, const std::string &strLog) {
  arrOptions.insert(arrOptions.begin(), {SERVER_PROGRAM, "--log", strLog});
  return arrOptions;
}

ServerProcess::ServerProcess(std::vector<std::string> arrOptions, const std::vector<std::string> &arrEnvironment)
    : m_strLog(NewLogFile()), m_process(CommandLine(std::move(arrOptions), m_strLog), arrEnvironment) {
  const std::string strLine = m_process.ReadLine();
  if (strLine.find("listening on") == std::string::npos) throw std::runtime_error("the server said: " + strLine);
  m_strPort = strLine.substr(strLine.rfind(':') + 1);
}

ServerProcess::~ServerProcess() {
  m_process.Kill();
  unlink(m_strLog.c_str());
}

void ServerProcess::Signal(int lngSignal) const {
  m_process.Signal(lngSignal);
  if (lngSignal == SIGSTOP) m_process.AwaitStop();
}

std::string ServerProcess::LogText() const {
  std::ifstream file(m_strLog);
  return {std::istreambuf_iterator<char>(file), {}};
}

bool ServerProcess::LogSays(const std::string &strText, std::chrono::milliseconds limit) const {
  return WaitUntil([&] { return LogText().find(strText) != std::string::npos; }, limit);
}

std::size_t ServerProcess::ResidentBytes() const {
  std::ifstream file("/proc/" + std::to_string(m_process.Pid()) + "/statm");
  std::size_t lngTotal = 0, lngResident = 0;
  file >> lngTotal >> lngResident;
  return lngResident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

std::size_t ServerProcess::OpenFiles() const {
  const fs::directory_iterator files("/proc/" + std::to_string(m_process.Pid()) + "/fd");
  return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

}  // namespace tarvik::remote
