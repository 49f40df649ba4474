#include "scpi/simulator/MessageFramer.h"

#include <utility>

#include "common/Characters.h"

namespace tarvik::scpisim {

std::optional<MessageFramer::Message> MessageFramer::Next() {
  for (std::size_t lngAt = 0; lngAt < m_strInput.size(); ++lngAt) {
    const char ch = m_strInput[lngAt];
    if (Advance(ch)) {
      m_strInput.erase(0, lngAt + 1);
      return Message{std::exchange(m_strMessage, {}), std::exchange(m_fOverrun, false)};
    }
    if (m_fOverrun) continue;
    m_strMessage += ch;
    if (m_strMessage.size() <= m_lngLongest) continue;
    m_fOverrun = true;
    m_strMessage.clear();
  }
  m_strInput.clear();
  return std::nullopt;
}

bool MessageFramer::Advance(char ch) {
  if (ch == '\n' && m_place != Place::Block) {
    m_place = Place::Plain;
    return true;
  }
  switch (m_place) {
    case Place::Plain: AdvancePlain(ch); break;
    case Place::String:
      if (ch == m_chQuote) m_place = Place::Plain;
      break;
    case Place::AfterHash: BeginBlock(ch); break;
    case Place::BlockLength: AdvanceLength(ch); break;
    case Place::Block:
      if (--m_lngBytes == 0) m_place = Place::Plain;
      break;
    case Place::IndefiniteBlock: break;
  }
  return false;
}

void MessageFramer::AdvancePlain(char ch) {
  if (ch == '#') m_place = Place::AfterHash;
  if (ch != '"' && ch != '\'') return;
  m_place = Place::String;
  m_chQuote = ch;
}

void MessageFramer::BeginBlock(char ch) {
  m_place = ch == '0' ? Place::IndefiniteBlock : Place::Plain;
  if (ch < '1' || ch > '9') return;
  m_place = Place::BlockLength;
  m_intDigits = ch - '0';
  m_lngBytes = 0;
}

void MessageFramer::AdvanceLength(char ch) {
  if (!driver::IsDigit(ch)) {
    m_place = Place::Plain;
    return;
  }
  m_lngBytes = m_lngBytes * 10 + static_cast<std::size_t>(ch - '0');
  if (--m_intDigits == 0) m_place = m_lngBytes > 0 ? Place::Block : Place::Plain;
}

}  // namespace tarvik::scpisim
