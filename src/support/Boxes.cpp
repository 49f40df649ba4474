#include "support/Boxes.h"

#include "support/UserEvent.h"

namespace tarvik {

namespace {

template <class Serve>
auto WhileWaiting(Serve &&serve) {
  const UserEvent::Waiting waiting;
  return serve();
}

template <class Ask>
auto Asked(Ask &&ask) {
  UserEvent::DropInput();
  UserEvent::LeaveIfEnded();
  auto answer = WhileWaiting(ask);
  UserEvent::LeaveIfEnded();
  return answer;
}

}  // namespace

BoxAnswer ShowBox(const std::string &strText, BoxIcon icon, BoxButtons buttons, const std::string &strTitle) {
  return Asked([&] { return TheHost().MsgBox(strText, icon, buttons, strTitle); });
}

std::string AskForText(const std::string &strPrompt, const std::string &strTitle, const std::string &strDefault) {
  return Asked([&] { return TheHost().InputBox(strPrompt, strTitle, strDefault); });
}

void YieldToEvents() {
  WhileWaiting([] { TheHost().DoEvents(); });
  UserEvent::LeaveIfEnded();
}

}  // namespace tarvik
