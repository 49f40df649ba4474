#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace tarvik::remote {

/// Polls until the condition holds; false on timeout.
bool WaitUntil(const std::function<bool()> &condition, std::chrono::milliseconds limit = std::chrono::seconds(10));

/// A child process. The constructor waits for its first line of output.
class ChildProcess {
 public:
  /// Entries of the environment are NAME=VALUE and come before those of this process.
  ChildProcess(std::vector<std::string> arrArguments, const std::vector<std::string> &arrEnvironment = {});
  ChildProcess(const ChildProcess &) = delete;
  ChildProcess &operator=(const ChildProcess &) = delete;
  /// Kills it.
  ~ChildProcess();

  void Signal(int lngSignal) const;
  /// Sends the signal unless it is 0, waits for the end and answers the exit status, or -1 when a signal ended it.
  int End(int lngSignal);
  /// Ends it at once. With TARVIK_ORDERLY_END in the environment SIGTERM comes first and gets ten seconds: only a
  /// program that ends by itself writes which of its lines were reached.
  void Kill();
  /// The next line of its output; empty at the end.
  std::string ReadLine();
  pid_t Pid() const { return m_pid; }
  /// Waits until a signal has stopped it, or ended it without taking it from End.
  void AwaitStop() const;

 private:
  pid_t m_pid = 0;
  int m_intOutput = -1;
};

/// The server program with the drivers that its environment leads to.
class ServerProcess {
 public:
  explicit ServerProcess(std::vector<std::string> arrOptions, const std::vector<std::string> &arrEnvironment = {});
  ServerProcess(const ServerProcess &) = delete;
  ServerProcess &operator=(const ServerProcess &) = delete;
  ~ServerProcess();

  /// Without transport security on 127.0.0.1, with instruments that clients share; 0 lets the system choose the port.
  static std::vector<std::string> Insecure(const std::string &strPort = "0");

  /// After SIGSTOP the last thread has stopped when this returns.
  void Signal(int lngSignal) const;
  int End(int lngSignal) { return m_process.End(lngSignal); }
  /// Waits until the process has stopped by itself.
  void AwaitStop() const { m_process.AwaitStop(); }

  pid_t Pid() const { return m_process.Pid(); }
  const std::string &Port() const { return m_strPort; }
  std::string Url() const { return "tarvik+insecure://127.0.0.1:" + m_strPort; }
  std::string LogText() const;
  /// Waits for a text in the log.
  bool LogSays(const std::string &strText, std::chrono::milliseconds limit = std::chrono::seconds(10)) const;
  std::size_t ResidentBytes() const;
  std::size_t OpenFiles() const;

 private:
  static std::vector<std::string> CommandLine(std::vector<std::string> arrOptions, const std::string &strLog);

  const std::string m_strLog;
  ChildProcess m_process;
  std::string m_strPort;
};

}  // namespace tarvik::remote
