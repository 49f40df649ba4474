#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>

#include "platform/WidgetControl.h"

namespace tarvik {

/// A label of plain text.
class Label : public WidgetControl<QLabel> {
 public:
  using WidgetControl::WidgetControl;
};

/// A container without a frame; disabling it leaves the Enabled of the controls in it.
class PlainContainer : public WidgetControl<QWidget> {
 public:
  using WidgetControl::WidgetControl;
};

/// A read-only line of text that the user can copy.
class DisplayField : public WidgetControl<QLineEdit> {
 public:
  explicit DisplayField(QWidget *parent = nullptr);
  const std::string &Text() const { return m_strText; }
  /// A text that is too long shows its beginning, and its tool tip the whole.
  void SetText(const std::string &strText);

 protected:
  bool event(QEvent *event) override;
  void changeEvent(QEvent *event) override;

 private:
  void TakeColours();

  std::string m_strText;  ///< avoids a conversion to UTF-16 for each comparison
};

/// The same with several lines.
class DisplayBox : public WidgetControl<QPlainTextEdit> {
 public:
  explicit DisplayBox(QWidget *parent = nullptr) : WidgetControl(parent) {
    setReadOnly(true);
    setTabChangesFocus(true);
  }
  std::string Text() const { return toPlainText().toStdString(); }
  void SetText(const std::string &strText) { setPlainText(QString::fromStdString(strText)); }
};

}  // namespace tarvik
