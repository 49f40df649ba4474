#pragma once

#include <QDesignerCustomWidgetInterface>
#include <functional>

#include "platform/ControlSite.h"
#include "platform/FormControl.h"

namespace tarvik {

/// What the designer has to know of one class of controls.
struct ControlClass {
  const char *strName;
  const char *strHeader;
  const char *strObjectName;
  const char *strToolTip;
  bool fContainer;
  /// Size on a new form, in pixels.
  int intWidth, intHeight;
  /// Properties that a new control on a form has other than a stored one: markup of the form's file.
  const char *strNewProperties;
  std::function<QWidget *(QWidget *parent, ControlSite &site)> Make;
  PropertyDescriptions arrDescriptions = {};
};

/// One class of controls in the form designer.
class ControlPlugin : public QObject, public QDesignerCustomWidgetInterface {
  Q_OBJECT
  Q_INTERFACES(QDesignerCustomWidgetInterface)

 public:
  ControlPlugin(const ControlClass &control, QObject *parent) : QObject(parent), m_control(control) {}

  QString name() const override;
  QString group() const override { return QStringLiteral("TarvikVI"); }
  QString toolTip() const override;
  QString whatsThis() const override { return toolTip(); }
  QString includeFile() const override;
  QIcon icon() const override { return {}; }
  bool isContainer() const override { return m_control.fContainer; }
  QWidget *createWidget(QWidget *parent) override;
  bool isInitialized() const override { return m_fInitialized; }
  void initialize(QDesignerFormEditorInterface *) override { m_fInitialized = true; }
  QString domXml() const override;

 private:
  const ControlClass &m_control;
  bool m_fInitialized = false;
};

}  // namespace tarvik
