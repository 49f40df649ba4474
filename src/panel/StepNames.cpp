#include "panel/StepNames.h"

#include <QAbstractButton>
#include <algorithm>
#include <array>

#include "bitpattern/BitPattern.h"
#include "bitpattern/PatternOperations.h"
#include "controls/CboEnhanced.h"
#include "controls/FrameEnhanced.h"
#include "engrspin/EngrSpin.h"
#include "platform/Accessibility.h"
#include "platform/ListView.h"
#include "platform/OptionButton.h"
#include "platform/ToolPopup.h"

namespace tarvik {

namespace {

constexpr std::array<const char *, 4> PatternRows{"channel 1", "channel 2", "both channels", "strobe"};

struct Transfer {
  const char *strControl;
  const char *strName;
};
constexpr Transfer Transfers[] = {{"cmdDownload", "Download"},
                                  {"cmdUpload", "Read back after an upload"},
                                  {"cmdResetInstr", "Reset"},
                                  {"cmdSelfTest", "Selftest"},
                                  {"cmdCalibrate", "Calibrate"},
                                  {"cmdCheckErrors", "Read back after errors"},
                                  {"cmdCheckWarnings", "Read back after warnings"},
                                  {"cmdRefresh", "Refresh"},
                                  {"lvwInstruments", "Open"}};

const Transfer *TransferOf(const QWidget &control) {
  for (const QWidget *widget = &control; widget; widget = widget->parentWidget())
    for (const Transfer &transfer : Transfers)
      if (widget->objectName() == QLatin1String(transfer.strControl)) return &transfer;
  return nullptr;
}

QString OpenInstrument(const QWidget &control) {
  for (const QWidget *widget = &control; widget; widget = widget->parentWidget()) {
    auto *list = dynamic_cast<const ListView *>(widget);
    for (int i = 0; list && i < list->Count(); ++i)
      if (list->Item(i)->Checked()) return QLatin1Char(' ') + QString::fromStdString(list->Item(i)->Text());
  }
  return {};
}

/// Names of channels stand within a sentence here.
QString InSentence(const QString &strName) {
  return strName.trimmed().replace(QStringLiteral(", Channel "), QStringLiteral(", channel "));
}

QString OwnName(const QWidget &control) {
  if (!control.accessibleName().isEmpty()) return control.accessibleName();
  if (auto *field = dynamic_cast<const EngrSpin *>(&control)) return QString::fromStdString(field->Caption());
  if (auto *list = dynamic_cast<const CboEnhanced *>(&control)) return QString::fromStdString(list->Caption());
  if (auto *button = dynamic_cast<const QAbstractButton *>(&control)) return button->text();
  if (dynamic_cast<const BitPattern *>(&control)) return QStringLiteral("Bits of the pattern");
  return control.toolTip();
}

QString OptionName(const OptionButton &option) {
  const QWidget *widget = option.parentWidget();
  while (widget && !dynamic_cast<const FrameEnhanced *>(widget)) widget = widget->parentWidget();
  auto *frame = dynamic_cast<const FrameEnhanced *>(widget);
  const QString strChoice = PlainCaption(option.text());
  if (!frame) return strChoice;
  return InSentence(NameInBoxes(PlainCaption(QString::fromStdString(frame->Caption())), *frame)) +
         QStringLiteral(": ") + strChoice;
}

}  // namespace

bool IsTransfer(const QWidget &control) { return TransferOf(control) != nullptr; }

QString TransferName(const QWidget &control) {
  const Transfer *transfer = TransferOf(control);
  return (transfer ? QString::fromLatin1(transfer->strName) : QString()) + OpenInstrument(control);
}

QString PatternOperationName(const ToolPopup &popup, const std::string &strKey) {
  const auto &arrOperations = PatternOperations::Operations();
  const auto operation = std::ranges::find(arrOperations, strKey, &PatternOperations::Operation::strKey);
  if (operation == arrOperations.end()) return {};
  // The buttons are an array of controls: "toolPopup(1)".
  const QString strIndex = popup.objectName().section(QLatin1Char('('), 1).section(QLatin1Char(')'), 0, 0);
  const auto lngRow = static_cast<std::size_t>(strIndex.toInt());
  // One of the menu's texts lacks its blank.
  const QString strOperation =
      strKey == "Fill1" ? QStringLiteral("Fill 1") : QString::fromLatin1(operation->strCaption);
  return strOperation + QStringLiteral(", ") +
         QString::fromLatin1(lngRow < PatternRows.size() ? PatternRows[lngRow] : "");
}

QString ControlCaption(QWidget &control) {
  // Fields and lists are named by what they are alone; the form has named the others with the boxes around them.
  const bool fBare = dynamic_cast<EngrSpin *>(&control) || dynamic_cast<CboEnhanced *>(&control);
  if (!fBare && !control.accessibleName().isEmpty()) return InSentence(control.accessibleName());
  return InSentence(NameInBoxes(PlainCaption(OwnName(control)), control));
}

QString StepName(QWidget &control, const std::string &strBefore, const std::string &strAfter) {
  if (auto *option = dynamic_cast<OptionButton *>(&control)) return OptionName(*option);
  const QString strName = ControlCaption(control);
  const QString before = PlainCaption(QString::fromStdString(strBefore)),
                after = PlainCaption(QString::fromStdString(strAfter));
  if (after.isEmpty() || before == after) return strName;
  // A button that changes its caption is called by it.
  if (dynamic_cast<QAbstractButton *>(&control)) return before + QStringLiteral(" to ") + after;
  // Presets say what they do.
  if (after.startsWith(QLatin1String("Set "))) return after + strName.mid(strName.indexOf(QLatin1Char(',')));
  return strName + QStringLiteral(": ") + before + QStringLiteral(" to ") + after;
}

}  // namespace tarvik
