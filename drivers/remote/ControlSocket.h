#pragma once

#include <functional>
#include <string>
#include <thread>

#include "remote/FileHandle.h"

namespace tarvik::remote {

/// A socket of this machine that takes one line and answers with lines, for the administrator. Only who can write to
/// the file reaches it, and the file is its owner's and group's.
class ControlSocket {
 public:
  using Answer = std::function<std::string(const std::string &strCommand)>;

  /// RunTimeError 75 when the socket cannot be made. What an ended server left in its place is replaced.
  ControlSocket(std::string strPath, Answer answer);
  ~ControlSocket();
  ControlSocket(const ControlSocket &) = delete;
  ControlSocket &operator=(const ControlSocket &) = delete;

  /// Sends a command to a server's socket and answers its lines. RunTimeError 75 when there is no server.
  static std::string Ask(const std::string &strPath, const std::string &strCommand);

 private:
  void Run();
  void Serve(int intClient) const;

  const std::string m_strPath;
  const Answer m_answer;
  FileHandle m_listener, m_stop;
  std::thread m_thread;
};

}  // namespace tarvik::remote
