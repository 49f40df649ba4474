#pragma once

#include <string>

#include "support/Types.h"

namespace tarvik {

/// The allowed values of a field that steps through a list: numbers separated by ";", always with "." as
/// separator, whatever the locale's is, since a form's stored properties travel between machines.
class ValueList {
 public:
  const std::string &Text() const { return m_strValueArray; }
  /// An empty text ends the list mode and leaves the count as it was.
  void SetText(const std::string &strValueArray);

  Boolean ArrayMode() const { return m_fArrayMode; }
  Integer Index() const { return m_nArrayIndex; }
  Integer Count() const { return m_nArrayCount; }

  /// Goes to the entry, counted from the whole list on so that -1 is the last, and gives its number.
  /// Error 13 when the entry is no number; the list stands on it all the same.
  Double GetArrayValue(Integer intIndex);

  template <class Archive>
  void VisitState(Archive &archive) {
    archive.Shown(m_strValueArray);
    archive.Shown(m_fArrayMode);
    archive.Shown(m_nArrayIndex);
    archive.Shown(m_nArrayCount);
  }

 private:
  std::string m_strValueArray;
  Boolean m_fArrayMode = False;
  Integer m_nArrayIndex = 0;
  Integer m_nArrayCount = 0;
};

}  // namespace tarvik
