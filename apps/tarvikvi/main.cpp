#include <QApplication>
#include <QIcon>
#include <algorithm>
#include <cstdio>
#include <string_view>
#include <vector>

#include "CommandLine.h"
#include "MainWindow.h"
#include "Tour.h"

namespace {

/// Without a screen the toolkit would end the program with a core dump, which tells a user nothing.
bool HasScreen(const std::vector<std::string> &arrToolkit) {
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
  for (const char *strVariable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
    if (!qEnvironmentVariableIsEmpty(strVariable)) return true;
  return std::any_of(arrToolkit.begin(), arrToolkit.end(), [](std::string_view strArgument) {
    return strArgument == "-platform" || strArgument == "-display" || strArgument == "--platform";
  });
#else
  return !arrToolkit.empty();
#endif
}

}  // namespace

int main(int argc, char *argv[]) {
  tarvik::CommandLine line(argc, argv);
  if (line.intExit) return *line.intExit;
  if (line.strTour) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  } else if (!HasScreen(line.arrToolkit)) {
    std::fprintf(stderr, "tarvikvi: there is no display to open the panel on; tarvikvi --tour FOLDER needs none\n");
    return 1;
  }

  std::vector<char *> arrArguments;
  for (std::string &strArgument : line.arrToolkit) arrArguments.push_back(strArgument.data());
  int intArguments = static_cast<int>(arrArguments.size());
  arrArguments.push_back(nullptr);
  // The display name of the application stays unset: the toolkit would append it to the titles of all boxes.
  QApplication app(intArguments, arrArguments.data());
  QApplication::setApplicationName(QStringLiteral("TarvikVI"));
  QApplication::setOrganizationName(QStringLiteral("TarvikVI"));
  QApplication::setApplicationVersion(QStringLiteral(TARVIK_VERSION));
  QApplication::setDesktopFileName(QStringLiteral("tarvikvi"));
  QApplication::setWindowIcon(QIcon(QStringLiteral(":/tarvikvi.svg")));
  // The toolkit has taken what is its own.
  if (intArguments > 1) return tarvik::RefuseArgument(arrArguments[1]);

  if (line.strTour) return tarvik::RunTour(QString::fromStdString(*line.strTour));
  tarvik::MainWindow window(line.strServer ? std::optional(QString::fromStdString(*line.strServer)) : std::nullopt,
                            line.strDriver);
  window.show();
  return QApplication::exec();
}
