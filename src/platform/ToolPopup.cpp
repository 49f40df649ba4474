#include "platform/ToolPopup.h"

#include <QKeyEvent>
#include <QMenu>

#include "platform/ControlEvent.h"
#include "support/Conversions.h"

namespace tarvik {

ToolPopup::ToolPopup(QWidget *parent, Face face) : WidgetControl(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setToolButtonStyle(Qt::ToolButtonTextOnly);
  setPopupMode(face == Face::MenuOnly ? InstantPopup : MenuButtonPopup);
  setMenu(new QMenu(this));
  connect(this, &QToolButton::clicked, this, [this] {
    if (TakeFocusForClick(*this)) RunUserEvent(*this, "ButtonClick", [this] { ButtonClick.Raise(); });
  });
}

void ToolPopup::SetCaption(const std::string &strCaption) {
  m_strCaption = strCaption;
  const std::string strShown = Trim(strCaption);
  setText(QString::fromStdString(strShown));
  setAccessibleName(QString::fromStdString(strShown));
}

void ToolPopup::SetEntries(std::vector<Entry> arrEntries) {
  m_arrEntries = std::move(arrEntries);
  menu()->clear();
  for (const auto &[strKey, strText] : m_arrEntries) {
    QAction *action = menu()->addAction(QString::fromStdString(strText));
    action->setObjectName(QString::fromStdString(strKey));
    connect(action, &QAction::triggered, this,
            [this, key = strKey] { RunUserEvent(*this, "ButtonMenuClick", [&] { ButtonMenuClick.Raise(key); }); });
  }
}

void ToolPopup::keyPressEvent(QKeyEvent *event) {
  if (event->key() == Qt::Key_Down || event->key() == Qt::Key_F4)
    showMenu();
  else
    QToolButton::keyPressEvent(event);
}

}  // namespace tarvik
