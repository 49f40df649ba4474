#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace tarvik::remote {

/// Who has an instrument open.
struct Holder {
  std::uint64_t lngSession = 0;
  std::string strName;     ///< of the certificate
  std::string strAddress;  ///< of the client's machine, with the port
  std::chrono::system_clock::time_point since{};
};

/// "bench at 192.0.2.7:4711 since 2026-05-04 12:30:00 UTC"
std::string TextOf(const Holder &holder);

/// The instruments that clients have open, each with its one holder. A session may open its instrument several times.
/// Any thread may ask.
class InstrumentHolders {
 public:
  /// Gives the instrument to the session, or answers who else holds it.
  std::optional<Holder> Take(const std::string &strInstrument, const Holder &wanted);
  /// Takes back what Take gave. Nothing happens when the session does not hold it.
  void Free(const std::string &strInstrument, std::uint64_t lngSession);

  struct Held {
    std::string strInstrument;
    Holder holder;
  };
  std::vector<Held> All() const;

 private:
  struct Entry {
    Holder holder;
    int intOpenings = 0;
  };
  mutable std::mutex m_mutex;
  std::map<std::string, Entry> m_held;
};

}  // namespace tarvik::remote
