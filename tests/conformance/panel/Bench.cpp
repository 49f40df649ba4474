#include "Bench.h"

namespace tarvik::paneltest {

const Json Bench::NoResult = Json(Json::value_t::discarded);

void Bench::Run(const std::string &strCommand, Words &words, Json &answer) {
  if (strCommand == "user") {
    ActAsUser(words.Number(), answer);
    return;
  }
  const auto action = m_actions.find(strCommand);
  if (action == m_actions.end()) throw BadLine("unknown command " + strCommand);
  const Json ret = action->second(words);
  if (!ret.is_discarded()) answer["ret"] = ret;
}

}  // namespace tarvik::paneltest
