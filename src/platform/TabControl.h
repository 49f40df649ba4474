#pragma once

#include <QTabWidget>

#include "platform/WidgetControl.h"
#include "support/Event.h"

namespace tarvik {

/// The tabbed page control. Pages count from 0.
class TabControl : public WidgetControl<QTabWidget> {
  Q_OBJECT

 public:
  explicit TabControl(QWidget *parent = nullptr);

  Long Tab() const { return m_lngTab; }
  /// Brings the page to the front; raises Click when that is another one than before.
  void SetTab(Long lngPage);
  Long Tabs() const { return count(); }
  /// What a screen reader says behind the caption of a tab; the tab itself does not change.
  void SetSpokenNote(Long lngPage, const std::string &strNote);
  std::string Tag() const { return m_strTag; }
  void SetTag(const std::string &strTag) { m_strTag = strTag; }

  /// The page in front changed; the argument is the page before.
  Event<Long> Click;

 private:
  std::string m_strTag;
  Long m_lngTab = -1;
  bool m_fProgramChange = false;
};

}  // namespace tarvik
