#pragma once

#include "controls/FrameEnhanced.h"
#include "engrspin/EngrSpin.h"
#include "panel/Page.h"
#include "platform/OptionButton.h"

namespace tarvik {

/// Output limits of each channel, and whether they apply.
class LimitsPage : public Page {
 public:
  LimitsPage(QWidget &page, PanelServices &panel);

  void Enter() override;

  void TakeShown(Setup &setup) const override;
  void ShowSetup(const Setup &setup) override;
  void UploadLimits(Boolean &fOk);
  void DownloadLimits();

 private:
  void ShowLimits(const udtLimitsInfo &limits);

  ControlArray<FrameEnhanced> grpLimitsChanel;
  ControlArray<OptionButton> optLimitsChanel;
  ControlArray<EngrSpin> esLimitHighVoltage;
  ControlArray<EngrSpin> esLimitLowVoltage;
  ControlArray<EngrSpin> esLimitHighCurrent;
  ControlArray<EngrSpin> esLimitLowCurrent;
};

}  // namespace tarvik
