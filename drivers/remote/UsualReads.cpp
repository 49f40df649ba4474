#include "remote/UsualReads.h"

namespace tarvik::remote {

namespace {

constexpr const char *PanelDownload =
#include "remote/PanelDownload.inc"
    ;
constexpr const char *SetupRead =
#include "remote/SetupRead.inc"
    ;

}  // namespace

std::string_view UsualReads(std::string_view strName) {
  if (strName == "panel download") return PanelDownload;
  return strName == "setup read" ? SetupRead : "";
}

}  // namespace tarvik::remote
