#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QByteArray>
#include <QDesignerFormEditorInterface>
#include <QDesignerFormWindowInterface>
#include <QDesignerPropertyEditorInterface>
#include <QDesignerPropertySheetExtension>
#include <QPointer>
#include <QVariant>
#include <QWidget>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tarvik::test {

/// Collects the warnings that are about controls of the library.
class Messages {
 public:
  Messages();
  ~Messages();
  Messages(const Messages &) = delete;
  Messages &operator=(const Messages &) = delete;

  const std::vector<std::string> &Told() const;
};

/// Markup of one property of a control.
QByteArray Property(const char *strName, const char *strValue);
/// A form with one control of this class, 242 by 21 pixels, its properties and what stands in it.
QByteArray Form(const char *strClass, const QByteArray &properties, const QByteArray &contents = {});
/// The same with a width of the control's own.
QByteArray FormOfWidth(const char *strClass, int intWidth, const QByteArray &properties);

struct Setting {
  const char *strProperty;
  QVariant value;
};

/// Each class that the plug-in offers, with a value other than the default for each property that can be assigned.
const std::vector<std::pair<const char *, std::vector<Setting>>> &Classes();

/// Forms that are loaded at run time with the designer's plug-in.
class FormTest : public testing::Test {
 protected:
  void SetUp() override;

  static std::unique_ptr<QWidget> Load(const QByteArray &form);
  static QWidget *Control(QWidget &form) { return form.findChild<QWidget *>(QStringLiteral("control")); }
  static void Settle();
};

/// The form designer itself, without its main window.
class DesignTimeTest : public FormTest {
 protected:
  void SetUp() override;
  void TearDown() override;

  /// Opens the form and gives its control, or the form's widget of another name.
  QWidget *OpenForm(const QByteArray &form, const char *strName = "control");
  QWidget *Open(const char *strClass, const QByteArray &properties) { return OpenForm(Form(strClass, properties)); }
  QDesignerPropertySheetExtension *Sheet(QWidget *control);
  /// Assigns as the property editor does; gives the text of the box that came up.
  std::string Assign(QWidget *control, const char *strProperty, const QVariant &value);
  /// What the property editor says of a property of the control that it shows.
  std::string ShownDescription(const char *strProperty) const;
  std::string Contents() const { return m_form->contents().toStdString(); }

  std::unique_ptr<QWidget> m_window;
  std::unique_ptr<QDesignerFormEditorInterface> m_core;
  QPointer<QDesignerFormWindowInterface> m_form;
};

}  // namespace tarvik::test
