#include "bitpattern/PatternState.h"

#include <QSignalBlocker>

#include "bitpattern/BitPatternPrivate.h"
#include "engrspin/FieldState.h"
#include "platform/CommandButton.h"
#include "platform/OptionButton.h"

namespace tarvik {

namespace {

void VisitScrollBar(HScrollBar &bar, StateArchive &archive) {
  int intMin = bar.minimum(), intMax = bar.maximum(), intValue = bar.value(), intPage = bar.pageStep();
  Boolean fEnabled = bar.Enabled();
  archive.Shown(intMin);
  archive.Shown(intMax);
  archive.Shown(intValue);
  archive.Shown(intPage);
  archive.Shown(fEnabled);
  if (!archive.Loads()) return;
  // Its Change would redraw and mark the page.
  const QSignalBlocker quiet(bar);
  bar.setRange(intMin, intMax);
  bar.setPageStep(intPage);
  bar.setValue(intValue);
  bar.SetEnabled(fEnabled);
}

}  // namespace

void VisitState(BitPattern &editor, StateArchive &archive) {
  auto &m = BitPattern::Private::Of(editor);
  Long lngLength = m.store.Length(), lngSelected = m.view->Selected();
  std::string strCaption = m.cmdNumOrGraph->Caption();
  archive.Setting(lngLength);
  archive.Setting(m.store.RowOf(eChan1)->fRz);
  archive.Setting(m.store.RowOf(eChan2)->fRz);
  for (RowInfo &row : m.store.Rows()) {
    archive.Shown(row.fNumeric);
    archive.Shown(row.lngGenerator);
    archive.Shown(row.lngGenParam);
  }
  archive.Shown(lngSelected);
  archive.Shown(strCaption);
  archive.Shown(m.fInRange);
  VisitScrollBar(*m.HScroll1, archive);
  for (OptionButton *button : m.optChannelRzNrz) {
    Boolean fOn = button->Value();
    archive.Shown(fOn);
    if (archive.Loads() && button->Value() != fOn) button->SetDesignValue(fOn);
  }
  if (!archive.Loads()) return;
  m.store.SetLength(lngLength);
  m.view->Select(lngSelected);
  m.cmdNumOrGraph->SetCaption(strCaption);
  m.view->Draw(m.ActualAddress());
  m.picWave->TellPlace();
}

void VisitStream(BitPattern &editor, Long eChannel, StateArchive &archive) {
  auto &m = BitPattern::Private::Of(editor);
  archive.Setting(m.store.StreamOf(eChannel)->Elements());
  if (archive.Loads()) m.view->Draw(m.ActualAddress());
}

}  // namespace tarvik
