#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tarvik::remote {

/// Where a driver server is: "tarvik://host", "tarvik://host:port", and without transport security
/// "tarvik+insecure://host", which reaches this machine only. An IPv6 address stands in brackets.
struct ServerAddress {
  static constexpr std::uint16_t DefaultPort = 17830;

  bool fSecure = true;
  std::string strHost;
  std::uint16_t lngPort = DefaultPort;

  /// Host and port for the transport, brackets included where they are needed.
  std::string HostAndPort() const;
  /// The address in its full form.
  std::string Text() const;
};

/// Reads the address. Anything else than the forms above raises RunTimeError 5 that says what is wrong.
ServerAddress ParseServerAddress(std::string_view strUrl);

/// Whether the host is this machine's own loopback: "localhost", 127.x.x.x or ::1.
bool IsLoopback(std::string_view strHost);

}  // namespace tarvik::remote
