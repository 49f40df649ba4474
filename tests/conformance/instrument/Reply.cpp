#include "Reply.h"

#include "support/RunTimeError.h"

namespace tarvik::test {

Arguments::Arguments(const std::vector<Token> &arrTokens, std::size_t first) {
  for (std::size_t i = first; i < arrTokens.size(); ++i) {
    const Token &token = arrTokens[i];
    if (!token.fWord)
      m_arr.push_back(token.value);
    else if (token.strWord == "true" || token.strWord == "false")
      m_arr.push_back(Json(token.strWord == "true" ? -1 : 0));
    else if (token.strWord == "null")
      m_arr.push_back(std::nullopt);
    else
      m_arr.push_back(Json(token.strWord));
  }
  while (!m_arr.empty() && !m_arr.back()) m_arr.pop_back();
}

const Json &Arguments::At(std::size_t place) const {
  if (!Has(place)) throw std::invalid_argument("an argument is missing");
  return *m_arr[place];
}

Reply RunCommand(const CommandTable &table, const std::vector<Token> &arrTokens) {
  if (arrTokens.size() < 2) throw std::invalid_argument("the name of the operation is missing");
  const auto found = table.find(arrTokens[1].strWord);
  if (found == table.end()) throw std::invalid_argument("unknown operation " + arrTokens[1].strWord);
  Reply reply;
  try {
    found->second(Arguments(arrTokens, 2), reply);
  } catch (const RunTimeError &error) {
    reply.result = Json::array({"Error"});
    reply.error = {{"number", error.Number()}, {"description", error.Description()}};
  }
  return reply;
}

}  // namespace tarvik::test
