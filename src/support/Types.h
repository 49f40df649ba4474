#pragma once

#include <array>
#include <concepts>
#include <cstdint>

#include "support/RunTimeError.h"

namespace tarvik {

/// 16-bit automation truth value: 0 is false, -1 is true.
class Boolean {
 public:
  constexpr Boolean() = default;
  /// From bool only, so that pointers and numbers do not convert implicitly.
  template <std::same_as<bool> Bool>
  constexpr Boolean(Bool fValue) : m_intValue(fValue ? std::int16_t{-1} : std::int16_t{0}) {}

  /// Any nonzero word counts as true and is kept as -1.
  static constexpr Boolean FromWord(std::int32_t lngWord) { return Boolean(lngWord != 0); }

  constexpr operator bool() const { return m_intValue != 0; }
  constexpr std::int16_t Word() const { return m_intValue; }

 private:
  std::int16_t m_intValue = 0;
};

inline constexpr Boolean True = true;
inline constexpr Boolean False = false;

using Byte = std::uint8_t;
using Integer = std::int16_t;
using Long = std::int32_t;
using Single = float;
using Double = double;

/// One entry for each output channel, addressed by the channel number 1 or 2.
/// Any other index is run-time error 9.
template <class T>
class ChannelArray {
 public:
  constexpr ChannelArray() = default;
  constexpr ChannelArray(T first, T second) : m_arr{first, second} {}

  T &operator[](Long lngChannel) { return m_arr[Slot(lngChannel)]; }
  const T &operator[](Long lngChannel) const { return m_arr[Slot(lngChannel)]; }

  auto begin() { return m_arr.begin(); }
  auto end() { return m_arr.end(); }
  auto begin() const { return m_arr.begin(); }
  auto end() const { return m_arr.end(); }

  bool operator==(const ChannelArray &) const = default;

 private:
  static std::size_t Slot(Long lngChannel) {
    if (lngChannel < 1 || lngChannel > 2) RaiseError(ErrSubscriptOutOfRange);
    return static_cast<std::size_t>(lngChannel - 1);
  }

  std::array<T, 2> m_arr{};
};

}  // namespace tarvik
