#include "remote/ServerAddress.h"

#include <arpa/inet.h>

#include <algorithm>
#include <charconv>

#include "support/Conversions.h"
#include "support/RunTimeError.h"

namespace tarvik::remote {

namespace {

constexpr std::string_view SchemeEnd = "://";

[[noreturn]] void Refuse(std::string_view strUrl, const std::string &strWhy) {
  throw RunTimeError(ErrInvalidArgument, "\"" + std::string(strUrl) + "\" is no address of a driver server: " + strWhy +
                                             ". An address looks like tarvik://host:port");
}

std::string Lower(std::string_view strText) {
  std::string strResult(strText);
  std::ranges::transform(strResult, strResult.begin(),
                         [](char ch) { return ch >= 'A' && ch <= 'Z' ? static_cast<char>(ch - 'A' + 'a') : ch; });
  return strResult;
}

bool IsIpv6(const std::string &strHost) {
  in6_addr address{};
  // A zone ("%eth0") names the interface of a link-local address and is the system's affair.
  return inet_pton(AF_INET6, strHost.substr(0, strHost.find('%')).c_str(), &address) == 1;
}

bool IsHostName(std::string_view strHost) {
  constexpr std::size_t MaxHostName = 253;  // of the domain name system
  const auto fits = [](char ch) {
    return (ch >= 'a' && ch <= 'z') || (ch >= 'A' && ch <= 'Z') || (ch >= '0' && ch <= '9') || ch == '-' || ch == '.' ||
           ch == '_';
  };
  return !strHost.empty() && strHost.size() <= MaxHostName && strHost.front() != '.' && strHost.front() != '-' &&
         std::ranges::all_of(strHost, fits);
}

std::uint16_t ParsePort(std::string_view strUrl, std::string_view strPort) {
  std::uint16_t lngPort = 0;
  const auto [end, error] = std::from_chars(strPort.data(), strPort.data() + strPort.size(), lngPort);
  if (error != std::errc{} || end != strPort.data() + strPort.size() || lngPort == 0)
    Refuse(strUrl, "the port is a number from 1 to 65535");
  return lngPort;
}

/// Cuts the host off the front and leaves what follows it.
std::string CutHost(std::string_view strUrl, std::string_view &strRest) {
  if (!strRest.empty() && strRest.front() == '[') {
    const auto end = strRest.find(']');
    if (end == std::string_view::npos) Refuse(strUrl, "the bracket is not closed");
    std::string strHost(strRest.substr(1, end - 1));
    if (!IsIpv6(strHost)) Refuse(strUrl, "an IPv6 address stands in the brackets");
    strRest.remove_prefix(end + 1);
    return strHost;
  }
  const auto end = std::min(strRest.find(':'), strRest.size());
  std::string strHost(strRest.substr(0, end));
  if (strHost.empty()) Refuse(strUrl, "the host is missing");
  if (strRest.find(':', end + 1) != std::string_view::npos) Refuse(strUrl, "an IPv6 address stands in brackets");
  if (!IsHostName(strHost)) Refuse(strUrl, "the host name has a character that no host name has");
  strRest.remove_prefix(end);
  return strHost;
}

}  // namespace

std::string ServerAddress::HostAndPort() const {
  const bool fBrackets = strHost.find(':') != std::string::npos;
  return (fBrackets ? "[" + strHost + "]" : strHost) + ":" + std::to_string(lngPort);
}

std::string ServerAddress::Text() const { return (fSecure ? "tarvik://" : "tarvik+insecure://") + HostAndPort(); }

ServerAddress ParseServerAddress(std::string_view strUrl) {
  const std::string strTrimmed = Trim(strUrl);
  std::string_view strRest = strTrimmed;
  const auto schemeEnd = strRest.find(SchemeEnd);
  if (schemeEnd == std::string_view::npos) Refuse(strUrl, "it does not begin with tarvik://");
  const std::string strScheme = Lower(strRest.substr(0, schemeEnd));
  if (strScheme != "tarvik" && strScheme != "tarvik+insecure")
    Refuse(strUrl, "the scheme \"" + strScheme + "\" is not known");

  ServerAddress address;
  address.fSecure = strScheme == "tarvik";
  strRest.remove_prefix(schemeEnd + SchemeEnd.size());
  if (!strRest.empty() && strRest.back() == '/') strRest.remove_suffix(1);
  if (strRest.find_first_of("/?#") != std::string_view::npos) Refuse(strUrl, "nothing may follow host and port");
  if (strRest.find('@') != std::string_view::npos) Refuse(strUrl, "a user name has no place in it");
  address.strHost = CutHost(strUrl, strRest);
  if (!strRest.empty()) {
    if (strRest.front() != ':') Refuse(strUrl, "only a port may follow the host");
    address.lngPort = ParsePort(strUrl, strRest.substr(1));
  }
  if (!address.fSecure && !IsLoopback(address.strHost))
    Refuse(strUrl, "without transport security only this machine itself can be reached");
  return address;
}

bool IsLoopback(std::string_view strHost) {
  const std::string strName = Lower(strHost);
  if (strName == "localhost") return true;
  in_addr address4{};
  if (inet_pton(AF_INET, strName.c_str(), &address4) == 1) return (ntohl(address4.s_addr) >> 24) == 127;
  in6_addr address6{};
  return inet_pton(AF_INET6, strName.c_str(), &address6) == 1 && IN6_IS_ADDR_LOOPBACK(&address6);
}

}  // namespace tarvik::remote
