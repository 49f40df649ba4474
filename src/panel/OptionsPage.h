#pragma once

#include "controls/FrameEnhanced.h"
#include "panel/Page.h"
#include "platform/CheckBox.h"
#include "platform/OptionButton.h"

namespace tarvik {

/// The panel's own options; none is sent to the instrument.
class OptionsPage : public Page {
 public:
  OptionsPage(QWidget &page, PanelServices &panel);

  void Enter() override;

  void chkAutoErrors_Click();
  void chkAutoWarnings_Click();
  void chkAutoOutputOnOff_Click();

  /// Whether an upload takes all changed pages, a download all pages.
  Boolean UploadsAll() const;
  Boolean DownloadsAll() const;

  CheckBox &chkAutoErrors;
  CheckBox &chkAutoWarnings;
  CheckBox &chkAutoDownload;
  CheckBox &chkAutoDownOnError;
  CheckBox &chkAutoOutputOnOff;
  FrameEnhanced &grpDownload;
  FrameEnhanced &grpUpload;

 private:
};

}  // namespace tarvik
