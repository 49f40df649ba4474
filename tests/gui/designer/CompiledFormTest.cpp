#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QMetaProperty>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QUiLoader>
#include <memory>

#include "panel/TarvikGUI.h"
#include "ui_LaidOutForm.h"
#include "ui_SavedForm.h"

namespace tarvik::test {
namespace {

QApplication &Application() {
  static int argc = 1;
  static char name[] = "gui_compiled_form";
  static char *argv[] = {name, nullptr};
  static QTemporaryDir home;
  static auto *app = [] {
    for (const char *strName : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
      qputenv(strName, home.path().toLocal8Bit());
    return new QApplication(argc, argv);
  }();
  return *app;
}

/// Everything that a control tells of itself, one line for each property.
std::vector<std::string> Told(const QWidget &control) {
  std::vector<std::string> arrLines;
  const QMetaObject &meta = *control.metaObject();
  for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i)
    arrLines.push_back(std::string(meta.property(i).name()) + " = " +
                       meta.property(i).read(&control).toString().toStdString());
  return arrLines;
}

/// Where the parts of a control stand and which of them are shown.
std::vector<std::string> Looks(const QWidget &control) {
  std::vector<std::string> arrLines;
  for (const QWidget *part : control.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
    const QRect place = part->geometry();
    arrLines.push_back(part->objectName().toStdString() + " " + std::to_string(place.x()) + " " +
                       std::to_string(place.y()) + " " + std::to_string(place.width()) + " " +
                       std::to_string(place.height()) + (part->isVisible() ? " shown" : " hidden") +
                       (part->isEnabled() ? " enabled" : " disabled"));
  }
  return arrLines;
}

/// One form, compiled into this program and read from its file.
class CompiledForm : public testing::Test {
 protected:
  void SetUp() override {
    Application();
    m_compiled = std::make_unique<QWidget>();
    m_names.setupUi(m_compiled.get());
    QUiLoader loader;
    loader.addPluginPath(QStringLiteral(TARVIK_PLUGIN_PATH "/designer"));
    QFile file(QStringLiteral(TARVIK_SAVED_FORM));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    m_loaded.reset(loader.load(&file));
    ASSERT_TRUE(m_loaded) << loader.errorString().toStdString();
  }
  void Show() {
    m_compiled->show();
    m_loaded->show();
    QCoreApplication::processEvents();
  }
  /// Each control of the library on the compiled form, with its twin on the loaded one.
  std::vector<std::pair<QWidget *, QWidget *>> Controls() {
    std::vector<std::pair<QWidget *, QWidget *>> arrControls;
    for (QWidget *control : m_compiled->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
      if (QByteArray(control->metaObject()->className()).startsWith("tarvik::"))
        arrControls.emplace_back(control, m_loaded->findChild<QWidget *>(control->objectName()));
    return arrControls;
  }

  std::unique_ptr<QWidget> m_compiled;
  Ui::SavedForm m_names;
  std::unique_ptr<QWidget> m_loaded;
};

TEST_F(CompiledForm, HasThePropertiesOfTheLoadedOneWithoutAnyCallOfTheHost) {
  ASSERT_EQ(Controls().size(), 8u);
  for (const auto &[compiled, loaded] : Controls()) {
    ASSERT_TRUE(loaded) << compiled->objectName().toStdString();
    EXPECT_EQ(Told(*compiled), Told(*loaded)) << compiled->objectName().toStdString();
  }
  EXPECT_EQ(m_names.esPlain->Min(), -1e12);
  EXPECT_EQ(m_names.esPlain->Text(), "0.0");
  EXPECT_EQ(m_names.esWidth->Value(), 0.25);
  EXPECT_EQ(m_names.esWidth->Text(), "250.0");
  EXPECT_EQ(m_names.cboFull->TagX(), "123");
  EXPECT_EQ(m_names.grpPlain->Caption(), "Frame");
}

TEST_F(CompiledForm, IsLaidOutAsTheLoadedOneWhenItIsShown) {
  Show();
  for (const auto &[compiled, loaded] : Controls()) {
    EXPECT_EQ(compiled->geometry(), loaded->geometry()) << compiled->objectName().toStdString();
    EXPECT_EQ(Looks(*compiled), Looks(*loaded)) << compiled->objectName().toStdString();
    EXPECT_EQ(Told(*compiled), Told(*loaded)) << compiled->objectName().toStdString();
  }
}

TEST_F(CompiledForm, TheRadioButtonsInAFrameAreItsOptions) {
  auto *loaded = qobject_cast<FrameEnhanced *>(m_loaded->findChild<QWidget *>(QStringLiteral("grpFull")));
  ASSERT_TRUE(loaded);
  for (FrameEnhanced *frame : {m_names.grpFull, loaded}) {
    EXPECT_TRUE(std::holds_alternative<std::monostate>(frame->Value()));
    frame->Match(std::string("9"), std::string("1"));
    EXPECT_TRUE(frame->findChild<QRadioButton *>(QStringLiteral("optOutput1"))->isChecked());
    EXPECT_EQ(frame->Value(), Variant(std::string("1")));
    EXPECT_EQ(frame->ArrayIndex(), 4);
    frame->SetArrayIndex(3);
    EXPECT_TRUE(frame->findChild<QRadioButton *>(QStringLiteral("optOutput0"))->isChecked());
    EXPECT_FALSE(frame->findChild<QRadioButton *>(QStringLiteral("optOutput1"))->isChecked());
    frame->SetEnabled(False);
    EXPECT_FALSE(frame->findChild<QRadioButton *>(QStringLiteral("optOutput0"))->isEnabled());
  }
}

TEST_F(CompiledForm, WhatTheHostAssignsBeforeTheFirstShowingStays) {
  m_names.esWidth->SetValue(0.5);
  m_names.esPlain->SetMax(7);
  m_names.esPlain->SetValue(9);
  m_names.cboPlain->SetCaption("Slope");
  Show();
  EXPECT_EQ(m_names.esWidth->Value(), 0.5);
  EXPECT_EQ(m_names.esPlain->Value(), 7);
  EXPECT_EQ(m_names.cboPlain->Caption(), "Slope");
}

TEST_F(CompiledForm, WhatTheHostAssignedIsNotUndoneByAPropertySetByName) {
  m_names.esWidth->SetValue(0.5);
  m_names.esWidth->setProperty("Max", 3.0);
  m_names.esWidth->setProperty("Caption", QStringLiteral("Width"));
  m_names.esPlain->SetMin(5);
  m_names.esPlain->setProperty("BaseUnit", QStringLiteral("V"));
  m_names.cboPlain->SetCaption("Slope");
  m_names.cboPlain->setProperty("TagX", QStringLiteral("12"));
  m_names.grpPlain->SetCaption("Slope");
  m_names.grpPlain->setProperty("BorderStyle", 0);
  Show();
  EXPECT_EQ(m_names.esWidth->Value(), 0.5);
  EXPECT_EQ(m_names.esWidth->Max(), 3.0);
  EXPECT_EQ(m_names.esPlain->Min(), 5);
  EXPECT_EQ(m_names.esPlain->Value(), 5);
  EXPECT_EQ(m_names.esPlain->BaseUnit(), "V");
  EXPECT_EQ(m_names.cboPlain->Caption(), "Slope");
  EXPECT_EQ(m_names.cboPlain->TagX(), "12");
  EXPECT_EQ(m_names.grpPlain->Caption(), "Slope");
}

TEST_F(CompiledForm, AControlMadeInCodeKeepsWhatWasAssignedBeforeItsFirstProperty) {
  EngrSpin field;
  field.SetValue(3);
  field.setProperty("Caption", QStringLiteral("Delay"));
  EXPECT_EQ(field.Value(), 3);
  EXPECT_EQ(field.Caption(), "Delay");
}

TEST_F(CompiledForm, DisabledByTheToolkitsPropertyItStaysSoWhateverComesBehind) {
  EngrSpin field;
  field.setEnabled(false);
  field.setProperty("DefaultValue", 4.0);
  field.setProperty("BaseUnit", QStringLiteral("V"));
  EXPECT_FALSE(field.Enabled());
  EXPECT_FALSE(field.isEnabled());
  EXPECT_EQ(field.Value(), 4) << "the form is still being read";
  CboEnhanced list;
  list.setEnabled(false);
  list.setProperty("Caption", QStringLiteral("Slope"));
  EXPECT_FALSE(list.Enabled());
}

TEST_F(CompiledForm, AFormOfLayoutsIsLaidOutCompiledAndLoadedAlike) {
  QWidget compiled;
  Ui::LaidOutForm names;
  names.setupUi(&compiled);
  QUiLoader loader;
  loader.addPluginPath(QStringLiteral(TARVIK_PLUGIN_PATH "/designer"));
  QFile file(QStringLiteral(TARVIK_LAID_OUT_FORM));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const std::unique_ptr<QWidget> loaded(loader.load(&file));
  ASSERT_TRUE(loaded);
  for (QWidget *form : {&compiled, loaded.get()}) {
    form->resize(form->sizeHint());
    form->show();
    QCoreApplication::processEvents();
    const QWidget &field = *form->findChild<QWidget *>(QStringLiteral("esWidth"));
    const QRect number = field.findChild<QWidget *>(QStringLiteral("txtNumber"))->geometry(),
                button = field.findChild<QWidget *>(QStringLiteral("spinCtl"))->geometry(),
                unit = field.findChild<QWidget *>(QStringLiteral("lblUnits"))->geometry();
    EXPECT_GT(number.width(), 60);
    EXPECT_GT(button.left(), number.right());
    EXPECT_GT(unit.left(), button.right());
    EXPECT_TRUE(field.rect().contains(unit));
  }
  EXPECT_EQ(compiled.size(), loaded->size());
  for (const char *strName : {"esWidth", "cboSource", "grpSlope"}) {
    const auto &one = *compiled.findChild<QWidget *>(QString::fromLatin1(strName));
    const auto &other = *loaded->findChild<QWidget *>(QString::fromLatin1(strName));
    EXPECT_EQ(one.geometry(), other.geometry()) << strName;
    EXPECT_EQ(Looks(one), Looks(other)) << strName;
  }
}

}  // namespace
}  // namespace tarvik::test
