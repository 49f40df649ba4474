#pragma once

#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "RecordJson.h"

namespace tarvik::test {

/// Arguments of a command, by place; an argument may be missing or left out.
class Arguments {
 public:
  explicit Arguments(const std::vector<Token> &arrTokens, std::size_t first);

  std::size_t Count() const { return m_arr.size(); }
  bool Has(std::size_t place) const { return place < m_arr.size() && m_arr[place].has_value(); }
  const Json &At(std::size_t place) const;

  template <class T>
  T Get(std::size_t place) const {
    T value{};
    FromJson(At(place), value);
    return value;
  }
  template <class T>
  T Get(std::size_t place, T otherwise) const {
    return Has(place) ? Get<T>(place) : otherwise;
  }

 private:
  std::vector<std::optional<Json>> m_arr;
};

/// What a command answers: its result, and the arguments by reference as they are afterwards.
struct Reply {
  Json result = Json::array({"None"});
  Json error = nullptr;
  Json byref = Json::object();

  void Set(Boolean fValue) { result = {"Boolean", fValue.Word()}; }
  void Set(Long lngValue) { result = {"Long", lngValue}; }
  void Set(Double dblValue) { result = {"Double", ToText17(dblValue)}; }
  void Set(const std::string &strText) { result = {"String", strText}; }
  void Set(const std::optional<Long> &lngValue) {
    if (lngValue)
      Set(*lngValue);
    else
      result = Json::array({"Empty"});
  }
};

using Command = std::function<void(const Arguments &, Reply &)>;
using CommandTable = std::map<std::string, Command>;

/// The public operations of gobjInstr.
const CommandTable &InstrumentOperations();

/// The shared procedures. `trace` takes what happens to the controls that they are given.
CommandTable SharedProcedures(std::function<void(Json)> trace);

/// Runs a command of the table. A run-time error that leaves it becomes the reply's error.
Reply RunCommand(const CommandTable &table, const std::vector<Token> &arrTokens);

}  // namespace tarvik::test
