#include "platform/MessageList.h"

namespace tarvik {

namespace {

/// The beginning of a text, with no character of UTF-8 cut in two.
std::string Held(const std::string &strText) {
  if (strText.size() <= MessageList::MaxText) return strText;
  std::size_t lngEnd = MessageList::MaxText;
  while (lngEnd > 0 && (static_cast<unsigned char>(strText[lngEnd]) & 0xC0) == 0x80) --lngEnd;
  return strText.substr(0, lngEnd) + " ...";
}

}  // namespace

const char *KindName(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::Stop:
    case BoxIcon::Critical: return "Stop";
    case BoxIcon::Question: return "Question";
    case BoxIcon::Exclamation: return "Warning";
    case BoxIcon::Information: return "Information";
  }
  return "";
}

void MessageList::Add(const std::tm &time, BoxIcon icon, const std::string &strText) {
  std::string strHeld = Held(strText);
  if (!m_arrMessages.empty() && m_arrMessages.back().icon == icon && m_arrMessages.back().strText == strHeld) {
    m_arrMessages.back().Time = time;
    ++m_arrMessages.back().lngCount;
  } else {
    m_arrMessages.push_back({time, icon, std::move(strHeld), 1});
    if (m_arrMessages.size() > MaxMessages) m_arrMessages.pop_front();
  }
  Changed.Raise();
}

void MessageList::AddUnseen() {
  ++m_lngUnseen;
  Changed.Raise();
}

void MessageList::MarkSeen() {
  if (m_lngUnseen == 0) return;
  m_lngUnseen = 0;
  Changed.Raise();
}

}  // namespace tarvik
