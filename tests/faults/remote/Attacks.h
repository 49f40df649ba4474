#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "remote/FileHandle.h"

namespace tarvik::remote {

/// Connections to the port on 127.0.0.1 that say nothing, from an address of the loopback. Those that the server does
/// not take are left out.
class IdleConnections {
 public:
  IdleConnections(const std::string &strPort, int intCount, const char *strFrom);
  std::size_t Count() const { return m_sockets.size(); }
  void Close() { m_sockets.clear(); }

 private:
  std::vector<FileHandle> m_sockets;
};

/// A client with a certificate, in HTTP/2 by hand: begins a request whose headers never end. Answers the bytes that the
/// server took before it hung up, or `lngMost`.
std::uint64_t SendEndlessHeaders(const std::string &strPort, const std::string &strCertificate,
                                 const std::string &strKey, std::uint64_t lngMost);

/// The most memory that the process had at a time, bytes.
std::size_t PeakBytes(int intPid);

}  // namespace tarvik::remote
