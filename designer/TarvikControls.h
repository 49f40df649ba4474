#pragma once

#include <QDesignerCustomWidgetCollectionInterface>
#include <QObject>

namespace tarvik {

/// The controls of the library for the form designer.
class TarvikControls : public QObject, public QDesignerCustomWidgetCollectionInterface {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QDesignerCustomWidgetCollectionInterface")
  Q_INTERFACES(QDesignerCustomWidgetCollectionInterface)

 public:
  explicit TarvikControls(QObject *parent = nullptr);
  QList<QDesignerCustomWidgetInterface *> customWidgets() const override { return m_arrControls; }

 private:
  QList<QDesignerCustomWidgetInterface *> m_arrControls;
};

}  // namespace tarvik
