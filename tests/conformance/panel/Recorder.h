#pragma once

#include <string>
#include <utility>

#include <nlohmann/json.hpp>

namespace tarvik::paneltest {

using Json = nlohmann::json;

/// Observable effects of a command, in order.
class Recorder {
 public:
  /// Returns the place of the entry, by which a result can be filled in later.
  std::size_t Add(Json entry) {
    m_entries.push_back(std::move(entry));
    return m_entries.size() - 1;
  }
  Json &operator[](std::size_t place) { return m_entries[place]; }
  Json Take() { return std::exchange(m_entries, Json::array()); }

 private:
  Json m_entries = Json::array();
};

}  // namespace tarvik::paneltest
