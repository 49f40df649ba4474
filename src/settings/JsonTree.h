#pragma once

#include <string>
#include <variant>
#include <vector>

#include "support/Types.h"

namespace tarvik {

/// A value of a JSON text with the line where it stands, so that whoever finds it wrong can say where. Unlike other
/// trees it keeps names that stand twice in an object.
struct JsonNode {
  struct Object {};
  struct List {};
  /// A number, and whether it was written as a whole one.
  struct Number {
    Double dblValue;
    bool fWhole;
  };

  std::variant<std::monostate, bool, Number, std::string, List, Object> value;
  std::string strName{};  ///< in the object around it
  Long lngLine = 1;
  std::vector<JsonNode> arrParts{};  ///< of a list or an object

  template <class Kind>
  bool Is() const {
    return std::holds_alternative<Kind>(value);
  }
  /// "a text", "an object" and alike, for messages.
  const char *KindName() const;
};

/// Reads a JSON text. RunTimeError 321 for what is none, with the place: "line 3, column 5: ...".
JsonNode ReadJson(const std::string &strText);

/// Upper bound in bytes of a file that people write: a device or a wrong file is refused before its end is reached.
inline constexpr std::size_t LargestJsonFile = std::size_t{1} << 20;

/// The text in quotes, as JSON has it. Bytes that are no UTF-8 are replaced.
std::string JsonText(const std::string &strText);

/// The shortest number that gives the same Double, written so that it is read as one: 5, 2.5, 5e-08, -0.0.
std::string JsonNumber(Double dblValue);

}  // namespace tarvik
