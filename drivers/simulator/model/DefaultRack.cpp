#include "simulator/model/RackFile.h"

namespace tarvik::simulator {

std::vector<InstrumentDescription> DefaultRack() {
  // In the form of a rack file, so that it is also the example a reader can start from.
  static constexpr std::string_view Text = R"(
[VP-210]
kind = slot
address = 24
slot = 3
model code = 0x0210
identity = Velmora,VP-210 Dual Pulse Generator,V210-00417,2.31
options = 010 VXI trigger, 020 Complement outputs
calibration delay = 250 ms
self test delay = 100 ms

[VP-110]
kind = slot
address = 32
slot = 4
model code = 0x0110
channels = 1
lacks = 4, 64, 128, 256, 512
identity = Velmora,VP-110 Pulse Generator,V110-01932,2.30
options = 010 VXI trigger
calibration delay = 250 ms
self test delay = 100 ms

[VP-220]
kind = slot
address = 40
slot = 5
model code = 0x0220
lacks = 1024, 2048, 4096
identity = Velmora,VP-220 Dual Pulse Generator,V220-00088,2.31
options = 020 Complement outputs
calibration delay = 250 ms
self test delay = 100 ms

[VP-250F]
kind = slot
address = 48
slot = 7
model code = 0x025F
lacks = 4, 16384
identity = Velmora,VP-250F Fast Pulse Generator,V250-00203,1.07
options = 010 VXI trigger, 030 Fast edges
calibration delay = 250 ms
self test delay = 100 ms

[VB-200]
kind = box
address = 9
lacks = 1024, 2048, 4096
identity = Velmora,VB-200 Bench Pulse Generator,B200-00756,3.02
options = 020 Complement outputs
calibration delay = 250 ms
self test delay = 100 ms

[VP-210 reserved]
kind = slot
address = 56
slot = 9
model code = 0x0210
identity = Velmora,VP-210 Dual Pulse Generator,V210-00419,2.31
options = 010 VXI trigger
opens = no
)";
  static const std::vector<InstrumentDescription> rack = ParseRack(Text, "built-in rack");
  return rack;
}

}  // namespace tarvik::simulator
