#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>
#include <algorithm>
#include <cstdio>
#include <optional>
#include <string_view>

#include "MainWindow.h"
#include "Tour.h"

namespace {

/// Whether the command line asks for something that is only printed or drawn into files.
bool WorksWithoutScreen(int argc, char *argv[]) {
  static constexpr std::string_view Asked[] = {"-h", "--help", "--help-all", "-v", "--version"};
  for (int i = 1; i < argc; ++i)
    if (std::find(std::begin(Asked), std::end(Asked), argv[i]) != std::end(Asked)) return true;
  return tarvik::WantsTour(argc, argv);
}

/// Without a screen the toolkit would end the program with a core dump, which tells a user nothing.
bool HasScreen(int argc, char *argv[]) {
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
  for (const char *strVariable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
    if (!qEnvironmentVariableIsEmpty(strVariable)) return true;
  return std::any_of(argv + 1, argv + argc, [](std::string_view strArgument) {
    return strArgument == "-platform" || strArgument == "-display" || strArgument == "--platform";
  });
#else
  return argc > 0 && argv;
#endif
}

}  // namespace

int main(int argc, char *argv[]) {
  if (WorksWithoutScreen(argc, argv)) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  } else if (!HasScreen(argc, argv)) {
    std::fprintf(stderr, "tarvikvi: there is no display to open the panel on; tarvikvi --tour FOLDER needs none\n");
    return 1;
  }

  // The display name of the application stays unset: the toolkit would append it to the titles of all boxes.
  QApplication app(argc, argv);
  QApplication::setApplicationName(QStringLiteral("TarvikVI"));
  QApplication::setOrganizationName(QStringLiteral("TarvikVI"));
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
  const QCommandLineOption server(
      QStringLiteral("server"),
      QStringLiteral("Connect to the driver server at <address> this time; \"\" is this machine."),
      QStringLiteral("address"));
  parser.addOption(server);
  parser.process(app);
  if (const QStringList rest = parser.positionalArguments(); !rest.isEmpty()) {
    std::fprintf(stderr, "tarvikvi: \"%s\" is not understood; tarvikvi --help tells what is\n",
                 qPrintable(rest.first()));
    return 2;
  }

  if (parser.isSet(tour)) return tarvik::RunTour(parser.value(tour));
  tarvik::MainWindow window(parser.isSet(server) ? std::optional(parser.value(server)) : std::nullopt);
  window.show();
  return QApplication::exec();
}
