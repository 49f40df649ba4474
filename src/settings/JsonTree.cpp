#include "settings/JsonTree.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <nlohmann/json.hpp>

#include "settings/SettingText.h"

namespace tarvik {

namespace {

using Json = nlohmann::json;

/// Deeper than any file of ours; a text of nothing but brackets must not use up the stack.
constexpr std::size_t Deepest = 16;

[[noreturn]] void RaiseAt(std::ptrdiff_t line, std::ptrdiff_t column, const std::string &strWhy) {
  throw RunTimeError(ErrInvalidFileFormat,
                     "line " + std::to_string(line) + ", column " + std::to_string(column) + ": " + strWhy);
}

/// Tells how far the parser has read.
class Follower {
 public:
  using iterator_category = std::forward_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char *;
  using reference = const char &;

  Follower(const char *place, const char **pReached) : m_place(place), m_pReached(pReached) {}
  reference operator*() const { return *m_place; }
  Follower &operator++() {
    ++m_place;
    *m_pReached = m_place;
    return *this;
  }
  Follower operator++(int) {
    Follower before = *this;
    ++*this;
    return before;
  }
  bool operator==(const Follower &other) const { return m_place == other.m_place; }
  bool operator!=(const Follower &other) const { return m_place != other.m_place; }

 private:
  const char *m_place;
  const char **m_pReached;
};

/// Builds the tree from the parser's events.
class Builder {
 public:
  explicit Builder(const std::string &strText) : m_strText(strText), m_reached(strText.data()) {}

  JsonNode Read() {
    const Follower begin(m_strText.data(), &m_reached), end(m_strText.data() + m_strText.size(), &m_reached);
    Json::sax_parse(begin, end, this);
    return std::move(m_root);
  }

  // The events; each answers whether the parser is to go on.
  bool null() { return Put({}); }
  bool boolean(bool fValue) { return Put(fValue); }
  bool number_integer(Json::number_integer_t value) { return Put(Whole(static_cast<Double>(value))); }
  bool number_unsigned(Json::number_unsigned_t value) { return Put(Whole(static_cast<Double>(value))); }
  bool number_float(Json::number_float_t dblValue, const std::string &) {
    return Put(JsonNode::Number{dblValue, false});
  }
  bool string(std::string &strValue) { return Put(std::move(strValue)); }
  bool binary(Json::binary_t &) { return false; }
  bool start_object(std::size_t) { return Enter(JsonNode::Object{}); }
  bool start_array(std::size_t) { return Enter(JsonNode::List{}); }
  bool end_object() { return Leave(); }
  bool end_array() { return Leave(); }
  bool key(std::string &strKey) {
    m_strName = std::move(strKey);
    m_lngNameLine = LineReached();
    return true;
  }
  bool parse_error(std::size_t, const std::string &, const Json::exception &error) {
    const std::string strWhat = error.what();
    const std::size_t colon = strWhat.find(": "), bracket = strWhat.find("] ");
    const auto from = colon == std::string::npos ? bracket : colon;
    const char *lineStart = m_reached;
    while (lineStart != m_strText.data() && lineStart[-1] != '\n') --lineStart;
    RaiseAt(LineReached(), std::max<std::ptrdiff_t>(m_reached - lineStart, 1),
            from == std::string::npos ? strWhat : strWhat.substr(from + 2));
  }

 private:
  using Value = decltype(JsonNode::value);

  static JsonNode::Number Whole(Double dblValue) { return {dblValue, true}; }

  Long LineReached() {
    m_lngLine += static_cast<Long>(std::count(m_counted, m_reached, '\n'));
    m_counted = m_reached;
    return m_lngLine;
  }

  JsonNode &Add(Value value) {
    // A value in an object stands where its name does, so that a number's line does not hang on what ends it.
    const Long lngLine = m_strName.empty() ? LineReached() : m_lngNameLine;
    JsonNode node{std::move(value), std::exchange(m_strName, {}), lngLine, {}};
    if (m_arrOpen.empty()) return m_root = std::move(node);
    return m_arrOpen.back()->arrParts.emplace_back(std::move(node));
  }
  bool Put(Value value) {
    Add(std::move(value));
    return true;
  }
  bool Enter(Value value) {
    if (m_arrOpen.size() == Deepest) RaiseAt(LineReached(), 1, "too many brackets within one another");
    m_arrOpen.push_back(&Add(std::move(value)));
    return true;
  }
  bool Leave() {
    m_arrOpen.pop_back();
    return true;
  }

  const std::string &m_strText;
  const char *m_reached;
  const char *m_counted = m_strText.data();
  Long m_lngLine = 1;
  JsonNode m_root;
  /// The nodes around the next value. Only the last one grows, so the others stay where they are.
  std::vector<JsonNode *> m_arrOpen;
  std::string m_strName;
  Long m_lngNameLine = 1;
};

}  // namespace

const char *JsonNode::KindName() const {
  static constexpr const char *Names[] = {"null", "true or false", "a number", "a text", "a list", "an object"};
  return Names[value.index()];
}

JsonNode ReadJson(const std::string &strText) { return Builder(strText).Read(); }

std::string JsonText(const std::string &strText) {
  return Json(strText).dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string JsonNumber(Double dblValue) {
  // As a whole number a zero would lose its sign.
  if (dblValue == 0 && std::signbit(dblValue)) return "-0.0";
  return ShortestText(dblValue);
}

}  // namespace tarvik
