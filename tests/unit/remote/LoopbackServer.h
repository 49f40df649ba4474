#pragma once

#include <mutex>
#include <ostream>
#include <sstream>
#include <string>

#include "remote/Connection.h"
#include "remote/DriverServer.h"

namespace tarvik::remote {

/// Text that a server's threads write and a test reads meanwhile.
class LockedText : public std::stringbuf {
 public:
  std::string Text() const {
    const std::lock_guard lock(m_mutex);
    return str();
  }

 private:
  std::streamsize xsputn(const char *pText, std::streamsize lngCount) override {
    const std::lock_guard lock(m_mutex);
    return std::stringbuf::xsputn(pText, lngCount);
  }

  mutable std::mutex m_mutex;
};

/// A server without transport security in this process, on a port that the system chose.
class LoopbackServer {
 public:
  explicit LoopbackServer(DriverCreator creator, ServerOptions options = {})
      : m_server(Loopback(std::move(options)), std::move(creator), m_log) {}

  std::string Url() const { return "tarvik+insecure://127.0.0.1:" + std::to_string(m_server.Port()); }
  DriverServer *operator->() { return &m_server; }
  std::string LogText() const { return m_text.Text(); }

 private:
  static ServerOptions Loopback(ServerOptions options) {
    options.fInsecure = true;
    options.strHost = "127.0.0.1";
    return options;
  }

  LockedText m_text;
  std::ostream m_out{&m_text};
  ServerLog m_log{m_out};
  DriverServer m_server;
};

}  // namespace tarvik::remote
