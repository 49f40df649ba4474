#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "scpi/simulator/Interpreter.h"
#include "scpi/simulator/MessageFramer.h"
#include "simulator/model/RackFile.h"
#include "simulator/model/Validation.h"

// Whatever a client sends, the instrument keeps settings that agree with one another, an answer is one line unless it
// holds a block, and the error queue keeps its bound.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace tarvik;
  using namespace tarvik::scpisim;
  static const simulator::InstrumentDescription description = simulator::DefaultRack().front();
  Device device(description);
  MessageFramer framer(4096);
  framer.Append({reinterpret_cast<const char *>(data), size});
  while (const auto message = framer.Next()) {
    if (message->strText.size() > 4096 || (message->fOverrun && !message->strText.empty())) std::abort();
    const std::string strAnswer = Interpreter(device, 1).Execute(message->strText);
    if (strAnswer.find('#') == strAnswer.npos && strAnswer.find('\n') != strAnswer.npos) std::abort();
    if (strAnswer.size() > Interpreter::LongestResponse) std::abort();
    if (device.status.Errors() > StatusRegisters::QueueLength) std::abort();
    if (!simulator::Violations(device.CurrentSettings(), description).empty()) std::abort();
  }
  return 0;
}
