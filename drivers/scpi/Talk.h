#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "scpi/Line.h"

namespace tarvik::scpi {

/// What an instrument takes in one message, and how its answers come.
struct MessageLimits {
  std::size_t input = 256;    ///< bytes of a message, with its end
  std::size_t answer = 4096;  ///< bytes of an answer
  bool fTogether = true;      ///< several queries may stand in one message
};

/// The talk with one instrument: commands and queries packed into as few messages as its buffers allow. What fails
/// raises driver::Failure whose text names the address and the message; the line is cleared then, so that the next
/// message meets no late answer.
class Talk {
 public:
  Talk(std::unique_ptr<Line> line, std::string strAddress)
      : m_line(std::move(line)), m_strAddress(std::move(strAddress)) {}

  void SetLimits(const MessageLimits &limits) { m_limits = limits; }
  /// For connecting and for each answer.
  void SetTimeout(Milliseconds timeout) { m_timeout = timeout; }
  const std::string &AddressText() const { return m_strAddress; }

  void Open();
  void Close() { m_line->Close(); }

  /// Sends commands in their order and returns when they have been carried out. Each entry, which may be several
  /// commands, stays within one message. Each message is confirmed by itself, so that none is lost unseen and none
  /// meets a full buffer.
  void Tell(const std::vector<std::string> &arrCommands);
  /// Answers are numbers and words of about so many bytes; more queries go into one message only where so many of them
  /// fit into what the instrument answers at once.
  static constexpr std::size_t UsualAnswer = 24;
  /// The answers to the queries, in their order.
  std::vector<std::string> Ask(const std::vector<std::string> &arrQueries, std::size_t answerSize = UsualAnswer);
  std::string Ask(const std::string &strQuery) { return Ask(std::vector{strQuery}).front(); }
  /// One query that may take longer than others.
  std::string Ask(const std::string &strQuery, Milliseconds timeout);

  /// Fails for an answer that is not what the query wants; clears the line, because what comes next may be shifted too.
  [[noreturn]] void RefuseAnswer(const std::string &strQuery, const std::string &strAnswer, const std::string &strWhy);

  /// Messages that were sent.
  std::size_t Messages() const { return m_messages; }

 private:
  /// Runs one step; what fails clears the line and is told with the address and the message.
  template <class Step>
  auto Watched(const std::string &strMessage, Step &&step);
  void Send(const std::string &strMessage);
  std::vector<std::string> AskMessage(const std::vector<std::string> &arrQueries);
  [[noreturn]] void FailAt(const std::string &strMessage, const std::string &strWhy);

  const std::unique_ptr<Line> m_line;
  const std::string m_strAddress;
  MessageLimits m_limits;
  Milliseconds m_timeout{5000};
  std::size_t m_messages = 0;
};

}  // namespace tarvik::scpi
