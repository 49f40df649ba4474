#pragma once

#include <QAccessible>
#include <QString>
#include <QWidget>

namespace tarvik {

/// Accessible name of a control: its own name, then the captions of the group boxes around it from the innermost out,
/// to distinguish the same control of two channels. "Width, Channel 1".
QString NameInBoxes(const QString &strOwnName, const QWidget &widget);

/// A caption trimmed and without its mnemonic mark.
QString PlainCaption(const QString &strCaption);

/// Notifies assistive technology of a changed name.
void TellNameChanged(QWidget &widget);

/// From the first call on, assistive technology sees each widget of this class through an Interface, which is made from
/// the widget. A second call does nothing.
template <class Widget, class Interface>
void OfferAccessible() {
  static const bool fInstalled = [] {
    QAccessible::installFactory([](const QString &, QObject *object) -> QAccessibleInterface * {
      auto *widget = dynamic_cast<Widget *>(object);
      return widget ? new Interface(*widget) : nullptr;
    });
    return true;
  }();
  Q_UNUSED(fInstalled);
}

}  // namespace tarvik
