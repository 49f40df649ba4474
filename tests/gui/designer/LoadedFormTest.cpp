#include <QCoreApplication>
#include <QLabel>
#include <QPluginLoader>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

#include "DesignerFixture.h"

namespace tarvik::test {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST_F(FormTest, ThePlugInOffersTheControlsOfTheLibrary) {
  QPluginLoader loader(QStringLiteral(TARVIK_PLUGIN));
  auto *collection = qobject_cast<QDesignerCustomWidgetCollectionInterface *>(loader.instance());
  ASSERT_TRUE(collection) << loader.errorString().toStdString();
  std::vector<std::string> arrNames;
  for (const auto *control : collection->customWidgets()) arrNames.push_back(control->name().toStdString());
  EXPECT_THAT(arrNames, ElementsAre("tarvik::TarvikGUI", "tarvik::EngrSpin", "tarvik::CboEnhanced",
                                    "tarvik::FrameEnhanced", "tarvik::BitPattern"));
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

TEST_F(FormTest, ThePropertiesOfRunTimeAreSetAndRead) {
  const auto form = Load(Form("tarvik::EngrSpin", Property("Max", "<double>50</double>")));
  QWidget &field = *Control(*form);
  field.setProperty("NumberFormat", QStringLiteral("#"));
  EXPECT_EQ(field.property("NumberFormat").toString(), QStringLiteral("#"));
  field.setProperty("Value", 4.0);
  EXPECT_EQ(field.property("Reciprocal").toDouble(), 0.25);
  field.setProperty("Reciprocal", 0.5);
  EXPECT_EQ(field.property("Value").toDouble(), 2.0);
  EXPECT_EQ(field.property("OldValue").toDouble(), 4.0);
  EXPECT_EQ(field.property("Text").toString(), QStringLiteral("2"));
  field.setProperty("AuxUnits", QStringLiteral("div"));
  field.setProperty("AuxValue", 7.5);
  EXPECT_EQ(field.property("AuxUnits").toString(), QStringLiteral("div"));
  EXPECT_EQ(field.property("AuxValue").toDouble(), 7.5);
  EXPECT_FALSE(field.setProperty("OldValue", 1.0));
  form->show();
  field.setProperty("TextBoxWidth", 1.0);
  field.setProperty("Text", QStringLiteral("9"));
  EXPECT_EQ(field.property("Text").toString(), QStringLiteral("2"));
  EXPECT_GT(field.property("TextBoxWidth").toDouble(), 1000.0);

  const auto other = Load(Form("tarvik::CboEnhanced", {}));
  EXPECT_EQ(Control(*other)->property("ListIndex").toInt(), -1);
  EXPECT_EQ(Control(*other)->property("ListCount").toInt(), 0);
  EXPECT_EQ(Control(*other)->property("Text").toString(), QString());

  const auto third = Load(Form("tarvik::FrameEnhanced", {}));
  Control(*third)->setProperty("Appearance", 0);
  EXPECT_EQ(Control(*third)->property("Appearance").toInt(), 0);
  EXPECT_TRUE(Control(*third)->property("Enabled").toBool());
  Control(*third)->setProperty("Enabled", false);
  EXPECT_FALSE(Control(*third)->property("Enabled").toBool());
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

TEST_F(FormTest, WhatAnEarlierPropertyLeftBehindDoesNotActOnALaterOne) {
  // A number too small to be held counts up to the smallest one only from a fresh field.
  const QByteArray tiny = Property("DefaultValue", "<double>0.000000000000005</double>");
  const QByteArray locked = Property("Locked", "<bool>true</bool>");
  const QByteArray others = Property("MinExponent", "<number>-9</number>") + Property("Min", "<double>-5</double>") +
                            Property("BaseUnit", "<string>V</string>");
  for (const QByteArray &properties : {tiny + locked + others, others + tiny + locked}) {
    const auto form = Load(Form("tarvik::EngrSpin", properties));
    QWidget *field = Control(*form);
    EXPECT_DOUBLE_EQ(field->property("Value").toDouble(), 1e-11);
    EXPECT_EQ(field->property("OldValue").toDouble(), 0.0);
    EXPECT_FALSE(field->findChild<QWidget *>(QStringLiteral("spinCtl"))->isEnabled());
  }
}

TEST_F(FormTest, APropertyOutsideOfTheStoredOnesHoldsWhereverItStandsInTheFile) {
  const QByteArray value = Property("Value", "<double>4</double>");
  const QByteArray limit = Property("Max", "<double>5</double>");
  for (const QByteArray &properties : {value + limit, limit + value}) {
    const auto form = Load(Form("tarvik::EngrSpin", properties));
    EXPECT_EQ(Control(*form)->property("Value").toDouble(), 4.0);
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
  ASSERT_EQ(messages.Told().size(), 2u);
  EXPECT_EQ(messages.Told()[0],
            "tarvik::EngrSpin \"control\": the property MaxExponent cannot be \"plenty\" and keeps its value");
}

TEST_F(FormTest, ARefusedValueLoadsAsTheDefaultAndTheMessageSaysWhy) {
  const Messages messages;
  const auto form = Load(Form("tarvik::EngrSpin", Property("SignificantDigits", "<number>3</number>") +
                                                      Property("Max", "<double>nan</double>") +
                                                      Property("Caption", "<string>Width</string>")));
  QWidget *field = Control(*form);
  EXPECT_EQ(field->property("SignificantDigits").toInt(), 4);
  EXPECT_EQ(field->property("Max").toDouble(), 1e12);
  EXPECT_EQ(field->property("Caption").toString(), QStringLiteral("Width"));
  EXPECT_THAT(messages.Told(),
              ElementsAre("tarvik::EngrSpin \"control\": Significant Digits must be between 4 and 10",
                          "tarvik::EngrSpin \"control\": the property Max cannot be \"nan\" and keeps its value"));
}

TEST_F(FormTest, AListAndAFrameTakeNoMalformedPropertiesEither) {
  const Messages messages;
  const auto list = Load(Form("tarvik::CboEnhanced", Property("CaptionAlignment", "<string>middle</string>") +
                                                         Property("CaptionWidth", "<string>wide</string>") +
                                                         Property("TagX", "<string>123</string>")));
  EXPECT_EQ(Control(*list)->property("CaptionAlignment").toInt(), 0);
  EXPECT_EQ(Control(*list)->property("CaptionWidth").toDouble(), 1215.0);
  EXPECT_EQ(Control(*list)->property("TagX").toString(), QStringLiteral("123"));
  const auto frame = Load(Form("tarvik::FrameEnhanced", Property("BorderStyle", "<double>0.5</double>") +
                                                            Property("Colour", "<string>red</string>")));
  EXPECT_EQ(Control(*frame)->property("BorderStyle").toInt(), 1);
  EXPECT_EQ(Control(*frame)->property("Caption").toString(), QStringLiteral("Frame"));
  EXPECT_EQ(messages.Told().size(), 4u);
}

TEST_F(FormTest, UnknownPropertiesArePassedOverWithAMessage) {
  const Messages messages;
  const auto form = Load(Form("tarvik::CboEnhanced", Property("Colour", "<string>red</string>") +
                                                         Property("Caption", "<string>Source</string>")));
  EXPECT_EQ(Control(*form)->property("Caption").toString(), QStringLiteral("Source"));
  EXPECT_THAT(messages.Told(),
              ElementsAre("tarvik::CboEnhanced \"control\": there is no property Colour; it is passed over"));
}

TEST_F(FormTest, AtRunTimeAnExponentCorrectsItselfInSilence) {
  const Messages messages;
  const auto form = Load(Form("tarvik::EngrSpin", Property("MaxExponent", "<number>7</number>")));
  EXPECT_EQ(Control(*form)->property("MaxExponent").toInt(), 6);
  EXPECT_THAT(messages.Told(), IsEmpty());
}

}  // namespace tarvik::test
