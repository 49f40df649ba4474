#pragma once

#include <string>

#include "controls/CboEnhanced.h"
#include "controls/FrameEnhanced.h"
#include "engrspin/EngrSpin.h"
#include "panel/Page.h"
#include "platform/OptionButton.h"
#include "settings/ModeRules.h"

namespace tarvik {

class PatternPage;
class TimingPage;

/// How the generator runs: trigger mode, pulse mode, and what each of these leaves to be chosen. Each list remembers
/// the choice for each combination of modes.
class ModePage : public Page {
 public:
  ModePage(QWidget &page, PanelServices &panel, TimingPage &timing, PatternPage &pattern);

  void Enter() override;

  /// Once at the start: writes the tags of the options and shows the mode.
  void InitModePage();
  /// Everything that follows from the two modes.
  void UpdateModePage();
  void UploadMode(Boolean &fOk);
  void DownloadMode();

 private:
  friend class PanelTestAccess;

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
  void UpdatePulseType();
  void ShowRz(const RzFlags::Change &change);

  /// A session's automatic download comes before the gate has run for its instrument: what that one can do more than
  /// the one before has to be here to be shown.
  void FitToInstrument();
  ModeFields Fields() const;
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
  Boolean m_fOffersVxiLines;      ///< the list of arming sources is that of an instrument with VXI lines
  Boolean m_fPllLevels;           ///< the list of levels tells how the PLL is given
  bool m_fPllServesOnce = false;  ///< while a mode is read that uses the PLL no more than once
};

}  // namespace tarvik
