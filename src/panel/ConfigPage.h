#pragma once

#include "controls/CboEnhanced.h"
#include "panel/Page.h"
#include "platform/CommandButton.h"
#include "platform/PlainControls.h"

namespace tarvik {

class InstrPage;

/// Identity of the instrument, the buttons of the instrument commands, and the reference of the internal PLL.
class ConfigPage : public Page {
 public:
  ConfigPage(QWidget &page, PanelServices &panel, InstrPage &instruments);

  void Enter() override;

  void InitPllRefCombos();
  void TakeShown(Setup &setup) const override;
  void ShowSetup(const Setup &setup) override;
  void UploadConfig(Boolean &fOk);
  void DownloadConfig();
  void cmdResetInstr_Click();
  void cmdSelfTest_Click();
  void cmdCalibrate_Click();

  CommandButton &cmdResetInstr;
  CommandButton &cmdSelfTest;
  CommandButton &cmdCalibrate;

 private:
  void cboPllRefSource_Click();
  void cboPllRefFreq_Click();
  void ShowEntryOfSession();
  void ReadPllReference();
  void ShowPllReference(Double dblFreq, Long eSource);

  InstrPage &m_instruments;
  CboEnhanced &cboPllRefSource;
  CboEnhanced &cboPllRefFreq;
  DisplayField &txtNumChannels;
  DisplayField &txtSlot;
  DisplayField &txtLogAddr;
  DisplayField &txtModelCode;
  DisplayField &txtProductId;
  DisplayField &txtSerialNumber;
  DisplayField &txtVersion;
  DisplayField &txtOptions;
};

}  // namespace tarvik
