#include "panel/PatternPage.h"

#include <algorithm>

#include "panel/LostSession.h"
#include "support/modUtils.h"

namespace tarvik {

namespace {

struct Stream {
  Long eChannel;  ///< code in the editor
  Long eChan;     ///< row of the instrument
  bool fOfChannel2;
};
constexpr Stream Streams[] = {
    {eChan1, ePatternChan1, false}, {eChan2, ePatternChan2, true}, {eStrobe, ePatternStrobe, false}};

std::size_t RowOf(const Stream &stream) { return static_cast<std::size_t>(stream.eChan - ePatternChan1); }

/// The first bits of an array, which may have more bytes. A driver may tell a length that the array does not have.
PatternStream ToStream(const ByteArray &arr, Long lngBits) {
  const Long lngLength = std::clamp(lngBits, Long{0}, 8 * arr.Count());
  PatternStream stream{lngLength, arr.Elements()};
  stream.arrBytes.resize(static_cast<std::size_t>((lngLength + 7) / 8));
  if (const int intUsed = lngLength % 8) stream.arrBytes.back() &= static_cast<Byte>(0xFF00 >> intUsed);
  return stream;
}

FormTable Design() {
  return {form::Pattern("BitPattern1").At({757.5F, 630, 6945, 3735}).SpokenName("Bit pattern editor")};
}

}  // namespace

PatternPage::PatternPage(QWidget &page, PanelServices &panel)
    : Page(page, panel, Design()), BitPattern1(m_form.Get<BitPattern>("BitPattern1")) {
  BitPattern1.RzChange.Connect([this] { BitPattern1_RzChange(); });
  m_rzConnection = m_state.mfRz.Changed.ConnectScoped(
      [this](const RzFlags::Change &change) { BitPattern1.SetRz(m_state.mfRz.Array(), change.fSetGroup); });
}

void PatternPage::Enter() { SetFocusIfEnabled(BitPattern1); }

void PatternPage::BitPattern1_RzChange() {
  RzFlags &mfRz = m_state.mfRz;
  BitPattern1.GetRz(mfRz.Array());
  mfRz.SetRzFromFlags(mfRz[1], mfRz[2], False, True);
}

void PatternPage::TakeShown(Setup &setup) const {
  Long lngSize = BitPattern1.GetPatternArraySize();
  const Long lngLength = BitPattern1.GetPatternLength();
  ByteArray arr(1);
  arr.ReDim(1, lngSize);
  for (const Stream &stream : Streams) {
    if (stream.fOfChannel2 && !m_state.mfDualChannel) continue;
    if (BitPattern1.GetPattern(stream.eChannel, arr, lngSize)) setup.Pattern[RowOf(stream)] = ToStream(arr, lngLength);
  }
  setup.fRz = {m_state.mfRz[1], m_state.mfRz[2]};
}

void PatternPage::ShowSetup(const Setup &setup) {
  BitPattern1.SetPatternInit();
  for (const Stream &stream : Streams) {
    const PatternStream &shown = setup.Pattern[RowOf(stream)];
    if (shown.lngLength == 0 || (stream.fOfChannel2 && !m_state.mfDualChannel)) continue;
    BitPattern1.SetPattern(stream.eChannel, ByteArray(1, shown.arrBytes), shown.lngLength);
  }
  m_state.mfRz.SetRzFromFlags(setup.fRz[1], setup.fRz[2], True, True);
}

void PatternPage::UploadRz(Boolean &fOk) {
  fOk = False;
  IgnoreErrors([&] { fOk = Instr().SetRz(m_state.mfRz.Array()); });
}

void PatternPage::UploadPattern(Boolean &fOk) {
  fOk = False;
  Long lngSize = BitPattern1.GetPatternArraySize();
  const Long lngLength = BitPattern1.GetPatternLength();
  m_arrUpload.ReDim(1, lngSize);
  for (const Stream &stream : Streams) {
    if (stream.fOfChannel2 && !m_state.mfDualChannel) continue;
    if (!BitPattern1.GetPattern(stream.eChannel, m_arrUpload, lngSize)) return;
    // The driver gets the array by reference.
    const PatternStream sent = ToStream(m_arrUpload, lngLength);
    if (!Instr().SetPatternArray(stream.eChan, m_arrUpload, lngLength)) return;
    Setup setup;
    setup.Pattern[RowOf(stream)] = sent;
    m_panel.Known().TakeStreams(setup);
  }
  m_panel.SetTabState(ePageIsCurrent, ePagePattern);
  fOk = True;
}

void PatternPage::DownloadPattern() {
  Setup read;
  BitPattern1.SetPatternInit();
  for (const Stream &stream : Streams) {
    if (stream.fOfChannel2 && !m_state.mfDualChannel) continue;
    Long lngLength = 0;
    if (!Instr().GetPatternArray(stream.eChan, m_arrDownload, lngLength)) continue;
    read.Pattern[RowOf(stream)] = ToStream(m_arrDownload, lngLength);
    BitPattern1.SetPattern(stream.eChannel, m_arrDownload, lngLength);
  }
  RzFlags &mfRz = m_state.mfRz;
  if (Instr().GetRz(mfRz.Array())) {
    read.fRz = {mfRz[1], mfRz[2]};
    m_panel.Known().TakeRead(ePagePattern, read);
    mfRz.SetRzFromFlags(mfRz[1], mfRz[2], False, True);
  } else {
    m_panel.Known().TakeStreams(read);
  }
  // What a dead connection has not brought leaves the changes of the user.
  if (!m_panel.Lost().IsLost()) m_panel.SetTabState(ePageIsCurrent, ePagePattern);
}

}  // namespace tarvik
