#pragma once

#include "controls/FrameEnhanced.h"
#include "engrspin/EngrSpin.h"
#include "panel/ChannelOutputs.h"
#include "panel/Page.h"
#include "panel/TimingDiagram.h"
#include "platform/CommandButton.h"
#include "platform/PictureBox.h"
#include "platform/ToolPopup.h"

namespace tarvik {

/// One period or frequency for the instrument, delay, width, edges and output switches of each channel, and a diagram
/// of the pulses that they make. The period yields to the width when the user edits the period; in every other case
/// width and delay yield to the period.
class TimingPage : public Page {
 public:
  TimingPage(QWidget &page, PanelServices &panel);

  void Enter() override;
  void VisitState(StateArchive &archive) override;

  void TakeShown(Setup &setup) const override;
  void ShowSetup(const Setup &setup) override;
  void UploadTiming(Boolean &fOk);
  void DownloadTiming();

  /// The selected pulse mode is the pattern.
  Boolean IsPatternMode() const;

  /// Draws the whole diagram anew.
  void DrawTiming();
  /// Hides the lane of a channel 2 that the instrument does not have. Draws nothing anew.
  void ShowLanes();

  /// Locks and blanks the width of a channel that has none: in pattern mode without return to zero.
  void LockWidths();
  /// The delay's caption tells single from double pulses.
  void ShowDelayCaptions();
  /// The output groups of this page follow the panel's flags.
  void ShowTimingOutputs();
  /// Couples the trailing edge to the leading edge or frees it. fLocked takes the choice from the user; only
  /// fClearLock lifts such a lock. intChan is 0 or 1.
  void SetTrailEdgeMode(Integer intChan, Boolean fTeEqLe, Boolean fLocked, Boolean fClearLock);
  /// Sends one output switch at once, or marks the pages that carry it.
  void SetChannelOutput(Integer intChan, Boolean fState, Boolean fIsComplement);
  void cmdPeriodOrFreq_Click();
  void toolPopupTEdge_ButtonMenuClick(Integer Index, const std::string &strKey);
  /// Widest width that the period has to hold; the answer tells whether any channel counts.
  Boolean GetWidestWidth(Long lngCount, Double &dblWidth) const;
  /// What becomes of a value that lies outside a range written now.
  enum class OutOfRange { Cut, Stands };
  void SetTimingRanges(Boolean fCheckPeriod, OutOfRange eValues = OutOfRange::Cut);
  void SetPeriodOrFreq(Boolean fToggle, Boolean fToFrequency);

 private:
  void ConnectEvents();
  void esPeriodOrFreq_AfterUpdate();
  void esWidth_AfterUpdate(Integer Index);
  void esLeadingEdge_AfterUpdate(Integer Index);

  /// The field shows a frequency, not a period.
  Boolean IsFrequency() const { return m_fIsFrequency; }
  /// Seconds, in either form.
  Double GetPeriod() const;
  void SetChannelRanges(Long k, Double dblPeriod, OutOfRange eValues);
  udtChannelTiming TimingOf(Integer intChan) const;
  Boolean &TeEqLe(Long k) const;
  void ShowTiming(const udtTimingInfo &timing);
  void ShowChannel(const udtTimingInfo &timing, Long lngChannel);

  CommandButton &cmdPeriodOrFreq;
  EngrSpin &esPeriodOrFreq;
  PictureBox &picTiming;
  ControlArray<EngrSpin> esDelay;
  ControlArray<EngrSpin> esWidth;
  ControlArray<EngrSpin> esLeadingEdge;
  ControlArray<EngrSpin> esTrailingEdge;
  ControlArray<ToolPopup> toolPopupTEdge;
  ChannelOutputs m_outputs;
  TimingDiagram m_diagram;
  Boolean m_fIsFrequency;
  std::size_t m_lngUpperLane = 0;  ///< number of primitives drawn for channel 1
  Event<const RzFlags::Change &>::Connection m_rzConnection;
};

}  // namespace tarvik
