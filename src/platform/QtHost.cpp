#include "platform/QtHost.h"

#include <QApplication>
#include <QInputDialog>
#include <QLocale>
#include <QMessageBox>
#include <QPointer>

#include "support/SettingsFile.h"

namespace tarvik {

namespace {

QMessageBox::Icon ToQIcon(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::Stop:
    case BoxIcon::Critical: return QMessageBox::Critical;
    case BoxIcon::Question: return QMessageBox::Question;
    case BoxIcon::Exclamation: return QMessageBox::Warning;
    case BoxIcon::Information: return QMessageBox::Information;
  }
  return QMessageBox::NoIcon;
}

QString ShownText(const std::string &strText) {
  return QString::fromStdString(strText).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
}

/// While a box asks the user something the busy pointer would be a lie.
class PlainPointer {
 public:
  PlainPointer() { QApplication::setOverrideCursor(Qt::ArrowCursor); }
  ~PlainPointer() { QApplication::restoreOverrideCursor(); }
  PlainPointer(const PlainPointer &) = delete;
  PlainPointer &operator=(const PlainPointer &) = delete;
};

}  // namespace

BoxAnswer QtHost::MsgBox(const std::string &strText, BoxIcon icon, BoxButtons buttons, const std::string &strTitle) {
  const PlainPointer pointer;
  // A host may end the window while the box asks, and the box with it.
  const QPointer<QMessageBox> box = new QMessageBox(ToQIcon(icon), QString::fromStdString(strTitle), ShownText(strText),
                                                    QMessageBox::NoButton, QApplication::activeWindow());
  box->setObjectName(QStringLiteral("MsgBox"));
  // Texts of drivers are shown as they are, whatever they look like.
  box->setTextFormat(Qt::PlainText);
  box->setTextInteractionFlags(Qt::TextSelectableByMouse);
  if (buttons == BoxButtons::Ok) {
    box->setStandardButtons(QMessageBox::Ok);
  } else {
    box->setStandardButtons(QMessageBox::Yes | QMessageBox::No);
    box->setDefaultButton(QMessageBox::Yes);
    box->setEscapeButton(QMessageBox::No);
  }
  const int intButton = box->exec();
  delete box;
  if (buttons == BoxButtons::Ok) return BoxAnswer::Ok;
  return intButton == QMessageBox::Yes ? BoxAnswer::Yes : BoxAnswer::No;
}

std::string QtHost::InputBox(const std::string &strPrompt, const std::string &strTitle, const std::string &strDefault) {
  const PlainPointer pointer;
  bool fAccepted = false;
  const QString text =
      QInputDialog::getText(QApplication::activeWindow(), QString::fromStdString(strTitle), ShownText(strPrompt),
                            QLineEdit::Normal, QString::fromStdString(strDefault), &fAccepted);
  return fAccepted ? text.toStdString() : std::string{};
}

void QtHost::Beep() { QApplication::beep(); }

void QtHost::SetMousePointer(Integer intPointer) {
  if (m_intPointer == PointerHourglass) QApplication::restoreOverrideCursor();
  m_intPointer = intPointer;
  if (m_intPointer == PointerHourglass) QApplication::setOverrideCursor(Qt::WaitCursor);
}

std::string QtHost::GetSetting(const std::string &strApplication, const std::string &strSection,
                               const std::string &strKey, const std::string &strDefault) {
  return SettingsFile::Of(strApplication).Value(strSection, strKey).value_or(strDefault);
}

void QtHost::SaveSetting(const std::string &strApplication, const std::string &strSection, const std::string &strKey,
                         const std::string &strValue) {
  SettingsFile::Of(strApplication).Save(strSection, strKey, strValue);
}

char QtHost::DecimalSeparator() const {
  const QString separator = QLocale().decimalPoint();
  return separator == QStringLiteral(",") ? ',' : '.';
}

void QtHost::DoEvents() { QCoreApplication::processEvents(); }

void EnsureQtHost() {
  static QtHost host;
  Host *before = SetHost(&host);
  if (before) SetHost(before);
}

}  // namespace tarvik
