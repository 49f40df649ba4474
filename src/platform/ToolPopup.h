#pragma once

#include <QToolButton>
#include <string>
#include <utility>
#include <vector>

#include "platform/WidgetControl.h"
#include "support/Event.h"

namespace tarvik {

/// A toolbar of one button with a drop-down menu.
class ToolPopup : public WidgetControl<QToolButton> {
  Q_OBJECT

 public:
  /// Key and text of a menu entry.
  using Entry = std::pair<std::string, std::string>;

  enum class Face {
    ButtonAndMenu,  ///< the button raises ButtonClick, its arrow opens the menu
    MenuOnly,       ///< the button opens the menu
  };

  explicit ToolPopup(QWidget *parent = nullptr, Face face = Face::ButtonAndMenu);

  std::string Caption() const { return m_strCaption; }
  void SetCaption(const std::string &strCaption);
  std::string Tag() const { return m_strTag; }
  void SetTag(const std::string &strTag) { m_strTag = strTag; }

  const std::vector<Entry> &Entries() const { return m_arrEntries; }
  void SetEntries(std::vector<Entry> arrEntries);

  Event<> ButtonClick;
  Event<const std::string &> ButtonMenuClick;

 protected:
  void keyPressEvent(QKeyEvent *event) override;

 private:
  std::string m_strCaption;
  std::string m_strTag;
  std::vector<Entry> m_arrEntries;
};

}  // namespace tarvik
