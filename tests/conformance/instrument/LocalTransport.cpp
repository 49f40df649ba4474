#include "Transport.h"

namespace tarvik::test {

struct Transport::Route {};

Transport::Transport(StandInDriver &) {}
Transport::~Transport() = default;
void Transport::Settle() {}

}  // namespace tarvik::test
