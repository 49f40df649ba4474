#pragma once

#include <string>

#include "support/Types.h"

namespace tarvik {

/// Cursor moves other than to a decimal position.
enum CursorMode : Long {
  curNext = -905,     ///< once more in the direction of the last move
  curRestore = -904,  ///< to the last position
  curRight = -903,
  curLeft = -902,
  curLast = -901,
  curFirst = -900,
};

/// The text box as the cursor sees it. Positions count characters from 0.
class CursorText {
 public:
  virtual ~CursorText() = default;
  virtual std::u16string Content() const = 0;
  virtual Long SelStart() const = 0;
  virtual Long SelLength() const = 0;
  /// Clamped to the text's length; clears the selection. Error 380 below 0.
  virtual void SetSelStart(Long lngStart) = 0;
  /// Cut at the end of the text.
  virtual void SetSelLength(Long lngLength) = 0;
};

/// The one-character selection that marks the digit to be stepped. It skips separator and sign.
class DigitCursor {
 public:
  explicit DigitCursor(CursorText &text) : m_text(text) {}

  void SetDecimal(char chDecimal) { m_chDecimal = static_cast<char16_t>(chDecimal); }
  void Reset();

  /// Moves to a mode's place or to a decimal position (0 units, 1 tens, -1 tenths). A place before the text
  /// moves nothing.
  void PlaceCursor(Long lngMode);
  /// PlaceCursor, then on over separator and sign.
  void MoveCursor(Long lngMode);
  /// Decimal position of the cursor, kept for CursorDigit. Separator and units both count as 0.
  Long GetCursorDigit();
  /// The selected character; fFirst tells whether the cursor stood at the start of the text before a
  /// selection of another length was corrected.
  std::u16string GetCursorChar(Boolean &fFirst);

  Long CursorPos() const { return m_lngCursorPos; }
  Long CursorDigit() const { return m_lngCursorDigit; }
  Long LastMode() const { return m_lngLastMode; }

 private:
  void SetStart(Long lngMode);
  /// 1-based place of the separator, 0 without one.
  Long SeparatorPlace() const;
  std::u16string Selected() const;

  CursorText &m_text;
  char16_t m_chDecimal = u'.';
  Long m_lngCursorPos = 0;
  Long m_lngCursorDigit = 0;
  Long m_lngLastMode = 0;
};

}  // namespace tarvik
