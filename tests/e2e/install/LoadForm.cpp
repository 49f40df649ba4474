// Loads a form with the plug-in of the form designer that stands in a folder, shows it, and tells each control of the
// library with its text, and which library came with the plug-in.
// Usage: load_form PLUGIN_FOLDER FORM
#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QUiLoader>
#include <QWidget>
#include <cstdio>
#include <memory>
#include <set>

namespace {

QString TextOf(const QWidget &control) {
  const bool fField = QByteArray(control.metaObject()->className()) == "tarvik::EngrSpin";
  return control.property(fField ? "Text" : "Caption").toString();
}

/// The files of this name that the process has in its memory.
std::set<QByteArray> LoadedFiles(const QByteArray &name) {
  std::set<QByteArray> files;
  QFile maps(QStringLiteral("/proc/self/maps"));
  if (maps.open(QIODevice::ReadOnly))
    for (const QByteArray &line : maps.readAll().split('\n'))
      if (const auto start = line.indexOf('/'); start >= 0 && line.mid(start).contains(name))
        files.insert(line.mid(start));
  return files;
}

}  // namespace

int main(int argc, char *argv[]) {
  QApplication app(argc, argv);
  if (argc != 3) return 2;
  QUiLoader loader;
  loader.addPluginPath(QFileInfo(QFile::decodeName(argv[1])).absoluteFilePath());
  QFile file(QFile::decodeName(argv[2]));
  if (!file.open(QIODevice::ReadOnly)) return 2;
  const std::unique_ptr<QWidget> form(loader.load(&file));
  if (!form) {
    std::fprintf(stderr, "%s\n", qPrintable(loader.errorString()));
    return 1;
  }
  form->show();
  QCoreApplication::processEvents();
  for (const QWidget *control : form->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
    std::printf("%s %s %s\n", control->metaObject()->className(), qPrintable(control->objectName()),
                qPrintable(TextOf(*control)));
  for (const QByteArray &library : LoadedFiles("/libtarvikvi.so")) std::printf("library %s\n", library.constData());
  return 0;
}
