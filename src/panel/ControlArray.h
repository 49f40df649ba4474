#pragma once

#include <utility>
#include <vector>

#include "support/RunTimeError.h"
#include "support/Types.h"

namespace tarvik {

/// Controls of one name, addressed by their number. A number without a control is error 340.
template <class T>
class ControlArray {
 public:
  T &operator[](Long lngIndex) const {
    for (const auto &[lngNumber, control] : m_controls)
      if (lngNumber == lngIndex) return *control;
    RaiseError(ErrNoSuchElement);
  }
  /// Call in ascending order of the numbers.
  void Add(Long lngIndex, T &control) { m_controls.emplace_back(lngIndex, &control); }
  /// Pairs of number and pointer, in the order of the numbers.
  auto begin() const { return m_controls.begin(); }
  auto end() const { return m_controls.end(); }
  /// The bare pointers, in the order of the numbers.
  std::vector<T *> All() const {
    std::vector<T *> all;
    for (const auto &[lngNumber, control] : m_controls) all.push_back(control);
    return all;
  }

 private:
  std::vector<std::pair<Long, T *>> m_controls;
};

}  // namespace tarvik
