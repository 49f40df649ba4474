#include "support/ConnectionLoss.h"

#include <algorithm>
#include <array>

namespace tarvik {

namespace {

constexpr std::array Lost = {
    0x800706BAu,  // the server cannot be reached, or has gone
    0x800706BEu,  // the call was lost
    0x80010007u,  // the callee has gone
    0x80010012u,  // the callee has gone before it was called
    0x80010108u,  // the object was disconnected from its clients
};

}  // namespace

bool TellsLostConnection(std::int32_t lngStatus) {
  return std::ranges::find(Lost, static_cast<std::uint32_t>(lngStatus)) != Lost.end();
}

Event<const std::string &> &ConnectionLost() {
  thread_local Event<const std::string &> event;
  return event;
}

Event<std::int32_t, const std::string &> &FailureNoted() {
  thread_local Event<std::int32_t, const std::string &> event;
  return event;
}

void NoteFailure(std::int32_t lngNumber, const std::string &strDescription) {
  FailureNoted().Raise(lngNumber, strDescription);
  if (TellsLostConnection(lngNumber)) ConnectionLost().Raise(strDescription);
}

}  // namespace tarvik
