#pragma once

#include "controls/CboEnhanced.h"
#include "controls/FrameEnhanced.h"
#include "engrspin/EngrSpin.h"
#include "panel/Page.h"
#include "platform/OptionButton.h"

namespace tarvik {

/// Thresholds and impedances of the two inputs, level families of the two auxiliary outputs, and the VXI trigger.
class TrigLevPage : public Page {
 public:
  TrigLevPage(QWidget &page, PanelServices &panel);

  void Enter() override;

  /// Writes the tags of the options and fills the two lists.
  void FillTrigLevelControls();
  void TakeShown(Setup &setup) const override;
  void ShowSetup(const Setup &setup) override;
  void UploadTrigLevels(Boolean &fOk);
  void DownloadTrigLevels();
  void optTrigLevelExtIn_Click(Integer Index);
  void optTrigLevelClkIn_Click(Integer Index);

 private:
  void ShowTrigLevels(const udtTrgLevelsInfo &levels);
  void esTrgLevExtInThreshold_AfterUpdate();
  void esTrgLevClkInThreshold_AfterUpdate();
  void ApplyPreset(EngrSpin &field, Integer Index);

  FrameEnhanced &grpTrigLevelExtIn;
  FrameEnhanced &grpTrigLevelClkIn;
  FrameEnhanced &grpTrigLevelExtInImp;
  FrameEnhanced &grpTrigLevelClkInImp;
  FrameEnhanced &grpTrigLevelTrigOut;
  FrameEnhanced &grpTrigLevelStrobeOut;
  ControlArray<OptionButton> optTrigLevelExtIn;
  ControlArray<OptionButton> optTrigLevelClkIn;
  EngrSpin &esTrgLevExtInThreshold;
  EngrSpin &esTrgLevClkInThreshold;
  CboEnhanced &cboVxiTriggerEnable;
  CboEnhanced &cboVxiTriggerSource;
};

}  // namespace tarvik
