#include "designer/ControlPlugin.h"

#include <QIcon>
#include <QWidget>
#include <memory>

#include "designer/DesignSite.h"

namespace tarvik {

QString ControlPlugin::name() const { return QString::fromLatin1(m_control.strName); }

QString ControlPlugin::toolTip() const { return QString::fromLatin1(m_control.strToolTip); }

QString ControlPlugin::includeFile() const { return QString::fromLatin1(m_control.strHeader); }

QWidget *ControlPlugin::createWidget(QWidget *parent) {
  auto site = std::make_unique<DesignSite>();
  QWidget *widget = m_control.Make(parent, *site);
  site.release()->SetWidget(widget);
  return widget;
}

QString ControlPlugin::domXml() const {
  QString tips;
  for (const auto &[strProperty, strDescription] : m_control.arrDescriptions)
    tips += QStringLiteral("<tooltip name=\"%1\">%2</tooltip>")
                .arg(QString::fromLatin1(strProperty), QString::fromLatin1(strDescription).toHtmlEscaped());
  return QStringLiteral(
             "<ui language=\"c++\"><widget class=\"%1\" name=\"%2\"><property name=\"geometry\"><rect><x>0</x><y>0</y>"
             "<width>%3</width><height>%4</height></rect></property>%5</widget><customwidgets><customwidget>"
             "<class>%1</class><extends>QWidget</extends><header>%6</header><container>%7</container>"
             "<propertyspecifications>%8</propertyspecifications></customwidget></customwidgets></ui>")
      .arg(name(), QString::fromLatin1(m_control.strObjectName))
      .arg(m_control.intWidth)
      .arg(m_control.intHeight)
      .arg(QString::fromLatin1(m_control.strNewProperties), includeFile())
      .arg(m_control.fContainer ? 1 : 0)
      .arg(tips);
}

}  // namespace tarvik
