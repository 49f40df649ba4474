#pragma once

#include <array>
#include <memory>
#include <string>

#include "controls/CboEnhanced.h"
#include "controls/FrameEnhanced.h"
#include "engrspin/EngrSpin.h"
#include "panel/Page.h"
#include "platform/OptionButton.h"
#include "settings/LevelRules.h"

namespace tarvik {

class ChannelOutputs;

/// Levels of each channel: format, unit, impedance, load compensation, polarity and output switches; and whether
/// channel 2 is added to output 1.
class LevelsPage : public Page {
 public:
  LevelsPage(QWidget &page, PanelServices &panel);
  ~LevelsPage() override;

  void Enter() override;
  void VisitState(StateArchive &archive) override;

  void FillLevelCombos();
  /// Sets the output groups of this page from the panel's flags.
  void ShowLevelOutputs();
  void TakeShown(Setup &setup) const override;
  void ShowSetup(const Setup &setup) override;
  void UploadLevels(Boolean &fOk);
  void DownloadLevels();
  /// The latest preset of each channel, by control index.
  const std::array<LevelPreset, 2> &Presets() const { return m_arrPresets; }
  void ConvertLevelField(EngrSpin &esField, Integer intChan, std::string &strUnits);

 private:
  void cboLevelFormat_Click(Integer Index);
  void ApplyLevelFormat(Integer Index);
  void cboLevelUnits_Click(Integer Index);
  void esLoadCompensation_AfterUpdate(Integer Index);
  void ConvertLevelFields(Integer intChan, const std::string &strUnits);
  void ShowChannel(const udtLevelInfo &levels, Long lngChannel);
  /// Shows a level as the instrument told it, in the unit of the field, without conversion.
  static void ShowLevel(EngrSpin &esField, Double dblLevel, Double dblLoad);

  ControlArray<CboEnhanced> cboLevelFormat;
  ControlArray<CboEnhanced> cboLevelUnits;
  ControlArray<CboEnhanced> cboOutputImpedance;
  ControlArray<EngrSpin> esLoadCompensation;
  ControlArray<EngrSpin> esLevelHigh;
  ControlArray<EngrSpin> esLevelLo;
  ControlArray<FrameEnhanced> grpNormalCompliment;
  FrameEnhanced &grpOutputs;
  ControlArray<OptionButton> optNormalCompliment;
  ControlArray<OptionButton> optOutputs;
  std::unique_ptr<ChannelOutputs> m_outputs;

  bool m_sfInFormat = false;
  std::array<LevelPreset, 2> m_arrPresets{};
};

}  // namespace tarvik
