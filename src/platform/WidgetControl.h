#pragma once

#include <QWidget>
#include <string>

#include "support/Control.h"

namespace tarvik {

/// Focuses the widget on behalf of the program.
void GiveFocus(QWidget &widget);

/// Focuses a button before its click, so that an entry in another field ends first and counts for the click. False if
/// ending the entry has disabled the button.
bool TakeFocusForClick(QWidget &button);

/// The widget's own flags, regardless of its parents.
Boolean OwnEnabled(const QWidget &widget);
Boolean OwnVisible(const QWidget &widget);
/// Sets the widget's own flag, if it changes: an explicit show makes Qt polish the widget even on a hidden page.
void SetOwnVisible(QWidget &widget, Boolean fShow);

/// Whether a QLayout manages the widget.
bool StandsInLayout(const QWidget &widget);

std::string ObjectName(const QObject &object);

/// A QWidget class as a Control.
template <class Widget, class Interface = Control>
class WidgetControl : public Widget, public Interface {
 public:
  using Widget::Widget;

  Boolean Enabled() const override { return OwnEnabled(*this); }
  void SetEnabled(Boolean fEnable) override { this->setEnabled(fEnable); }
  Boolean Visible() const override { return OwnVisible(*this); }
  void SetVisible(Boolean fShow) override { this->setVisible(fShow); }
  void SetFocus() override { GiveFocus(*this); }
};

}  // namespace tarvik
