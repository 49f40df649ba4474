#pragma once

#include <QObject>
#include <QWidget>

#include "support/Control.h"

namespace tarvik {

/// Adapts any QWidget of a form to Control. Owned by its widget.
class ForeignControl : public QObject, public Control {
  Q_OBJECT

 public:
  /// The adapter of this widget, created on first use.
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
