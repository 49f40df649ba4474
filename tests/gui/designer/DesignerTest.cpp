#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QBuffer>
#include <QDesignerActionEditorInterface>
#include <QDesignerComponents>
#include <QDesignerFormEditorInterface>
#include <QDesignerFormWindowInterface>
#include <QDesignerFormWindowManagerInterface>
#include <QDesignerIntegration>
#include <QDesignerObjectInspectorInterface>
#include <QDesignerPropertyEditorInterface>
#include <QDesignerPropertySheetExtension>
#include <QDesignerWidgetBoxInterface>
#include <QExtensionManager>
#include <QFormBuilder>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPluginLoader>
#include <QPointer>
#include <QTemporaryDir>
#include <QTimer>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>
#include <memory>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

QApplication &Application() {
  static int argc = 1;
  static char name[] = "gui_designer";
  static char *argv[] = {name, nullptr};
  static QTemporaryDir home;
  static QApplication *app = [] {
    for (const char *strName : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
      qputenv(strName, home.path().toLocal8Bit());
    auto *made = new QApplication(argc, argv);
    QCoreApplication::addLibraryPath(QStringLiteral(TARVIK_PLUGIN_PATH));
    return made;
  }();
  return *app;
}

std::vector<std::string> g_arrMessages;

/// Collects the warnings that are about controls of the library.
class Messages {
 public:
  Messages() {
    g_arrMessages.clear();
    m_before = qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &text) {
      if (text.startsWith(QStringLiteral("tarvik::"))) g_arrMessages.push_back(text.toStdString());
    });
  }
  ~Messages() { qInstallMessageHandler(m_before); }

 private:
  QtMessageHandler m_before;
};

QByteArray Property(const char *strName, const char *strValue) {
  return QByteArray("<property name=\"") + strName + "\" stdset=\"0\">" + strValue + "</property>";
}

/// A form with one control of this class and its properties.
QByteArray Form(const char *strClass, const QByteArray &properties) {
  return QByteArray(
             "<ui version=\"4.0\"><class>Form</class><widget class=\"QWidget\" name=\"Form\">"
             "<property name=\"geometry\"><rect><x>0</x><y>0</y><width>800</width><height>600</height></rect>"
             "</property><widget class=\"") +
         strClass +
         "\" name=\"control\"><property name=\"geometry\"><rect><x>10</x><y>10</y><width>242</width>"
         "<height>21</height></rect></property>" +
         properties + "</widget></widget></ui>";
}

class FormTest : public testing::Test {
 protected:
  void SetUp() override { Application(); }

  static std::unique_ptr<QWidget> Load(const QByteArray &form) {
    QFormBuilder builder;
    builder.setPluginPath({QStringLiteral(TARVIK_PLUGIN_PATH "/designer")});
    QBuffer buffer;
    buffer.setData(form);
    buffer.open(QIODevice::ReadOnly);
    return std::unique_ptr<QWidget>(builder.load(&buffer));
  }
  static QWidget *Control(QWidget &form) { return form.findChild<QWidget *>(QStringLiteral("control")); }
};

struct Setting {
  const char *strProperty;
  QVariant value;
};

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

TEST_F(FormTest, ThePlugInOffersTheControlsOfTheLibrary) {
  QPluginLoader loader(QStringLiteral(TARVIK_PLUGIN));
  auto *collection = qobject_cast<QDesignerCustomWidgetCollectionInterface *>(loader.instance());
  ASSERT_TRUE(collection) << loader.errorString().toStdString();
  std::vector<std::string> arrNames;
  for (const auto *control : collection->customWidgets()) arrNames.push_back(control->name().toStdString());
  EXPECT_THAT(arrNames, ElementsAre("tarvik::TarvikGUI", "tarvik::EngrSpin", "tarvik::CboEnhanced",
                                    "tarvik::FrameEnhanced", "tarvik::BitPattern"));
  const QString field = collection->customWidgets()[1]->domXml();
  EXPECT_THAT(field.toStdString(),
              HasSubstr("<tooltip name=\"MinExponent\">The largest negative exponent allowed (10^ -x)</tooltip>"));
  EXPECT_THAT(field.toStdString(), HasSubstr("<tooltip name=\"BaseUnit\">Returns/sets the abbreviation for the base "
                                             "unit (i.e. s for seconds)</tooltip>"));
}

TEST_F(FormTest, EachPropertyOfEachControlIsSetAndRead) {
  for (const auto &[strClass, arrSettings] : Classes()) {
    const auto form = Load(Form(strClass, {}));
    ASSERT_TRUE(form);
    QWidget *control = Control(*form);
    ASSERT_TRUE(control) << strClass;
    ASSERT_STREQ(control->metaObject()->className(), strClass);
    for (const Setting &setting : arrSettings) {
      control->setProperty(setting.strProperty, setting.value);
      EXPECT_EQ(control->property(setting.strProperty), setting.value) << strClass << " " << setting.strProperty;
    }
  }
}

TEST_F(FormTest, TheOrderOfPropertiesInTheFileDoesNotMatter) {
  const QByteArray limits = Property("Min", "<double>2</double>") + Property("Max", "<double>5</double>");
  const QByteArray unit = Property("BaseUnit", "<string>s</string>");
  const QByteArray value = Property("DefaultValue", "<double>3.5</double>");
  const QByteArray exponents =
      Property("MaxExponent", "<number>0</number>") + Property("MinExponent", "<number>-6</number>");
  for (const QByteArray &properties : {value + limits + unit + exponents, exponents + unit + limits + value}) {
    const auto form = Load(Form("tarvik::EngrSpin", properties));
    QWidget *field = Control(*form);
    EXPECT_EQ(field->property("Value").toDouble(), 3.5);
    EXPECT_EQ(field->property("Min").toDouble(), 2.0);
    EXPECT_EQ(field->property("Max").toDouble(), 5.0);
    EXPECT_EQ(field->property("Text").toString(), QStringLiteral("3.500"));
    EXPECT_EQ(field->property("NumberFormat").toString(), QString());
  }
}

TEST_F(FormTest, AFieldWithoutPropertiesHasTheDefaultsOfAStoredOne) {
  const auto form = Load(Form("tarvik::EngrSpin", {}));
  form->show();
  QCoreApplication::processEvents();
  QWidget *field = Control(*form);
  EXPECT_EQ(field->property("Min").toDouble(), -1e12);
  EXPECT_EQ(field->property("SignificantDigits").toInt(), 4);
  EXPECT_FALSE(field->findChild<QLabel *>(QStringLiteral("lblUnits"))->isVisible());
}

TEST_F(FormTest, MalformedPropertiesLoadAsDefaultsWithAMessage) {
  const Messages messages;
  const auto form = Load(Form("tarvik::EngrSpin", Property("MaxExponent", "<string>plenty</string>") +
                                                      Property("Enabled", "<string>perhaps</string>") +
                                                      Property("DefaultValue", "<double>2</double>")));
  QWidget *field = Control(*form);
  EXPECT_EQ(field->property("MaxExponent").toInt(), 12);
  EXPECT_TRUE(field->property("Enabled").toBool());
  EXPECT_EQ(field->property("Value").toDouble(), 2.0);
  ASSERT_EQ(g_arrMessages.size(), 2u);
  EXPECT_EQ(g_arrMessages[0],
            "tarvik::EngrSpin \"control\": the property MaxExponent cannot be \"plenty\" and keeps its value");
}

TEST_F(FormTest, UnknownPropertiesArePassedOverWithAMessage) {
  const Messages messages;
  const auto form = Load(Form("tarvik::CboEnhanced", Property("Colour", "<string>red</string>") +
                                                         Property("Caption", "<string>Source</string>")));
  EXPECT_EQ(Control(*form)->property("Caption").toString(), QStringLiteral("Source"));
  EXPECT_THAT(g_arrMessages,
              ElementsAre("tarvik::CboEnhanced \"control\": there is no property Colour; it is passed over"));
}

TEST_F(FormTest, AtRunTimeAnExponentCorrectsItselfInSilence) {
  const Messages messages;
  const auto form = Load(Form("tarvik::EngrSpin", Property("MaxExponent", "<number>7</number>")));
  EXPECT_EQ(Control(*form)->property("MaxExponent").toInt(), 6);
  EXPECT_THAT(g_arrMessages, IsEmpty());
}

/// The form designer itself, without its main window.
class DesignTimeTest : public FormTest {
 protected:
  void SetUp() override {
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
  void TearDown() override {
    delete m_form.data();
    m_core.reset();
    m_window.reset();
  }

  QWidget *Open(const char *strClass, const QByteArray &properties) {
    m_form = m_core->formWindowManager()->createFormWindow(m_window.get());
    m_form->setContents(QString::fromUtf8(Form(strClass, properties)));
    m_core->formWindowManager()->setActiveFormWindow(m_form);
    m_window->show();
    m_form->show();
    Settle();
    m_form->setDirty(false);
    return m_form->findChild<QWidget *>(QStringLiteral("control"));
  }
  QDesignerPropertySheetExtension *Sheet(QWidget *control) {
    return qt_extension<QDesignerPropertySheetExtension *>(m_core->extensionManager(), control);
  }
  /// Assigns as the property editor does; gives the text of the box that came up.
  std::string Assign(QWidget *control, const char *strProperty, const QVariant &value) {
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
  static void Settle() {
    for (int i = 0; i < 3; ++i) QCoreApplication::processEvents();
  }

  std::unique_ptr<QWidget> m_window;
  std::unique_ptr<QDesignerFormEditorInterface> m_core;
  QPointer<QDesignerFormWindowInterface> m_form;
};

TEST_F(DesignTimeTest, ExponentsThatAreNoneAreRefusedWithTheirMessages) {
  QWidget *field = Open("tarvik::EngrSpin", {});
  ASSERT_TRUE(field);
  ASSERT_STREQ(field->metaObject()->className(), "tarvik::EngrSpin");
  EXPECT_EQ(Assign(field, "MaxExponent", 7), "Exponent must be a multiple of 3");
  EXPECT_EQ(Assign(field, "MaxExponent", 15), "Exponent too large [>12]");
  EXPECT_EQ(Assign(field, "MinExponent", -15), "Exponent too small [<-12]");
  EXPECT_EQ(Assign(field, "SignificantDigits", 3), "Significant Digits must be between 4 and 10");
  EXPECT_EQ(field->property("MaxExponent").toInt(), 12);
  EXPECT_EQ(field->property("MinExponent").toInt(), -12);
  EXPECT_EQ(field->property("SignificantDigits").toInt(), 4);
  EXPECT_EQ(Assign(field, "MaxExponent", 6), "");
  EXPECT_EQ(field->property("MaxExponent").toInt(), 6);
}

TEST_F(DesignTimeTest, AChangeIsReportedAndADefaultIsNotWritten) {
  QWidget *field = Open("tarvik::EngrSpin", {});
  ASSERT_TRUE(field);
  ASSERT_FALSE(m_form->isDirty());
  Assign(field, "BaseUnit", QStringLiteral("Hz"));
  EXPECT_TRUE(m_form->isDirty());
  EXPECT_THAT(m_form->contents().toStdString(), HasSubstr("<string>Hz</string>"));
  Assign(field, "BaseUnit", QString());
  EXPECT_THAT(m_form->contents().toStdString(), testing::Not(HasSubstr("name=\"BaseUnit\"")));
  EXPECT_THAT(m_form->contents().toStdString(), testing::Not(HasSubstr("name=\"Max\"")));
}

TEST_F(DesignTimeTest, AHiddenSpinButtonRunsTheLayoutAnew) {
  QWidget *field = Open("tarvik::EngrSpin", Property("BaseUnit", "<string>s</string>"));
  ASSERT_TRUE(field);
  const int intBefore = field->findChild<QLineEdit *>(QStringLiteral("txtNumber"))->width();
  Assign(field, "SpinCtlVisible", false);
  EXPECT_GT(field->findChild<QLineEdit *>(QStringLiteral("txtNumber"))->width(), intBefore);
}

TEST_F(DesignTimeTest, EachControlIsSavedAndLoadsWithTheSameProperties) {
  for (const auto &[strClass, arrSettings] : Classes()) {
    QWidget *control = Open(strClass, {});
    ASSERT_TRUE(control) << strClass;
    ASSERT_STREQ(control->metaObject()->className(), strClass);
    for (const Setting &setting : arrSettings) EXPECT_EQ(Assign(control, setting.strProperty, setting.value), "");
    const auto form = Load(m_form->contents().toUtf8());
    ASSERT_TRUE(form && Control(*form)) << strClass;
    for (const Setting &setting : arrSettings)
      EXPECT_EQ(Control(*form)->property(setting.strProperty), setting.value) << strClass << " " << setting.strProperty;
    delete m_form.data();
  }
}

TEST_F(DesignTimeTest, AFormSavedByTheDesignerLoadsAtRunTimeWithTheSameProperties) {
  QWidget *field = Open("tarvik::EngrSpin", {});
  ASSERT_TRUE(field);
  Assign(field, "BaseUnit", QStringLiteral("s"));
  Assign(field, "Max", 2.0);
  Assign(field, "Min", 1e-6);
  Assign(field, "DefaultValue", 0.25);
  Assign(field, "MaxExponent", 0);
  const std::string strForm = m_form->contents().toStdString();
  EXPECT_LT(strForm.find("name=\"MaxExponent\""), strForm.find("name=\"Max\""));
  EXPECT_LT(strForm.find("name=\"Min\""), strForm.find("name=\"DefaultValue\""));
  const auto form = Load(QByteArray::fromStdString(strForm));
  QWidget *loaded = Control(*form);
  ASSERT_TRUE(loaded);
  EXPECT_EQ(loaded->property("Max").toDouble(), 2.0);
  EXPECT_EQ(loaded->property("Min").toDouble(), 1e-6);
  EXPECT_EQ(loaded->property("Value").toDouble(), 0.25);
  EXPECT_EQ(loaded->property("Text").toString(), field->property("Text").toString());
}

}  // namespace
