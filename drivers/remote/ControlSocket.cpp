#include "remote/ControlSocket.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/un.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "support/RunTimeError.h"

namespace tarvik::remote {

namespace {

constexpr std::size_t LongestCommand = 256;
constexpr timeval Patience{2, 0};

[[noreturn]] void Raise(const std::string &strPath, const char *strWhat) {
  throw RunTimeError(ErrPathFileAccess, strPath + " " + strWhat + ": " + std::strerror(errno));
}

sockaddr_un AddressOf(const std::string &strPath) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (strPath.size() >= sizeof address.sun_path) {
    errno = ENAMETOOLONG;
    Raise(strPath, "is no name for a socket");
  }
  std::memcpy(address.sun_path, strPath.c_str(), strPath.size() + 1);
  return address;
}

FileHandle NewSocket() { return FileHandle(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)); }

bool Connect(const FileHandle &handle, const sockaddr_un &address) {
  return connect(handle.Get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
}

void BePatient(int intSocket) {
  setsockopt(intSocket, SOL_SOCKET, SO_RCVTIMEO, &Patience, sizeof Patience);
  setsockopt(intSocket, SOL_SOCKET, SO_SNDTIMEO, &Patience, sizeof Patience);
}

void SendAll(int intSocket, const std::string &strText) {
  for (std::size_t lngSent = 0; lngSent < strText.size();) {
    const ssize_t lngPart = send(intSocket, strText.data() + lngSent, strText.size() - lngSent, MSG_NOSIGNAL);
    if (lngPart <= 0) return;
    lngSent += static_cast<std::size_t>(lngPart);
  }
}

/// A socket file that nobody listens at.
bool IsLeftOver(const std::string &strPath, const sockaddr_un &address) {
  struct stat status {};
  return lstat(strPath.c_str(), &status) == 0 && S_ISSOCK(status.st_mode) && !Connect(NewSocket(), address) &&
         errno == ECONNREFUSED;
}

}  // namespace

ControlSocket::ControlSocket(std::string strPath, Answer answer)
    : m_strPath(std::move(strPath)), m_answer(std::move(answer)), m_stop(eventfd(0, EFD_CLOEXEC)) {
  const sockaddr_un address = AddressOf(m_strPath);
  if (IsLeftOver(m_strPath, address)) unlink(m_strPath.c_str());
  m_listener = NewSocket();
  // The file has its rights from the beginning: set behind the bind, they would come too late.
  const mode_t before = umask(S_IXUSR | S_IXGRP | S_IRWXO);
  const bool fBound = bind(m_listener.Get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
  umask(before);
  if (!fBound || listen(m_listener.Get(), 8) != 0) Raise(m_strPath, "cannot be made");
  m_thread = std::thread([this] { Run(); });
}

ControlSocket::~ControlSocket() {
  eventfd_write(m_stop.Get(), 1);
  m_thread.join();
  unlink(m_strPath.c_str());
}

void ControlSocket::Run() {
  pollfd arrWaited[] = {{m_listener.Get(), POLLIN, 0}, {m_stop.Get(), POLLIN, 0}};
  for (;;) {
    if (poll(arrWaited, 2, -1) < 0 && errno != EINTR) return;
    if (arrWaited[1].revents) return;
    if (!(arrWaited[0].revents & POLLIN)) continue;
    const FileHandle client(accept4(m_listener.Get(), nullptr, nullptr, SOCK_CLOEXEC));
    if (client) Serve(client.Get());
  }
}

void ControlSocket::Serve(int intClient) const {
  BePatient(intClient);
  std::string strCommand;
  for (char ch = 0; strCommand.size() < LongestCommand && recv(intClient, &ch, 1, 0) == 1 && ch != '\n';)
    strCommand += ch;
  SendAll(intClient, m_answer(strCommand));
}

std::string ControlSocket::Ask(const std::string &strPath, const std::string &strCommand) {
  const FileHandle handle = NewSocket();
  if (!Connect(handle, AddressOf(strPath))) Raise(strPath, "cannot be reached");
  BePatient(handle.Get());
  SendAll(handle.Get(), strCommand + "\n");
  std::string strAnswer;
  char arrBytes[4096];
  for (ssize_t lngPart = 0; (lngPart = recv(handle.Get(), arrBytes, sizeof arrBytes, 0)) > 0;)
    strAnswer.append(arrBytes, static_cast<std::size_t>(lngPart));
  return strAnswer;
}

}  // namespace tarvik::remote
