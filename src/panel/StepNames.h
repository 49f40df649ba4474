#pragma once

#include <QString>
#include <QWidget>
#include <string>

namespace tarvik {

class ToolPopup;

/// Whether the control moves settings between panel and instrument, rather than being one itself.
bool IsTransfer(const QWidget &control);
/// "Download", "Open VP-210".
QString TransferName(const QWidget &control);
/// "Fill 1, channel 2", by the button and the key of its menu.
QString PatternOperationName(const ToolPopup &popup, const std::string &strKey);
/// "Width, channel 1".
QString ControlCaption(QWidget &control);
/// "Width, channel 1: 100.0 ns to 50.00 ns", "Output, channel 1: On", "Set TTL, channel 2". The words are what the
/// control showed before and after.
QString StepName(QWidget &control, const std::string &strBefore, const std::string &strAfter);

}  // namespace tarvik
