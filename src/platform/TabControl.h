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
  /// Shows the page; raises Click if it was not visible before.
  void SetTab(Long lngPage);
  Long Tabs() const { return count(); }
  /// Text that a screen reader adds to the caption of a tab; the tab itself does not change.
  void SetSpokenNote(Long lngPage, const std::string &strNote);
  std::string Tag() const { return m_strTag; }
  void SetTag(const std::string &strTag) { m_strTag = strTag; }

  /// The visible page changed; the argument is the previous one.
  Event<Long> Click;

 private:
  std::string m_strTag;
  Long m_lngTab = -1;
  bool m_fProgramChange = false;
};

}  // namespace tarvik
