#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QLocale>
#include <QStyleFactory>
#include <memory>

namespace tarvik::test {

/// The application that widgets need, with fixed style and locale. A warning of the toolkit fails the test.
class WidgetEnvironment : public testing::Environment {
 public:
  void SetUp() override {
    // Started by hand, tests open no windows on the desktop unless they are told to.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QLocale::setDefault(QLocale::c());
    m_app = std::make_unique<QApplication>(m_intArguments, m_arrArguments);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    qInstallMessageHandler(Told);
  }
  void TearDown() override {
    qInstallMessageHandler(nullptr);
    m_app.reset();
  }

 private:
  static void Told(QtMsgType type, const QMessageLogContext &, const QString &strText) {
    // The offscreen platform warns about what it lacks: raising windows, keyboard grabs, size hints.
    if (type == QtDebugMsg || type == QtInfoMsg) return;
    if (strText.startsWith(QLatin1String("This plugin does not support"))) return;
    ADD_FAILURE() << strText.toStdString();
  }

  int m_intArguments = 1;
  char m_strName[6] = "tests";
  char *m_arrArguments[2] = {m_strName, nullptr};
  std::unique_ptr<QApplication> m_app;
};

inline testing::Environment *const widgetEnvironment =
    testing::AddGlobalTestEnvironment(std::make_unique<WidgetEnvironment>().release());

}  // namespace tarvik::test
