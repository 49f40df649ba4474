#pragma once

#include <cstdint>

#include "support/Types.h"

namespace tarvik::scpisim {

/// How the simulator goes wrong on purpose.
enum class Fault {
  None,
  Cut,      ///< the line is cut before the message is carried out
  Half,     ///< the message is carried out, the line is cut in the middle of the answer
  Silence,  ///< the message is lost
  Mute,     ///< the message is carried out, its answer is lost
  Garbage,  ///< the answer is damaged; a message without an answer arrives damaged
  Error,    ///< the message is refused with -240, without an answer
  Endless,  ///< the answer is a megabyte long
  Stale,    ///< the answer to an earlier message comes once more before the right one
};

/// When to go wrong: at one of the messages to come, or at that one and all behind it. The client that orders a fault
/// is its referee: its own messages are neither counted nor disturbed.
class FaultPlan {
 public:
  /// Of a client, as the server counts them; 0 for the command line, whose plan spares nobody.
  using Client = std::uint64_t;
  static constexpr Client Nobody = 0;

  /// lngMessage counts from 1, from now on.
  void Order(Client referee, Long lngMessage, Fault fault, bool fEver);
  void Clear(Client referee);

  /// To be asked once for each message that arrives: what happens to it.
  Fault Next(Client client);
  /// Messages since the last order, and how many of them went wrong.
  Long Messages() const { return m_lngMessages; }
  Long Struck() const { return m_lngStruck; }

 private:
  Client m_referee = Nobody;
  Fault m_fault = Fault::None;
  Long m_lngAt = 0;
  bool m_fEver = false;
  Long m_lngMessages = 0;
  Long m_lngStruck = 0;
};

}  // namespace tarvik::scpisim
