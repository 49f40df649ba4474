#pragma once

#include <cstring>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/Types.h"

namespace tarvik {

/// What a control, or a page besides its controls, shows and remembers.
struct KeptState {
  std::string strSettings;  ///< what an instrument is sent
  std::string strShown;     ///< everything else
  std::string strWords;     ///< the setting as the user reads it; no part of the comparison

  bool operator==(const KeptState &other) const {
    return strSettings == other.strSettings && strShown == other.strShown;
  }
  std::size_t Bytes() const { return sizeof *this + strSettings.size() + strShown.size() + strWords.size(); }
};

/// Takes a state from its owner or brings it back. The owner hands in its members, always in the same order.
class StateArchive {
 public:
  /// Takes a state.
  StateArchive() = default;
  /// Brings back one that was taken from the same owner.
  explicit StateArchive(const KeptState &state) : m_source(&state) {}

  bool Loads() const { return m_source != nullptr; }
  const KeptState &Taken() const { return m_taken; }

  template <class T>
  void Setting(T &value) {
    Visit(value, m_taken.strSettings, m_source ? &m_source->strSettings : nullptr, m_lngSettingsRead);
  }
  template <class T>
  void Shown(T &value) {
    Visit(value, m_taken.strShown, m_source ? &m_source->strShown : nullptr, m_lngShownRead);
  }
  void Words(std::string strWords) { m_taken.strWords = std::move(strWords); }

 private:
  template <class T>
  static void Visit(T &value, std::string &strTo, const std::string *from, std::size_t &lngRead) {
    if constexpr (std::is_trivially_copyable_v<T>) {
      if (!from) {
        strTo.append(reinterpret_cast<const char *>(&value), sizeof value);
        return;
      }
      std::memcpy(&value, from->data() + lngRead, sizeof value);
      lngRead += sizeof value;
    } else {
      std::size_t lngSize = value.size();
      Visit(lngSize, strTo, from, lngRead);
      if (!from) {
        strTo.append(reinterpret_cast<const char *>(value.data()), lngSize);
        return;
      }
      value.resize(lngSize);
      if (lngSize > 0) std::memcpy(value.data(), from->data() + lngRead, lngSize);
      lngRead += lngSize;
    }
  }

  const KeptState *m_source = nullptr;
  KeptState m_taken;
  std::size_t m_lngSettingsRead = 0, m_lngShownRead = 0;
};

}  // namespace tarvik
