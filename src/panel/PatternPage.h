#pragma once

#include "bitpattern/BitPattern.h"
#include "panel/Page.h"

namespace tarvik {

/// The bit streams of channel 1, channel 2 and strobe, and whether a channel returns to zero.
class PatternPage : public Page {
 public:
  PatternPage(QWidget &page, PanelServices &panel);

  void Enter() override;

  void TakeShown(Setup &setup) const override;
  void ShowSetup(const Setup &setup) override;
  /// Sends the flags only; the page keeps its state until its bits are sent too.
  void UploadRz(Boolean &fOk);
  /// Sends the streams. The first failure ends it; what was sent stays on the instrument.
  void UploadPattern(Boolean &fOk);
  /// Reads streams and flags. What fails is left out, and the page is current all the same.
  void DownloadPattern();

  BitPattern &Editor() const { return BitPattern1; }

 private:
  void BitPattern1_RzChange();

  BitPattern &BitPattern1;
  ByteArray m_arrUpload{1};
  ByteArray m_arrDownload{1};
  Event<const RzFlags::Change &>::Connection m_rzConnection;
};

}  // namespace tarvik
