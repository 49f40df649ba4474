#pragma once

#include <optional>
#include <string>

#include "remote/CallTrail.h"

namespace tarvik::remote {

/// What a rehearsed operation can know of an answer before it has it: how many channels there are, and whether a
/// transaction is open. The server stops where that is wrong, so a wrong guess costs a round trip and nothing else.
class Foresight {
 public:
  struct Answer {
    std::string strFilled;  ///< the arguments that come back
    std::string strRelied;  ///< the end of these, by which the operation goes on
  };

  /// Nothing for an answer that nobody can foresee.
  std::optional<Answer> Of(const Asked &asked) const;
  /// To be told each call that succeeds, or will in a rehearsal, with what it brings back.
  void Note(const Asked &asked, Reader filled);

 private:
  Long m_lngChannels = 0;       ///< as the last list of channels told; 0: none has
  bool m_fTransaction = false;  ///< the last command was to begin one
};

}  // namespace tarvik::remote
