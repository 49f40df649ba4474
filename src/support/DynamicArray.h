#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "support/Types.h"

namespace tarvik {

/// A dynamic array with a lower bound, as it is passed to and from the driver.
/// One dimension is the rule; an array without or with two dimensions can be
/// handed in by a foreign host and fails at the first access with error 9.
template <class T>
class DynamicArray {
 public:
  DynamicArray() = default;
  explicit DynamicArray(Long lngLowerBound, std::vector<T> arrElements = {})
      : m_lngLowerBound(lngLowerBound), m_arr(std::move(arrElements)) {}

  static DynamicArray WithDimensions(Integer intDimensions) {
    DynamicArray arr;
    arr.m_intDimensions = intDimensions;
    return arr;
  }

  Integer Dimensions() const { return m_intDimensions; }
  Long LowerBound() const { return m_lngLowerBound; }
  Long UpperBound() const { return m_lngLowerBound + Count() - 1; }
  Long Count() const { return static_cast<Long>(m_arr.size()); }

  T &operator[](Long lngIndex) { return m_arr[Slot(lngIndex)]; }
  const T &operator[](Long lngIndex) const { return m_arr[Slot(lngIndex)]; }

  std::vector<T> &Elements() { return m_arr; }
  const std::vector<T> &Elements() const { return m_arr; }

  /// Makes it one-dimensional with these bounds; what was in it is lost.
  void ReDim(Long lngLowerBound, Long lngUpperBound) {
    m_intDimensions = 1;
    m_lngLowerBound = lngLowerBound;
    m_arr.assign(static_cast<std::size_t>(std::int64_t{lngUpperBound} - lngLowerBound + 1), T{});
  }

 private:
  std::size_t Slot(Long lngIndex) const {
    if (m_intDimensions != 1 || lngIndex < m_lngLowerBound || lngIndex > UpperBound())
      RaiseError(ErrSubscriptOutOfRange);
    return static_cast<std::size_t>(lngIndex - m_lngLowerBound);
  }

  Integer m_intDimensions = 1;
  Long m_lngLowerBound = 0;
  std::vector<T> m_arr;
};

using ByteArray = DynamicArray<Byte>;
using BooleanArray = DynamicArray<Boolean>;

}  // namespace tarvik
