#pragma once

#include <array>
#include <memory>
#include <string>

#include "bitpattern/BitPattern.h"
#include "bitpattern/HScrollBar.h"
#include "bitpattern/PatternOperations.h"
#include "bitpattern/PatternStore.h"
#include "bitpattern/WavePicture.h"
#include "bitpattern/WaveformView.h"
#include "platform/ControlSite.h"

namespace tarvik {

class CommandButton;
class EngrSpin;
class FrameEnhanced;
class OptionButton;
class ToolPopup;

/// Sizes of the editor's form that its view is computed from, in twips.
struct BitPatternForm {
  Single sngPictureWidth = 5175;
  Single sngPictureHeight = 2175;
  Single sngScrollHeight = 255;
};

/// Implementation of BitPattern: the pattern, its view and the handlers of the controls.
class TARVIK_HIDDEN BitPattern::Private {
 public:
  Private(BitPattern &editor, ControlSite &site);
  Private(const Private &) = delete;
  Private &operator=(const Private &) = delete;

  static Private &Of(BitPattern &editor) { return *editor.m; }

  static Long ToolIndexToChannel(Long lngIndex);

  /// Sets the sizes of picture and scroll bar and creates the view for them.
  void TakeForm(const BitPatternForm &sizes);
  void PlaceControls();
  Boolean DeliverPattern(Long eChannel, const ByteArray &arr, Long lngNumBits);
  void RedrawPattern();
  /// Synchronizes address field, length field and scroll bar.
  void SetWaveformRange();
  Long ActualAddress() const;

  void toolPopup_ButtonClick(Long lngIndex);
  void toolPopup_ButtonMenuClick(Long lngIndex, const std::string &strKey);
  void cmdNumOrGraph_Click();
  void optChannelRzNrz_Click();
  void esAddress_AfterUpdate();
  void esLast_AfterUpdate();
  void HScroll1_Change();
  void HScroll1_GotFocus();
  /// Sets the key code to 0 for a key of the editor.
  void picWave_KeyDown(Integer &intKeyCode);
  void picWave_KeyPress(char32_t character);
  void picWave_MouseDown(Integer intButton, Single sngX, Single sngY);

  BitPattern &editor;
  ControlSite &site;
  BitPatternForm form;
  PatternStore store;
  PatternOperations operations{store};
  std::unique_ptr<WaveformView> view;

  WavePicture *picWave = nullptr;
  HScrollBar *HScroll1 = nullptr;
  std::array<ToolPopup *, 4> toolPopup{};
  CommandButton *cmdNumOrGraph = nullptr;
  EngrSpin *esAddress = nullptr;
  EngrSpin *esLast = nullptr;
  std::array<FrameEnhanced *, 2> grpChannelRzOrNrz{};
  std::array<OptionButton *, 4> optChannelRzNrz{};

  Boolean fInRange;

 private:
  void CreateControls();
  void CreateToolPopups();
  void CreatePicture();
  void CreateGroup(Integer intGroup, const char *strCaption);
  void ConnectControls();
  void UpdateRange();
  /// "Channel 1, address 5 of 128, bit 1", for assistive technology.
  std::string PlaceInWords() const;
  void MoveTo(Double dblAddress);
  void HandKeysToPicture();
  void SelectAndRedraw(Long lngCode);
  void StepSelection(Long lngCode);
  void KeyDownOnRow(Integer intKeyCode);

  bool m_fInKeyDown = false;
  bool m_fInKeyPress = false;
};

}  // namespace tarvik
