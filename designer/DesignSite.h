#pragma once

#include <QObject>
#include <QPointer>

#include "platform/ControlSite.h"

class QDesignerFormWindowInterface;
class QWidget;

namespace tarvik {

/// The form designer as the container of one control. It is design time for a control on a form that is being edited;
/// in a preview and in a program that loads the form it is run time.
class DesignSite : public QObject, public ControlSite {
  Q_OBJECT

 public:
  /// The site belongs to its widget from then on; before it is run time.
  void SetWidget(QWidget *widget);

  Boolean UserMode() const override { return FormWindow() == nullptr; }
  /// The form is changed and the property belongs into its file; an open property editor shows the new value.
  void PropertyChanged(const std::string &strProperty) override;
  /// A property that came back to its default is left out of the file.
  void PropertyAssigned(const std::string &strProperty, Boolean fIsDefault) override;

 private:
  QDesignerFormWindowInterface *FormWindow() const;
  void Mark(const QString &property, bool fChanged);

  QPointer<QWidget> m_widget;
};

}  // namespace tarvik
