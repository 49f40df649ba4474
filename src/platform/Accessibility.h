#pragma once

#include <QAccessible>
#include <QString>
#include <QWidget>

namespace tarvik {

/// What a control is called for a screen reader: its own name, then the captions of the boxes that it stands in, from
/// the innermost out, which tell like controls of two channels apart. "Width, Channel 1".
QString NameInBoxes(const QString &strOwnName, const QWidget &widget);

/// A caption without its blanks at the ends and without the mark of its access key.
QString PlainCaption(const QString &strCaption);

/// Tells assistive technology that the widget is called something else now.
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
