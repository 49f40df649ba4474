#pragma once

#include <QWidget>
#include <memory>

#include "bitpattern/ChannelCode.h"
#include "support/Control.h"
#include "support/DynamicArray.h"
#include "support/Event.h"
#include "support/Export.h"

namespace tarvik {

class ControlSite;

/// Editor of one digital pattern: up to 16384 addresses, each with a bit for channel 1, for channel 2 and for the
/// strobe, shown as waveforms or digits. The pattern scrolls under the cell of the actual address; keys write bits
/// there, menus change whole ranges. Every redraw marks the panel's visible page dirty.
///
/// eChannel is one of eChan1, eChan2 and eStrobe. A refused call shows a stop box, answers false and leaves the
/// pattern as it was; a run-time failure is reported and logged and answers false.
class TARVIK_EXPORT BitPattern : public QWidget, public Control {
  Q_OBJECT

 public:
  class Private;

  explicit BitPattern(QWidget *parent = nullptr);
  /// In a container that takes reports of changed properties.
  BitPattern(QWidget *parent, ControlSite &site);
  ~BitPattern() override;

  /// Return-to-zero flags of channels 1 and 2, into the entries 1 and 2. Error 9 for an array without them.
  void GetRz(BooleanArray &fRz) const;
  /// Sets both flags. With fSetGroup the option buttons follow; a button that changes raises RzChange during this
  /// call, and the host may write to fRz meanwhile.
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
  void SetVisible(Boolean fShow) override;
  /// Focuses the picture, which handles the keys.
  void SetFocus() override;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

  /// A return-to-zero option changed, by the user or by SetRz.
  Event<> RzChange;

 protected:
  void changeEvent(QEvent *event) override;
  /// Passes the focus to the picture. A focus proxy would change the tab order instead.
  void focusInEvent(QFocusEvent *event) override;

 private:
  const std::unique_ptr<Private> m;
};

}  // namespace tarvik
