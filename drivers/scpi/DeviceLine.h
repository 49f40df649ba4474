#pragma once

#include "scpi/DescriptorLine.h"

namespace tarvik::scpi {

/// A device file of the kernel's USBTMC driver, which has time-outs and a device clear of its own. Any other character
/// device that carries lines serves too; it is waited for as a socket is, and clearing it drops what it has said.
class DeviceLine final : public DescriptorLine {
 public:
  explicit DeviceLine(std::string strPath) : m_strPath(std::move(strPath)) {}
  void Open(Milliseconds timeout) override;
  void Send(std::string_view strMessage, Milliseconds timeout) override;
  std::string Receive(std::size_t most, Milliseconds timeout) override;
  void Clear(Milliseconds timeout) override;

 private:
  /// Tells the kernel's driver how long a transfer may take; fails where it does not listen.
  void SetKernelTimeout(Milliseconds timeout) const;

  const std::string m_strPath;
  bool m_fUsbtmc = false;
};

}  // namespace tarvik::scpi
