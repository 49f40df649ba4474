#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

namespace tarvik::remote {

/// A line to a port of this machine on which everything takes its time: half of `delay` each way.
class DelayingRelay {
 public:
  DelayingRelay(std::uint16_t lngServerPort, std::chrono::microseconds delay);
  ~DelayingRelay();
  DelayingRelay(const DelayingRelay &) = delete;
  DelayingRelay &operator=(const DelayingRelay &) = delete;

  std::string Url() const { return "tarvik+insecure://127.0.0.1:" + std::to_string(m_lngPort); }

 private:
  void Accept();
  void Carry(int intFrom, int intTo) const;

  const std::uint16_t m_lngServerPort;
  const std::chrono::microseconds m_oneWay;
  int m_intListener = -1;
  std::uint16_t m_lngPort = 0;
  std::vector<int> m_arrEnds;  ///< for the accepting thread
  std::vector<std::jthread> m_carriers;
  std::jthread m_acceptor;
};

}  // namespace tarvik::remote
