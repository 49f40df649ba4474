#include "platform/TabControl.h"

#include <QTabBar>
#include <utility>

#include "platform/Accessibility.h"
#include "platform/ControlEvent.h"

namespace tarvik {

TabControl::TabControl(QWidget *parent) : WidgetControl(parent) {
  connect(this, &QTabWidget::currentChanged, this, [this](int intPage) {
    const Long lngBefore = std::exchange(m_lngTab, intPage);
    // Adding the first page makes it current, which is no click.
    if (m_fProgramChange || lngBefore < 0) return;
    RunUserEvent(*this, "Click", [&] { Click.Raise(lngBefore); });
  });
}

void TabControl::SetTab(Long lngPage) {
  if (lngPage < 0 || lngPage >= Tabs()) RaiseError(ErrInvalidPropertyValue);
  if (lngPage == Tab()) return;
  const Long lngBefore = Tab();
  {
    const ScopedFlag byProgram(*this, m_fProgramChange);
    setCurrentIndex(lngPage);
  }
  Click.Raise(lngBefore);
}

void TabControl::SetSpokenNote(Long lngPage, const std::string &strNote) {
  QString strName = PlainCaption(tabText(lngPage));
  if (!strNote.empty()) strName += QStringLiteral(", ") + QString::fromStdString(strNote);
  const QString strSaid = tabBar()->accessibleTabName(lngPage);
  if (strName == (strSaid.isEmpty() ? PlainCaption(tabText(lngPage)) : strSaid)) return;
  tabBar()->setAccessibleTabName(lngPage, strName);
}

}  // namespace tarvik
