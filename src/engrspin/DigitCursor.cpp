#include "engrspin/DigitCursor.h"

namespace tarvik {

void DigitCursor::Reset() {
  m_lngCursorPos = 0;
  m_lngCursorDigit = 0;
}

Long DigitCursor::SeparatorPlace() const {
  const auto place = m_text.Content().find(m_chDecimal);
  return place == std::u16string::npos ? 0 : static_cast<Long>(place) + 1;
}

std::u16string DigitCursor::Selected() const {
  const std::u16string strText = m_text.Content();
  const auto start = static_cast<std::size_t>(m_text.SelStart());
  if (start >= strText.size()) return {};
  return strText.substr(start, static_cast<std::size_t>(m_text.SelLength()));
}

void DigitCursor::SetStart(Long lngMode) {
  const Long lngLength = static_cast<Long>(m_text.Content().size());
  const Long lngStart = m_text.SelStart();
  switch (lngMode) {
    case curRestore:
      if (m_lngCursorPos >= 0 && m_lngCursorPos < lngLength) m_text.SetSelStart(m_lngCursorPos);
      break;
    case curRight:
      if (m_text.SelLength() == 1) m_text.SetSelStart(lngStart >= lngLength - 1 ? 0 : lngStart + 1);
      break;
    case curLeft: m_text.SetSelStart(lngStart == 0 ? lngLength - 1 : lngStart - 1); break;
    case curLast: m_text.SetSelStart(lngLength - 1); break;
    case curFirst: m_text.SetSelStart(0); break;
    default: m_text.SetSelStart(SeparatorPlace() - lngMode - (lngMode < 0 ? 1 : 2)); break;
  }
}

void DigitCursor::PlaceCursor(Long lngMode) {
  if (lngMode == curNext) {
    PlaceCursor(m_lngLastMode == curLeft || m_lngLastMode == curRight ? m_lngLastMode : curRight);
    return;
  }
  IgnoreErrors([&] {
    SetStart(lngMode);
    m_lngCursorPos = m_text.SelStart();
    m_text.SetSelLength(1);
    m_lngLastMode = lngMode;
  });
}

void DigitCursor::MoveCursor(Long lngMode) {
  PlaceCursor(lngMode);
  if (Selected() == std::u16string(1, m_chDecimal)) PlaceCursor(curNext);
  const std::u16string strSelected = Selected();
  if (strSelected == u"+" || strSelected == u"-") PlaceCursor(curNext);
}

Long DigitCursor::GetCursorDigit() {
  Long lngDigit = SeparatorPlace() - m_text.SelStart() - 2;
  if (lngDigit < 0) ++lngDigit;
  m_lngCursorDigit = lngDigit;
  return lngDigit;
}

std::u16string DigitCursor::GetCursorChar(Boolean &fFirst) {
  fFirst = m_text.SelStart() == 0;
  if (m_text.SelLength() != 1) MoveCursor(curRestore);
  return Selected();
}

}  // namespace tarvik
