#pragma once

#include <QWidget>
#include <array>
#include <memory>
#include <string>

#include "bitpattern/PatternOperations.h"
#include "bitpattern/PatternStore.h"
#include "platform/ControlSite.h"
#include "platform/WidgetControl.h"
#include "support/DynamicArray.h"
#include "support/Event.h"
#include "support/Export.h"

namespace tarvik {

class CommandButton;
class EngrSpin;
class FrameEnhanced;
class HScrollBar;
class OptionButton;
class ToolPopup;
class WaveformView;
class WavePicture;

/// Sizes of the editor's form that its view is computed from, in twips.
struct BitPatternForm {
  Single sngPictureWidth = 5175;
  Single sngPictureHeight = 2175;
  Single sngScrollHeight = 255;
};

/// Editor of one digital pattern: up to 16384 addresses, each with a bit for channel 1, for channel 2 and for the
/// strobe, shown as waveforms or digits. The pattern scrolls under the cell of the actual address; keys write bits
/// there, menus change whole stretches. Every redraw marks the panel's page in front dirty.
///
/// Channel codes: 1 channel 1, 2 channel 2, 8 strobe. A refused call shows a stop box, answers false and leaves the
/// pattern as it was; a run-time failure is reported and logged and answers false.
class TARVIK_EXPORT BitPattern : public QWidget, public Control {
  Q_OBJECT

 public:
  explicit BitPattern(QWidget *parent = nullptr, ControlSite &site = RunTimeSite(), const BitPatternForm &form = {});
  ~BitPattern() override;

  /// Whether channel 1 and channel 2 return to zero, into the entries 1 and 2. Error 9 for an array without them.
  void GetRz(BooleanArray &fRz) const;
  /// Takes both flags. With fSetGroup the option buttons follow; one that really changes raises RzChange during
  /// this call, and the host may write fRz then.
  void SetRz(const BooleanArray &fRz, Boolean fSetGroup);
  /// Shows or leaves out the rows of channel 2 from the next redraw on.
  void EnableChannel2(Boolean fEnable);

  /// Bytes that a stream has at the present length.
  Long GetPatternArraySize() const;
  /// Addresses in use.
  Long GetPatternLength() const;
  /// Copies the stream 1, 2 or 8 to the start of arr; lngArraySize tells the bytes needed also when arr has fewer.
  Boolean GetPattern(Long eChannel, ByteArray &arr, Long &lngArraySize) const;
  /// Begins a delivery, in which each stream may come once, in arrays of the same bounds.
  void SetPatternInit();
  /// Takes one stream and the pattern's length in bits, which is held to 2 to 16384. arr has the lower bound 1 and
  /// 1 to 2048 bytes.
  Boolean SetPattern(Long eChannel, const ByteArray &arr, Long lngNumBits);

  Boolean Enabled() const override;
  void SetEnabled(Boolean fEnable) override;
  Boolean Visible() const override;
  void SetVisible(Boolean fShow) override { setVisible(fShow); }
  /// The keyboard always works on the picture.
  void SetFocus() override;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

  /// The user changed an option of return to zero, or a program changed it through SetRz.
  Event<> RzChange;

 protected:
  static Long ToolIndexToChannel(Long lngIndex);

  void RedrawPattern();
  /// Makes address field, length field and scroll bar agree.
  void SetWaveformRange();

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

  PatternStore &Store() { return m_store; }
  PatternOperations &Operations() { return m_operations; }
  WaveformView &View() { return *m_view; }
  Boolean InRange() const { return fInRange; }

  void changeEvent(QEvent *event) override;
  /// Hands the focus on to the picture. As its proxy the picture would draw the tab key past what stands before it.
  void focusInEvent(QFocusEvent *event) override;

 private:
  void CreateControls();
  void CreateToolPopups();
  void CreatePicture();
  void CreateGroup(Integer intGroup, const char *strCaption);
  void ConnectControls();
  void PlaceControls();
  void UpdateRange();
  Boolean DeliverPattern(Long eChannel, const ByteArray &arr, Long lngNumBits);
  Long ActualAddress() const;
  /// "Channel 1, address 5 of 128, bit 1", for those who do not see the picture.
  std::string PlaceInWords() const;
  void MoveTo(Double dblAddress);
  void HandKeysToPicture();
  void SelectAndRedraw(Long lngCode);
  void StepSelection(Long lngCode);
  void KeyDownOnRow(Integer intKeyCode);

  ControlSite &m_site;
  const BitPatternForm m_form;
  PatternStore m_store;
  PatternOperations m_operations{m_store};
  std::unique_ptr<WaveformView> m_view;

  WavePicture *picWave = nullptr;
  HScrollBar *HScroll1 = nullptr;
  std::array<ToolPopup *, 4> toolPopup{};
  CommandButton *cmdNumOrGraph = nullptr;
  EngrSpin *esAddress = nullptr;
  EngrSpin *esLast = nullptr;
  std::array<FrameEnhanced *, 2> grpChannelRzOrNrz{};
  std::array<OptionButton *, 4> optChannelRzNrz{};

  Boolean fInRange;
  bool m_fInKeyDown = false;
  bool m_fInKeyPress = false;
};

}  // namespace tarvik
