#pragma once

#include <QString>
#include <QWidget>

namespace tarvik {

/// A user of the panel: finds controls by their names and works them with mouse and keyboard events.
class TourUser {
 public:
  explicit TourUser(QWidget &window) : m_window(window) {}

  template <class T>
  T &Find(const QString &name) const {
    T *widget = m_window.findChild<T *>(name);
    if (!widget) qFatal("no control %s", qPrintable(name));
    return *widget;
  }

  void Click(const QString &name) const;
  void ClickTab(int intPage) const;
  /// Types a text into a number field and presses Enter.
  void Enter(const QString &name, const QString &text) const;
  /// Takes the item of a list with the keyboard.
  void Choose(const QString &name, int intItem) const;
  /// Takes an entry of a drop-down menu.
  void TakeMenu(const QString &name, const QString &key) const;
  /// Ticks or unticks a row of the instrument list, counted from 0, by its check box.
  void Tick(int intRow) const;
  /// Serves what is pending, so that the next step finds the panel at rest.
  static void Settle();

 private:
  static void ClickAt(QWidget &widget, const QPoint &point);
  static void Press(QWidget &widget, int intKey, const QString &text = {});

  QWidget &m_window;
};

}  // namespace tarvik
