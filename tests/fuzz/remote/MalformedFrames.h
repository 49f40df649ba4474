#pragma once

#include <random>
#include <string>
#include <vector>

namespace tarvik::remote {

/// What no client sends: random bytes, frames of a client with bytes changed, cut off or put in, frames at the wrong
/// place, frames beyond the limit. The row is the same for the same seed.
class MalformedFrames {
 public:
  explicit MalformedFrames(unsigned intSeed) : m_random(intSeed) {}

  /// The frames of one stream, of which the last is the malformed one; those before it are a client's own.
  std::vector<std::string> Next();

 private:
  std::size_t Below(std::size_t lngBound) { return static_cast<std::size_t>(m_random() % lngBound); }
  std::string RandomBytes();
  std::string Mutated(std::string strFrame);
  std::string Misplaced(std::vector<std::string> &arrBefore);

  std::mt19937 m_random;
};

}  // namespace tarvik::remote
