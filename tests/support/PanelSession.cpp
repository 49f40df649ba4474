#include "PanelSession.h"

#include <algorithm>

namespace tarvik::test {

PanelSession::PanelSession(const Start &start) {
  gobjInstr().reset();
  driver.Add("Alpha", start.config);
  // As the instruments do.
  driver.lngFirstByte = 1;
  instr = std::make_shared<clsInstrInterface>();
  gobjInstr() = instr;
  host.settings[{"Config", "AutoDownload"}] = start.fAutoDownload ? "1" : "0";
  host.settings[{"Config", "AutoOutputOnOff"}] = start.fAutoOutput ? "1" : "0";
  host.settings[{"Config", "WorkWithBoxes"}] = "1";
  panel = std::make_unique<TarvikGUI>();
  SitDownAt(*panel);
  panel->resize(panel->sizeHint());
  ShowAndStart(*panel);
  if (start.fOpen) Open();
  Forget();
}

PanelSession::~PanelSession() {
  panel.reset();
  gobjInstr().reset();
}

void PanelSession::Forget() {
  host.arrEntries.clear();
  driver.arrTrace.clear();
}

std::vector<std::string> PanelSession::Calls(std::initializer_list<std::string_view> arrOperations) const {
  std::vector<std::string> arrCalls;
  for (const std::string &strLine : driver.arrTrace)
    if (std::ranges::any_of(arrOperations, [&](std::string_view strOperation) {
          return strLine.find("." + std::string(strOperation) + "(") != std::string::npos;
        }))
      arrCalls.push_back(strLine.substr(0, strLine.find(" -> ")));
  return arrCalls;
}

bool PanelSession::Failed(const std::string &strOperation) const {
  return std::ranges::any_of(host.arrEntries, [&](const HostEntry &entry) {
    return entry.kind == HostEntry::Log && entry.strText.find("Proc: " + strOperation + "\r\n") != std::string::npos;
  });
}

}  // namespace tarvik::test
