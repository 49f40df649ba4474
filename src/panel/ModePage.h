#pragma once

#include <optional>

#include "controls/CboEnhanced.h"
#include "controls/FrameEnhanced.h"
#include "engrspin/EngrSpin.h"
#include "panel/Page.h"
#include "platform/OptionButton.h"
#include "settings/ModeRules.h"

namespace tarvik {

class PatternPage;
class TimingPage;

/// How the generator runs: trigger mode, pulse mode and the choices that these leave. Each list remembers its choice
/// for each combination of modes.
class ModePage : public Page {
 public:
  ModePage(QWidget &page, PanelServices &panel, TimingPage &timing, PatternPage &pattern);

  void Enter() override;
  void VisitState(StateArchive &archive) override;

  /// Once at the start: writes the tags of the options and shows the mode.
  void InitModePage();
  /// Everything that follows from the two modes.
  void UpdateModePage();
  void UpdatePulseType();
  void TakeShown(Setup &setup) const override;
  void ShowSetup(const Setup &setup) override;
  void UploadMode(Boolean &fOk);
  void DownloadMode();

 private:
  void ConnectEvents();
  void optMode_Click();
  void cboArmingSource_Click();
  void cboPeriodSource_Click();
  void cboArmingLevel_Click();
  void cboTriggerSlope_Click();
  void cboPulseType_Click(CboEnhanced &cboPulseType);
  void esPllPeriodOrFreq_OnTab(Boolean &SwallowTab);

  Boolean IsEnabledForMode(const char *strMask) const;

  void SetCboPulseType();
  void FillPulseType(CboEnhanced &cboPulseType, Integer intChan);
  void UpdatePeriodSource();
  void UpdateTriggerSlope();
  void UpdateArmingSource();
  void FillArmingSource(Boolean fPllAllowed);
  void UpdateArmingLevel();
  void FillArmingLevel();
  void UpdatePllField();
  void CheckPllConflict(Boolean &fConflict) const;
  void ShowRz(const RzFlags::Change &change);

  /// The automatic download of a session runs before EnableControlsForChannels. What the instrument has and the one
  /// before lacked, VXI lines and channel 2, has to be offered by then, or its settings could not be shown.
  void FitToInstrument();
  ModeFields Fields() const;
  void ShowMode(const udtModeInfo &mode);
  void ShowFields(const ModeFields &fields);

  TimingPage &m_timing;
  PatternPage &m_pattern;
  FrameEnhanced &grpTriggerMode;
  FrameEnhanced &grpPulseMode;
  ControlArray<OptionButton> optTriggerMode;
  ControlArray<OptionButton> optPulseMode;
  EngrSpin &esBurstLength;
  CboEnhanced &cboPulseType1;
  CboEnhanced &cboPulseType2;
  CboEnhanced &cboPeriodSource;
  CboEnhanced &cboTriggerSlope;
  CboEnhanced &cboArmingSource;
  CboEnhanced &cboArmingLevel;
  EngrSpin &esPllPeriodOrFreq;

  Event<const RzFlags::Change &>::Connection m_rzConnection;
  /// Whether the list of arming sources is that of an instrument with VXI lines; empty until the list is filled.
  std::optional<Boolean> m_fOffersVxiLines;
  Boolean m_fPllLevels;               ///< the list of levels tells how the PLL is given
  bool m_fIgnorePllConflict = false;  ///< the lists are being filled by the program
};

}  // namespace tarvik
