#include "DesignerFixture.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QBuffer>
#include <QDesignerActionEditorInterface>
#include <QDesignerComponents>
#include <QDesignerFormWindowManagerInterface>
#include <QDesignerIntegration>
#include <QDesignerObjectInspectorInterface>
#include <QDesignerWidgetBoxInterface>
#include <QExtensionManager>
#include <QFormBuilder>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTimer>

namespace tarvik::test {

namespace {

std::vector<std::string> g_arrMessages;
QtMessageHandler g_handlerBefore = nullptr;

void MakeApplication() {
  static int argc = 1;
  static char name[] = "gui_designer";
  static char *argv[] = {name, nullptr};
  static QTemporaryDir home;
  // Never destroyed: the toolkit tears down its own statics behind it.
  static QApplication *app = [] {
    for (const char *strName : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
      qputenv(strName, home.path().toLocal8Bit());
    auto *made = new QApplication(argc, argv);
    QCoreApplication::addLibraryPath(QStringLiteral(TARVIK_PLUGIN_PATH));
    return made;
  }();
  Q_UNUSED(app);
}

}  // namespace

Messages::Messages() {
  g_arrMessages.clear();
  g_handlerBefore = qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &text) {
    if (text.startsWith(QStringLiteral("tarvik::"))) g_arrMessages.push_back(text.toStdString());
  });
}

Messages::~Messages() { qInstallMessageHandler(g_handlerBefore); }

const std::vector<std::string> &Messages::Told() const { return g_arrMessages; }

QByteArray Property(const char *strName, const char *strValue) {
  return QByteArray("<property name=\"") + strName + "\" stdset=\"0\">" + strValue + "</property>";
}

namespace {

QByteArray FormWith(const char *strClass, const QByteArray &width, const QByteArray &contents) {
  return QByteArray(
             "<ui version=\"4.0\"><class>Form</class><widget class=\"QWidget\" name=\"Form\">"
             "<property name=\"geometry\"><rect><x>0</x><y>0</y><width>800</width><height>600</height></rect>"
             "</property><widget class=\"") +
         strClass + "\" name=\"control\"><property name=\"geometry\"><rect><x>10</x><y>10</y><width>" + width +
         "</width><height>21</height></rect></property>" + contents + "</widget></widget></ui>";
}

}  // namespace

QByteArray Form(const char *strClass, const QByteArray &properties, const QByteArray &contents) {
  return FormWith(strClass, "242", properties + contents);
}

QByteArray FormOfWidth(const char *strClass, int intWidth, const QByteArray &properties) {
  return FormWith(strClass, QByteArray::number(intWidth), properties);
}

const std::vector<std::pair<const char *, std::vector<Setting>>> &Classes() {
  static const std::vector<std::pair<const char *, std::vector<Setting>>> arrClasses{
      {"tarvik::TarvikGUI", {}},
      {"tarvik::BitPattern", {}},
      {"tarvik::EngrSpin",
       {{"MaxExponent", 3},
        {"MinExponent", -9},
        {"Max", 2000.0},
        {"Min", -5.0},
        {"BaseUnit", QStringLiteral("V")},
        {"Caption", QStringLiteral("Level")},
        {"CaptionAlignment", 2},
        {"CaptionWidth", 900.0},
        {"DefaultValue", 1.5},
        {"Enabled", false},
        {"Locked", true},
        {"SignificantDigits", 6},
        {"SpinCtlVisible", false},
        {"ValueArray", QStringLiteral("1;1.5;2")}}},
      {"tarvik::CboEnhanced",
       {{"Caption", QStringLiteral("Source")},
        {"CaptionAlignment", 1},
        {"CaptionWidth", 700.0},
        {"Enabled", false},
        {"TagX", QStringLiteral("123")}}},
      {"tarvik::FrameEnhanced", {{"BorderStyle", 0}, {"Caption", QStringLiteral("Output")}}},
  };
  return arrClasses;
}

void FormTest::SetUp() { MakeApplication(); }

std::unique_ptr<QWidget> FormTest::Load(const QByteArray &form) {
  QFormBuilder builder;
  builder.setPluginPath({QStringLiteral(TARVIK_PLUGIN_PATH "/designer")});
  QBuffer buffer;
  buffer.setData(form);
  buffer.open(QIODevice::ReadOnly);
  return std::unique_ptr<QWidget>(builder.load(&buffer));
}

void FormTest::Settle() {
  for (int i = 0; i < 3; ++i) QCoreApplication::processEvents();
}

void DesignTimeTest::SetUp() {
  FormTest::SetUp();
  QDesignerComponents::initializeResources();
  m_core.reset(QDesignerComponents::createFormEditor(nullptr));
  m_window = std::make_unique<QWidget>();
  m_window->setAttribute(Qt::WA_ShowWithoutActivating);
  m_core->setTopLevel(m_window.get());
  QDesignerFormEditorInterface *core = m_core.get();
  core->setWidgetBox(QDesignerComponents::createWidgetBox(core, nullptr));
  core->setPropertyEditor(QDesignerComponents::createPropertyEditor(core, nullptr));
  core->setObjectInspector(QDesignerComponents::createObjectInspector(core, nullptr));
  core->setActionEditor(QDesignerComponents::createActionEditor(core, nullptr));
  new QDesignerIntegration(core, core);
  QDesignerComponents::initializePlugins(core);
}

void DesignTimeTest::TearDown() {
  delete m_form.data();
  m_core.reset();
  m_window.reset();
}

QWidget *DesignTimeTest::OpenForm(const QByteArray &form, const char *strName) {
  delete m_form.data();
  m_form = m_core->formWindowManager()->createFormWindow(m_window.get());
  m_form->setContents(QString::fromUtf8(form));
  m_core->formWindowManager()->setActiveFormWindow(m_form);
  m_window->show();
  m_form->show();
  Settle();
  m_form->setDirty(false);
  return m_form->findChild<QWidget *>(QString::fromLatin1(strName));
}

QDesignerPropertySheetExtension *DesignTimeTest::Sheet(QWidget *control) {
  return qt_extension<QDesignerPropertySheetExtension *>(m_core->extensionManager(), control);
}

std::string DesignTimeTest::Assign(QWidget *control, const char *strProperty, const QVariant &value) {
  std::string strBox;
  QTimer::singleShot(0, [&strBox] {
    if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
      strBox = box->text().toStdString();
      box->accept();
    }
  });
  auto *sheet = Sheet(control);
  const int index = sheet->indexOf(QString::fromLatin1(strProperty));
  sheet->setProperty(index, value);
  sheet->setChanged(index, true);
  Settle();
  return strBox;
}

std::string DesignTimeTest::ShownDescription(const char *strProperty) const {
  for (const QAbstractItemView *view : m_core->propertyEditor()->findChildren<QAbstractItemView *>()) {
    const auto found = view->model()->match(view->model()->index(0, 0), Qt::DisplayRole, QLatin1String(strProperty), 1,
                                            Qt::MatchExactly | Qt::MatchRecursive);
    if (!found.isEmpty()) return found.first().data(Qt::ToolTipRole).toString().toStdString();
  }
  return "not shown";
}

}  // namespace tarvik::test
