#pragma once

#include <string>

#include "automation/Abi.h"

namespace tarvik {

/// A modal dialog of the system that asks for one line of text. Its window belongs to the calling thread's active one.
class TextPrompt {
 public:
  /// Identifiers of the prompt's label and of the field.
  static constexpr int Label = 100, Field = 101;

  TextPrompt(const std::string &strPrompt, const std::string &strTitle);

  /// What was entered; the empty text when the dialog was cancelled.
  std::string Ask(const std::string &strDefault);

 private:
  static INT_PTR CALLBACK OnMessage(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

  const std::wstring m_strPrompt, m_strTitle;
  std::wstring m_strText;
};

}  // namespace tarvik
