#pragma once

#include <unistd.h>

#include <utility>

namespace tarvik::remote {

/// Owns a file descriptor.
class FileHandle {
 public:
  FileHandle() = default;
  explicit FileHandle(int intDescriptor) : m_intDescriptor(intDescriptor) {}
  FileHandle(FileHandle &&other) noexcept : m_intDescriptor(other.Release()) {}
  FileHandle &operator=(FileHandle &&other) noexcept {
    if (this != &other) {
      Reset();
      m_intDescriptor = other.Release();
    }
    return *this;
  }
  ~FileHandle() { Reset(); }

  int Get() const { return m_intDescriptor; }
  explicit operator bool() const { return m_intDescriptor >= 0; }
  int Release() { return std::exchange(m_intDescriptor, -1); }
  void Reset() {
    if (m_intDescriptor >= 0) close(m_intDescriptor);
    m_intDescriptor = -1;
  }

 private:
  int m_intDescriptor = -1;
};

}  // namespace tarvik::remote
