#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDesignerFormWindowManagerInterface>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPluginLoader>
#include <QRegularExpression>
#include <QTimer>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

#include "DesignerFixture.h"

namespace tarvik::test {

using testing::HasSubstr;

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

TEST_F(DesignTimeTest, ThePropertyEditorShowsTheDescriptions) {
  QWidget *field = Open("tarvik::EngrSpin", {});
  ASSERT_TRUE(field);
  m_core->propertyEditor()->setObject(field);
  Settle();
  const std::vector<std::pair<const char *, const char *>> arrDescriptions{
      {"BaseUnit", "Returns/sets the abbreviation for the base unit (i.e. s for seconds)"},
      {"Caption", "Returns/sets the name to be displayed to the left of the value"},
      {"CaptionAlignment", "Returns/sets the text alignment of the caption"},
      {"CaptionWidth", "Returns/sets the width in pixels of the caption field"},
      {"DefaultValue", "Returns/sets the starting value"},
      {"Max", "The maximum value allowed"},
      {"MaxExponent", "The largest exponent allowed (10^ x)"},
      {"Min", "The minimum value allowed"},
      {"MinExponent", "The largest negative exponent allowed (10^ -x)"},
      {"NumberFormat", "Format when not using engineering format (i.e. MinExponent=MaxExponent=0)"},
      {"SignificantDigits", "Returns/sets the number of significant digits when using engineering format (only)."},
      {"SpinCtlVisible", "Returns/sets the visibility of the spin button"},
      {"TextBoxWidth", "Read-only; Returns the width of the value field"},
      {"Value", "Returns/sets the current value."}};
  for (const auto &[strProperty, strDescription] : arrDescriptions)
    EXPECT_EQ(ShownDescription(strProperty), strDescription) << strProperty;
}

TEST_F(DesignTimeTest, AChangeIsReportedAndADefaultIsNotWritten) {
  QWidget *field = Open("tarvik::EngrSpin", {});
  ASSERT_TRUE(field);
  ASSERT_FALSE(m_form->isDirty());
  Assign(field, "BaseUnit", QStringLiteral("Hz"));
  EXPECT_TRUE(m_form->isDirty());
  EXPECT_THAT(Contents(), HasSubstr("<string>Hz</string>"));
  Assign(field, "BaseUnit", QString());
  EXPECT_THAT(Contents(), testing::Not(HasSubstr("name=\"BaseUnit\"")));
  EXPECT_THAT(Contents(), testing::Not(HasSubstr("name=\"Max\"")));
}

TEST_F(DesignTimeTest, WhatIsNotAmongTheStoredPropertiesIsNotWritten) {
  QWidget *field = Open("tarvik::EngrSpin", {});
  ASSERT_TRUE(field);
  Assign(field, "Value", 3.0);
  EXPECT_EQ(field->property("Value").toDouble(), 3.0);
  Assign(field, "TextBoxWidth", 77.0);
  Assign(field, "AuxUnits", QStringLiteral("div"));
  for (const char *strName : {"Value", "TextBoxWidth", "Text", "AuxUnits", "AuxValue", "Reciprocal", "OldValue"})
    EXPECT_THAT(Contents(), testing::Not(HasSubstr(std::string("name=\"") + strName + "\""))) << strName;
}

TEST_F(DesignTimeTest, AHiddenSpinButtonRunsTheLayoutAnew) {
  QWidget *field = Open("tarvik::EngrSpin", Property("BaseUnit", "<string>s</string>"));
  ASSERT_TRUE(field);
  const int intBefore = field->findChild<QLineEdit *>(QStringLiteral("txtNumber"))->width();
  Assign(field, "SpinCtlVisible", false);
  EXPECT_GT(field->findChild<QLineEdit *>(QStringLiteral("txtNumber"))->width(), intBefore);
}

TEST_F(DesignTimeTest, APanelOnAFormThatIsEditedDoesNotStart) {
  QStringList boxes;
  QTimer closer;
  QObject::connect(&closer, &QTimer::timeout, &closer, [&boxes] {
    auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    if (!box) return;
    boxes << box->text();
    box->accept();
  });
  closer.start(0);
  QWidget *panel = Open("tarvik::TarvikGUI", {});
  ASSERT_TRUE(panel);
  ASSERT_STREQ(panel->metaObject()->className(), "tarvik::TarvikGUI");
  Settle();
  EXPECT_TRUE(panel->isVisible());
  // Without a driver the start brings boxes, with one a text into the status line.
  EXPECT_EQ(boxes.join('\n').toStdString(), "");
  EXPECT_EQ(panel->findChild<QPlainTextEdit *>(QStringLiteral("txtStatus"))->toPlainText().toStdString(), "");
  EXPECT_FALSE(panel->findChild<QWidget *>(QStringLiteral("cmdRefresh"))->isEnabled());
}

/// What the widget box of the designer holds for the class, as it is dropped on a form: within a widget that is left
/// out.
QString BoxEntry(const char *strClass) {
  QPluginLoader loader(QStringLiteral(TARVIK_PLUGIN));
  auto *collection = qobject_cast<QDesignerCustomWidgetCollectionInterface *>(loader.instance());
  for (auto *control : collection->customWidgets())
    if (control->name() == QLatin1String(strClass)) {
      const QString strXml = control->domXml();
      const qsizetype lngFirst = strXml.indexOf(QStringLiteral("<widget")),
                      lngBehind = strXml.indexOf(QStringLiteral("<customwidgets>"));
      return QStringLiteral(
                 "<ui version=\"4.0\"><widget class=\"QWidget\" name=\"__qt_fake_top_level\">%1</widget></ui>")
          .arg(strXml.mid(lngFirst, lngBehind - lngFirst));
    }
  return {};
}

TEST_F(DesignTimeTest, AFieldThatIsNewlyPlacedIsANewOneAndItsFileSaysWhatItHas) {
  ASSERT_TRUE(Open("tarvik::EngrSpin", {}));
  // A drop from the widget box puts the entry's markup on the form as a paste does.
  QApplication::clipboard()->setText(BoxEntry("tarvik::EngrSpin"));
  m_form->clearSelection(false);
  m_form->selectWidget(m_form->mainContainer());
  QAction *paste = m_core->formWindowManager()->action(QDesignerFormWindowManagerInterface::PasteAction);
  Settle();
  ASSERT_TRUE(paste->isEnabled());
  paste->trigger();
  Settle();
  auto *field = m_form->findChild<QWidget *>(QStringLiteral("esField"));
  ASSERT_TRUE(field);
  EXPECT_EQ(field->property("Min").toDouble(), 1e12);
  EXPECT_EQ(field->property("Max").toDouble(), 1e12);
  EXPECT_EQ(field->property("Value").toDouble(), 0) << "nothing is limited before the designer chooses the limits";
  EXPECT_THAT(Contents(), HasSubstr("name=\"Min\""));
  EXPECT_THAT(Contents(), testing::Not(HasSubstr("NewOnForm")));
  const auto form = Load(QByteArray::fromStdString(Contents()));
  EXPECT_EQ(form->findChild<QWidget *>(QStringLiteral("esField"))->property("Min").toDouble(), 1e12);
  EXPECT_EQ(form->findChild<QWidget *>(QStringLiteral("control"))->property("Min").toDouble(), -1e12);
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
  const std::string strForm = Contents();
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

/// The height of a list is that of a line in the font at hand.
std::string WithoutHeights(const QByteArray &form) {
  return QString::fromUtf8(form).remove(QRegularExpression(QStringLiteral("<height>\\d+</height>"))).toStdString();
}

TEST_F(DesignTimeTest, TheKeptFormIsWhatTheDesignerSaves) {
  QFile file(QStringLiteral(TARVIK_SAVED_FORM));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QByteArray kept = file.readAll();
  ASSERT_TRUE(OpenForm(kept, "esFull"));
  m_form->mainContainer()->resize(800, 600);
  EXPECT_EQ(WithoutHeights(m_form->contents().toUtf8()), WithoutHeights(kept));
}

TEST_F(DesignTimeTest, AListIsLaidOutToTheWidthThatTheFormGivesIt) {
  const QByteArray caption =
      Property("Caption", "<string>Source</string>") + Property("CaptionWidth", "<double>900</double>");
  ASSERT_TRUE(OpenForm(FormOfWidth("tarvik::CboEnhanced", 400, caption)));
  const auto form = Load(QByteArray::fromStdString(Contents()));
  form->show();
  Settle();
  QWidget &list = *Control(*form);
  ASSERT_EQ(list.width(), 400);
  const QRect box = list.findChild<QComboBox *>(QStringLiteral("cbo"))->geometry();
  const QRect label = list.findChild<QLabel *>(QStringLiteral("lblCaption"))->geometry();
  EXPECT_NEAR(box.right(), 399, 1);
  EXPECT_GT(box.left(), label.right());
  EXPECT_GT(label.width(), 0);
  EXPECT_EQ(box.height(), list.height());
}

TEST_F(DesignTimeTest, AListThatIsDraggedWiderIsLaidOutAnewAndAtOnce) {
  QWidget *list = Open("tarvik::CboEnhanced", {});
  ASSERT_TRUE(list);
  Assign(list, "geometry", QRect(10, 10, 500, 90));
  const QWidget &box = *list->findChild<QComboBox *>(QStringLiteral("cbo"));
  EXPECT_NEAR(box.geometry().right(), 499, 1);
  EXPECT_EQ(list->height(), box.height());
  const int intLeft = box.x();
  Assign(list, "CaptionWidth", 0.0);
  EXPECT_EQ(box.x(), 0);
  EXPECT_GT(intLeft, 0);
}

}  // namespace tarvik::test
