#include "LineProtocol.h"

#include <algorithm>
#include <cstdio>
#include <iostream>

namespace tarvik::test {

namespace {

bool BeginsJson(char ch) { return std::string_view("\"{[-0123456789").find(ch) != std::string_view::npos; }

/// Where the JSON value at the beginning of the text ends: at the first blank outside of texts and brackets.
std::size_t JsonLength(std::string_view strText) {
  int depth = 0;
  bool fInText = false;
  for (std::size_t i = 0; i < strText.size(); ++i) {
    const char ch = strText[i];
    if (fInText) {
      if (ch == '\\') ++i;
      if (ch == '"') fInText = false;
      continue;
    }
    if (ch == '"') fInText = true;
    if (ch == '{' || ch == '[') ++depth;
    if (ch == '}' || ch == ']') --depth;
    if (ch == ' ' && depth == 0) return i;
  }
  return strText.size();
}

}  // namespace

std::vector<Token> Tokens(std::string_view strLine) {
  std::vector<Token> arrTokens;
  for (;;) {
    const std::size_t first = strLine.find_first_not_of(' ');
    if (first == std::string_view::npos) return arrTokens;
    strLine.remove_prefix(first);
    Token token;
    std::size_t length = 0;
    if (BeginsJson(strLine.front())) {
      length = JsonLength(strLine);
      token.value = Json::parse(strLine.substr(0, length));
    } else {
      length = std::min(strLine.find(' '), strLine.size());
      token.fWord = true;
      token.strWord = strLine.substr(0, length);
    }
    arrTokens.push_back(std::move(token));
    strLine.remove_prefix(length);
  }
}

int ServeLines(const std::function<Json(const std::string &strLine)> &answer) {
  std::string strLine;
  while (std::getline(std::cin, strLine)) {
    if (!strLine.empty() && strLine.back() == '\r') strLine.pop_back();
    if (strLine.empty() || strLine.front() == '#') continue;
    Json reply;
    try {
      reply = answer(strLine);
    } catch (const std::exception &error) {
      reply = {{"protocol_error", error.what()}};
    }
    std::cout << reply.dump(-1, ' ', false, Json::error_handler_t::replace) << std::endl;
  }
  return 0;
}

}  // namespace tarvik::test
