#pragma once

#include <QWidget>
#include <string>

#include "support/Control.h"
#include "support/Event.h"

namespace tarvik {

/// Raised with the object name of each control that is told to take the focus, whether or not it can.
Event<const std::string &> &FocusRequested();

/// Gives the widget the focus and tells FocusRequested.
void GiveFocus(QWidget &widget);

/// Gives a button the focus before its click, so that an entry that is being typed elsewhere is taken over first and
/// counts for the click. False when that has disabled the button: there is nothing left to click.
bool TakeFocusForClick(QWidget &button);

/// The widget's own flags, whatever is around it.
Boolean OwnEnabled(const QWidget &widget);
Boolean OwnVisible(const QWidget &widget);
/// Sets the widget's own flag. One that does not change is left alone: the toolkit would prepare the widget for a
/// screen on which its page may never come.
void SetOwnVisible(QWidget &widget, Boolean fShow);

/// Whether a layout of the toolkit gives the widget its place.
bool StandsInLayout(const QWidget &widget);

std::string ObjectName(const QObject &object);

/// A widget of the toolkit as a control with the common properties.
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
