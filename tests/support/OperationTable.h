#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "HookedCall.h"

namespace tarvik::test {

/// One entry for each operation of the contract, written by name and found by number. A name that the contract does not
/// have raises std::invalid_argument, so that no entry is there in vain.
template <class Entry>
class OperationTable {
 public:
  OperationTable() : m_arrEntries(Operations().size()) {}

  Entry &operator[](std::string_view strPath) {
    for (const Operation &operation : Operations())
      if (operation.strPath == strPath) return m_arrEntries[operation.number];
    throw std::invalid_argument("no operation " + std::string(strPath));
  }
  const Entry &operator[](const Operation &operation) const { return m_arrEntries[operation.number]; }

 private:
  std::vector<Entry> m_arrEntries;
};

}  // namespace tarvik::test
