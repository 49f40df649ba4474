#pragma once

#include <QObject>
#include <QWidget>

#include "support/Control.h"

namespace tarvik {

/// A widget of the toolkit that a form put into one of the controls, as a control. It lives as long as its widget.
class ForeignControl : public QObject, public Control {
  Q_OBJECT

 public:
  /// The one of this widget; made when it is asked for first.
  static ForeignControl &Of(QWidget &widget);

  Boolean Enabled() const override;
  void SetEnabled(Boolean fEnable) override { m_widget.setEnabled(fEnable); }
  Boolean Visible() const override;
  void SetVisible(Boolean fShow) override { m_widget.setVisible(fShow); }
  void SetFocus() override;

 private:
  explicit ForeignControl(QWidget &widget) : QObject(&widget), m_widget(widget) {}

  QWidget &m_widget;
};

}  // namespace tarvik
