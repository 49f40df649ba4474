#pragma once

#include "scpi/Line.h"

namespace tarvik::scpi {

/// VXI-11. The library has no device clear: the link is ended, which drops what was under way, and a new one is made.
class LxiLine final : public Line {
 public:
  LxiLine(std::string strHost, std::string strDevice)
      : m_strHost(std::move(strHost)), m_strDevice(std::move(strDevice)) {}
  ~LxiLine() override { Close(); }
  LxiLine(const LxiLine &) = delete;
  LxiLine &operator=(const LxiLine &) = delete;

  void Open(Milliseconds timeout) override;
  void Close() override;
  bool IsOpen() const override { return m_intLink >= 0; }
  void Send(std::string_view strMessage, Milliseconds timeout) override;
  std::string Receive(std::size_t most, Milliseconds timeout) override;
  void Clear(Milliseconds timeout) override;

 private:
  const std::string m_strHost, m_strDevice;
  int m_intLink = -1;
};

}  // namespace tarvik::scpi
