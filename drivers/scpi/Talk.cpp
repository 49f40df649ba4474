#include "scpi/Talk.h"

#include <algorithm>
#include <utility>

#include "scpi/Answer.h"

namespace tarvik::scpi {

namespace {

/// Bytes of a message or an answer in the text of a failure.
constexpr std::size_t LongestQuote = 80;

/// The beginning of a message for the eyes of a user.
std::string Quote(const std::string &strMessage) {
  std::string strQuote = strMessage.substr(0, LongestQuote);
  for (char &ch : strQuote)
    if (static_cast<unsigned char>(ch) < 0x20 || static_cast<unsigned char>(ch) > 0x7E) ch = '?';
  return strMessage.size() > LongestQuote ? strQuote + "..." : strQuote;
}

std::string Joined(const std::vector<std::string> &arrParts) {
  std::string strAll;
  for (const std::string &strPart : arrParts) strAll += (strAll.empty() ? "" : ";") + strPart;
  return strAll;
}

/// The parts in groups, each of which is one message of at most `bytes` bytes, with its end, and `count` parts. A part
/// that is longer by itself is a message all the same: the instrument then says what it thinks of it.
std::vector<std::vector<std::string>> Packed(const std::vector<std::string> &arrParts, std::size_t bytes,
                                             std::size_t count) {
  std::vector<std::vector<std::string>> arrMessages;
  std::size_t size = 0;
  for (const std::string &strPart : arrParts) {
    if (arrMessages.empty() || size + 1 + strPart.size() + 1 > bytes || arrMessages.back().size() == count) {
      arrMessages.emplace_back();
      size = 0;
    }
    size += strPart.size() + (arrMessages.back().empty() ? 0 : 1);
    arrMessages.back().push_back(strPart);
  }
  return arrMessages;
}

}  // namespace

void Talk::FailAt(const std::string &strMessage, const std::string &strWhy) {
  try {
    m_line->Clear(m_timeout);
  } catch (const driver::Failure &) {
    m_line->Close();  // the next message opens it anew, or tells why not
  }
  throw driver::Failure(m_strAddress + ": " + Quote(strMessage) + ": " + strWhy);
}

template <class Step>
auto Talk::Watched(const std::string &strMessage, Step &&step) {
  try {
    return step();
  } catch (const driver::Failure &failure) {
    FailAt(strMessage, failure.what());
  }
}

void Talk::Open() {
  try {
    m_line->Open(m_timeout);
  } catch (const driver::Failure &failure) {
    throw driver::Failure(m_strAddress + ": " + failure.what());
  }
}

void Talk::Send(const std::string &strMessage) {
  Open();
  ++m_messages;
  Watched(strMessage, [&] { m_line->Send(strMessage, m_timeout); });
}

void Talk::Tell(const std::vector<std::string> &arrCommands) {
  const std::string strConfirm = "*OPC?";
  const std::size_t bytes = m_limits.input - strConfirm.size() - 1;
  for (const auto &arrMessage : Packed(arrCommands, bytes, arrCommands.size())) {
    std::string strMessage = Joined(arrMessage);
    if (m_limits.fTogether)
      strMessage += ";" + strConfirm;
    else
      Send(strMessage);
    const std::string strAnswer = AskMessage({m_limits.fTogether ? strMessage : strConfirm}).front();
    if (NumberOf(strAnswer) != 1) RefuseAnswer(strMessage, strAnswer, "does not confirm it");
  }
}

std::vector<std::string> Talk::Ask(const std::vector<std::string> &arrQueries, std::size_t answerSize) {
  const std::size_t most = m_limits.fTogether ? std::max<std::size_t>(m_limits.answer / answerSize, 1) : 1;
  std::vector<std::string> arrAnswers;
  for (const auto &arrMessage : Packed(arrQueries, m_limits.input, most))
    for (std::string &strAnswer : AskMessage(arrMessage)) arrAnswers.push_back(std::move(strAnswer));
  return arrAnswers;
}

std::string Talk::Ask(const std::string &strQuery, Milliseconds timeout) {
  const Milliseconds before = std::exchange(m_timeout, std::max(timeout, m_timeout));
  try {
    std::string strAnswer = Ask(strQuery);
    m_timeout = before;
    return strAnswer;
  } catch (...) {
    m_timeout = before;
    throw;
  }
}

std::vector<std::string> Talk::AskMessage(const std::vector<std::string> &arrQueries) {
  const std::string strMessage = Joined(arrQueries);
  Send(strMessage);
  const std::string strAnswer = Watched(strMessage, [&] { return m_line->Receive(m_limits.answer, m_timeout); });
  std::vector<std::string> arrAnswers = SplitAnswer(strAnswer, ';');
  if (arrAnswers.size() != arrQueries.size())
    FailAt(strMessage, std::to_string(arrAnswers.size()) + " answers to " + std::to_string(arrQueries.size()) +
                           " queries: " + Quote(strAnswer));
  return arrAnswers;
}

void Talk::RefuseAnswer(const std::string &strQuery, const std::string &strAnswer, const std::string &strWhy) {
  FailAt(strQuery, "the answer \"" + Quote(strAnswer) + "\" " + strWhy);
}

}  // namespace tarvik::scpi
