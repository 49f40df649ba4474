#include "Attacks.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <openssl/ssl.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <fstream>
#include <memory>
#include <stdexcept>

namespace tarvik::remote {

namespace {

sockaddr_in Address(const char *strAddress, const std::string &strPort) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(std::stoi(strPort)));
  inet_pton(AF_INET, strAddress, &address.sin_addr);
  return address;
}

FileHandle Dialled(const std::string &strPort, const char *strFrom) {
  FileHandle handle(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  const sockaddr_in from = Address(strFrom, "0"), to = Address("127.0.0.1", strPort);
  if (bind(handle.Get(), reinterpret_cast<const sockaddr *>(&from), sizeof from) != 0 ||
      connect(handle.Get(), reinterpret_cast<const sockaddr *>(&to), sizeof to) != 0)
    handle.Reset();
  return handle;
}

struct FreeTls {
  void operator()(SSL_CTX *p) const { SSL_CTX_free(p); }
  void operator()(SSL *p) const { SSL_free(p); }
};

/// Head of an HTTP/2 frame.
std::string FrameHead(std::size_t lngLength, std::uint8_t intType, std::uint8_t intFlags, std::uint32_t lngStream) {
  const auto byte = [](std::size_t value) { return static_cast<char>(value & 0xFF); };
  return {byte(lngLength >> 16), byte(lngLength >> 8),  byte(lngLength),      byte(intType),  byte(intFlags),
          byte(lngStream >> 24), byte(lngStream >> 16), byte(lngStream >> 8), byte(lngStream)};
}

}  // namespace

IdleConnections::IdleConnections(const std::string &strPort, int intCount, const char *strFrom) {
  for (int i = 0; i < intCount; ++i)
    if (FileHandle handle = Dialled(strPort, strFrom)) m_sockets.push_back(std::move(handle));
}

std::uint64_t SendEndlessHeaders(const std::string &strPort, const std::string &strCertificate,
                                 const std::string &strKey, std::uint64_t lngMost) {
  // The library writes without MSG_NOSIGNAL.
  signal(SIGPIPE, SIG_IGN);
  const FileHandle handle = Dialled(strPort, "127.0.0.1");
  const std::unique_ptr<SSL_CTX, FreeTls> context(SSL_CTX_new(TLS_client_method()));
  SSL_CTX_use_certificate_file(context.get(), strCertificate.c_str(), SSL_FILETYPE_PEM);
  SSL_CTX_use_PrivateKey_file(context.get(), strKey.c_str(), SSL_FILETYPE_PEM);
  constexpr unsigned char Http2[] = {2, 'h', '2'};
  SSL_CTX_set_alpn_protos(context.get(), Http2, sizeof Http2);
  const std::unique_ptr<SSL, FreeTls> tls(SSL_new(context.get()));
  SSL_set_fd(tls.get(), handle.Get());
  if (!handle || SSL_connect(tls.get()) != 1) throw std::runtime_error("the handshake fails");
  const timeval patience{1, 0};
  setsockopt(handle.Get(), SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);

  // One indexed header, ":method: GET", over and over: a byte each to send, and work for whoever reads it.
  constexpr std::size_t FrameSize = 16 * 1024;
  const std::string strHeaders(FrameSize, '\x82');
  std::string strBytes = "PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n" + FrameHead(0, 4, 0, 0) + FrameHead(FrameSize, 1, 0, 1);
  strBytes += strHeaders;
  std::uint64_t lngSent = 0;
  while (lngSent < lngMost) {
    const int intSent = SSL_write(tls.get(), strBytes.data(), static_cast<int>(strBytes.size()));
    if (intSent <= 0) break;
    lngSent += static_cast<std::uint64_t>(intSent);
    strBytes = FrameHead(FrameSize, 9, 0, 1) + strHeaders;
  }
  return lngSent;
}

std::size_t PeakBytes(int intPid) {
  std::ifstream file("/proc/" + std::to_string(intPid) + "/status");
  for (std::string strLine; std::getline(file, strLine);)
    if (strLine.starts_with("VmHWM:")) return std::stoul(strLine.substr(6)) * 1024;
  return 0;
}

}  // namespace tarvik::remote
