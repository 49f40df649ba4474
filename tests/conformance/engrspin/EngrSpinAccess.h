#pragma once

#include "engrspin/EngrSpin.h"
#include "engrspin/SpinControl.h"
#include "platform/FieldLabel.h"

namespace tarvik {

/// Door into a field for tests. It only forwards.
struct EngrSpinAccess {
  explicit EngrSpinAccess(EngrSpin &field) : f(field) {}

  NumberTextBox &txtNumber() const { return *f.txtNumber; }
  SpinControl &spinCtl() const { return *f.spinCtl; }
  FieldLabel &lblCaption() const { return *f.lblCaption; }
  FieldLabel &lblUnits() const { return *f.lblUnits; }
  EngrNumber &number() const { return *f.m_number; }
  DigitCursor &cursor() const { return f.m_cursor; }
  ValueList &values() const { return f.m_values; }
  const FieldLayout &layout() const { return f.m_layout; }

  Integer KeyDown(Integer intCode) const { return f.KeyDown(intCode); }
  bool KeyPress() const { return f.KeyPress(); }
  void Validate() const { f.txtNumber_Validate(); }
  void LostFocus() const { f.txtNumber_LostFocus(); }
  void BeginEdit() const { f.BeginEdit(); }
  void EndEdit() const { f.EndEdit(); }
  void ParseEntry() const { f.ParseEntry(); }
  void ShowText(const std::string &strText) const { f.ShowText(strText); }
  void StepUp() const { f.StepUp(); }
  void StepDown() const { f.StepDown(); }
  Double GetStepSize() const { return f.GetStepSize(); }
  Double GetArrayValue(Integer intIndex) const { return f.GetArrayValue(intIndex); }
  void NotifyUpdate() const { f.NotifyUpdate(); }

  bool fEditing() const { return f.m_fEditing; }
  bool fUpdating() const { return f.m_fUpdating; }
  bool fSwallowKey() const { return f.m_fSwallowKey; }
  bool fReadOnly() const { return f.m_fReadOnly; }
  bool fBlanked() const { return f.m_fBlanked; }
  bool fInKeyDown() const { return f.m_fInKeyDown; }
  bool fInSpinChange() const { return f.m_fInSpinChange; }
  bool fInResize() const { return f.m_fInResize; }
  const std::string &strSavedText() const { return f.m_strSavedText; }

  EngrSpin &f;
};

}  // namespace tarvik
