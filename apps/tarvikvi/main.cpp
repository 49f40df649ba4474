#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>

#include "MainWindow.h"
#include "Tour.h"

int main(int argc, char *argv[]) {
  const bool fTour = tarvik::WantsTour(argc, argv);
  // Pictures of a tour come from no screen.
  if (fTour && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");

  QApplication app(argc, argv);
  QApplication::setApplicationName(QStringLiteral("TarvikVI"));
  QApplication::setOrganizationName(QStringLiteral("TarvikVI"));
  QApplication::setApplicationDisplayName(QStringLiteral("TarvikVI"));
  QApplication::setApplicationVersion(QStringLiteral(TARVIK_VERSION));
  QApplication::setDesktopFileName(QStringLiteral("tarvikvi"));
  QApplication::setWindowIcon(QIcon(QStringLiteral(":/tarvikvi.svg")));

  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral("Front panel for pulse generators with one or two channels."));
  parser.addHelpOption();
  parser.addVersionOption();
  const QCommandLineOption tour(
      QStringLiteral("tour"),
      QStringLiteral("Walk through a session, print its steps and write pictures into <folder>."),
      QStringLiteral("folder"));
  parser.addOption(tour);
  parser.process(app);

  if (parser.isSet(tour)) return tarvik::RunTour(parser.value(tour));
  tarvik::MainWindow window;
  window.show();
  return QApplication::exec();
}
