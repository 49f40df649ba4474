#include "scpi/LxiLibrary.h"

#include <lxi.h>

#include <algorithm>
#include <mutex>

#include "common/Failure.h"

namespace tarvik::scpi {

namespace {

/// Where the library's plain callbacks put what they are told; set while DiscoverInstruments runs.
thread_local std::vector<FoundInstrument> *g_pFound = nullptr;

void Add(std::string strAddress, const char *strIdentity) {
  if (!g_pFound) return;
  const auto known = std::ranges::find(*g_pFound, strAddress, &FoundInstrument::strAddress);
  if (known == g_pFound->end()) g_pFound->push_back({std::move(strAddress), strIdentity ? strIdentity : ""});
}

void FoundDevice(const char *strHost, const char *strIdentity) {
  Add(std::string("TCPIP::") + strHost + "::INSTR", strIdentity);
}

void FoundService(const char *strHost, const char *strIdentity, const char *strService, int intPort) {
  const std::string strName = strService ? strService : "";
  if (strName.find("scpi-raw") != std::string::npos)
    Add(std::string("TCPIP::") + strHost + "::" + std::to_string(intPort) + "::SOCKET", strIdentity);
  else if (strName.find("vxi-11") != std::string::npos)
    FoundDevice(strHost, strIdentity);
}

void SearchedOn(const char *, const char *) {}

}  // namespace

void RequireLxiLibrary() {
  static std::once_flag once;
  static int intResult = LXI_ERROR;
  std::call_once(once, [] { intResult = ::lxi_init(); });
  if (intResult != LXI_OK) throw driver::Failure("the library for instruments on the network cannot be used");
}

std::vector<FoundInstrument> DiscoverInstruments(int intTimeout) {
  RequireLxiLibrary();
  std::vector<FoundInstrument> arrFound;
  lxi_info_t calls{SearchedOn, FoundDevice, FoundService};
  g_pFound = &arrFound;
  const int intVxi11 = ::lxi_discover(&calls, intTimeout, DISCOVER_VXI11);
  const int intMdns = ::lxi_discover(&calls, intTimeout, DISCOVER_MDNS);
  g_pFound = nullptr;
  if (arrFound.empty() && intVxi11 < 0 && intMdns < 0) throw driver::Failure("the network cannot be searched");
  return arrFound;
}

}  // namespace tarvik::scpi
