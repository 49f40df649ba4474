#include "scpi/Address.h"

#include <algorithm>
#include <vector>

#include "common/Characters.h"
#include "common/Failure.h"

namespace tarvik::scpi {

namespace {

using driver::UpperText;

bool IsNumber(const std::string &strText) {
  return !strText.empty() && strText.find_first_not_of("0123456789") == std::string::npos;
}

/// Cut at "::", but for those within brackets.
std::vector<std::string> Parts(const std::string &strText) {
  std::vector<std::string> arrParts(1);
  bool fBrackets = false;
  for (std::size_t place = 0; place < strText.size(); ++place) {
    if (!fBrackets && strText.compare(place, 2, "::") == 0) {
      arrParts.emplace_back();
      ++place;
      continue;
    }
    fBrackets = strText[place] == '[' || (fBrackets && strText[place] != ']');
    arrParts.back() += strText[place];
  }
  return arrParts;
}

/// Whether the part is the word, with or without a number behind it.
bool IsInterface(const std::string &strPart, const std::string &strWord) {
  const std::string strUpper = UpperText(strPart);
  return strUpper == strWord || (strUpper.starts_with(strWord) && IsNumber(strUpper.substr(strWord.size())));
}

std::string WithoutBrackets(const std::string &strHost) {
  const bool fBrackets = strHost.size() > 2 && strHost.front() == '[' && strHost.back() == ']';
  return fBrackets ? strHost.substr(1, strHost.size() - 2) : strHost;
}

bool IsPort(const std::string &strPort) {
  return IsNumber(strPort) && strPort.size() <= 5 && std::stol(strPort) >= 1 && std::stol(strPort) <= 65535;
}

/// A host name or number, and nothing that could be taken for something else further on.
bool IsHost(const std::string &strHost) {
  return !strHost.empty() && strHost.front() != '-' && std::ranges::all_of(strHost, [](unsigned char ch) {
    return std::isalnum(ch) || ch == '.' || ch == '-' || ch == '_' || ch == ':' || ch == '%';
  });
}

}  // namespace

Address Address::Read(const std::string &strText) {
  const std::vector<std::string> arrParts = Parts(strText);
  const std::string strLast = UpperText(arrParts.back());
  if (arrParts.size() >= 3 && IsInterface(arrParts[0], "TCPIP")) {
    const std::string strHost = WithoutBrackets(arrParts[1]);
    if (arrParts.size() == 4 && strLast == "SOCKET" && IsHost(strHost) && IsPort(arrParts[2]))
      return {Kind::Socket, strText, strHost, arrParts[2], {}};
    if (arrParts.size() == 3 && strLast == "INSTR" && IsHost(strHost))
      return {Kind::Vxi11, strText, strHost, {}, "inst0"};
    if (arrParts.size() == 4 && strLast == "INSTR" && IsHost(strHost) && !arrParts[2].empty())
      return {Kind::Vxi11, strText, strHost, {}, arrParts[2]};
  }
  const bool fDevice = arrParts.size() == 2 || (arrParts.size() == 3 && strLast == "INSTR");
  if (fDevice && IsInterface(arrParts[0], "USB") && arrParts[1].starts_with('/'))
    return {Kind::Device, strText, {}, {}, arrParts[1]};
  throw driver::Failure("\"" + strText +
                        "\" is no address. Addresses are written as TCPIP::host::port::SOCKET, TCPIP::host::INSTR or "
                        "USB::/dev/usbtmc0");
}

}  // namespace tarvik::scpi
