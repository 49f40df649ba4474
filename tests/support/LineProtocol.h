#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "ValueText.h"

namespace tarvik::test {

using Json = nlohmann::json;

/// One token of a command line: a JSON value, or a bare word.
struct Token {
  bool fWord = false;
  std::string strWord;
  Json value;
};

/// Cuts a command line at its blanks. A token that begins with one of " { [ - or a digit is a JSON value, which
/// may hold blanks. Raises std::exception on what is no JSON.
std::vector<Token> Tokens(std::string_view strLine);

/// Answers each line of standard input with one line of JSON, flushed at once, until the input ends. Empty
/// lines and lines that begin with # get no answer; an exception of the command becomes a "protocol_error".
int ServeLines(const std::function<Json(const std::string &strLine)> &answer);

}  // namespace tarvik::test
