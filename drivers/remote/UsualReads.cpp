#include "remote/UsualReads.h"

namespace tarvik::remote {

namespace {

constexpr const char *PanelDownload =
#include "remote/PanelDownload.inc"
    ;

}  // namespace

std::string_view UsualReads(std::string_view strName) { return strName == "panel download" ? PanelDownload : ""; }

}  // namespace tarvik::remote
