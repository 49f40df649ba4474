#include "controls/ControlStates.h"

#include "controls/CboEnhancedPrivate.h"
#include "platform/ScopedFlag.h"

namespace tarvik {

namespace {

void VisitItems(CboEnhanced::Private &m, StateArchive &archive) {
  std::size_t lngCount = m.arrItems.size();
  archive.Shown(lngCount);
  std::vector<CboEnhanced::Private::Item> arrItems(lngCount);
  std::vector<std::string> arrTexts(lngCount);
  bool fSame = lngCount == m.arrItems.size();
  for (std::size_t i = 0; i < lngCount; ++i) {
    if (!archive.Loads()) {
      arrItems[i] = m.arrItems[i];
      arrTexts[i] = m.cbo->itemText(static_cast<int>(i)).toStdString();
    }
    archive.Shown(arrTexts[i]);
    archive.Shown(arrItems[i].lngItemData);
    archive.Shown(arrItems[i].lngGroupData);
    archive.Shown(arrItems[i].fGroupDefault);
    fSame = fSame && m.cbo->itemText(static_cast<int>(i)).toStdString() == arrTexts[i];
  }
  if (!archive.Loads()) return;
  m.arrItems = arrItems;
  if (fSame) return;
  m.cbo->clear();
  for (const std::string &strText : arrTexts) m.cbo->addItem(QString::fromStdString(strText));
}

}  // namespace

void VisitState(CboEnhanced &list, StateArchive &archive) {
  auto &m = CboEnhanced::Private::Of(list);
  Boolean fEnabled = list.Enabled();
  Long lngIndex = list.ListIndex(), lngData = lngIndex < 0 ? -1 : list.ItemData(lngIndex);
  archive.Setting(lngData);
  archive.Shown(lngIndex);
  archive.Shown(fEnabled);
  archive.Shown(m.strSavedIndexes);
  archive.Words(list.Text());
  // Disabling takes the choice away.
  if (archive.Loads()) list.SetEnabled(fEnabled);
  {
    const ScopedFlag byProgram(list, m.fProgramChange);
    VisitItems(m, archive);
    if (archive.Loads()) m.cbo->setCurrentIndex(static_cast<int>(lngIndex));
  }
  if (archive.Loads()) m.TellIndex();
}

void VisitState(FrameEnhanced &frame, StateArchive &archive) {
  Boolean fEnabled = frame.Enabled();
  archive.Shown(fEnabled);
  if (archive.Loads()) frame.SetEnabled(fEnabled);
}

}  // namespace tarvik
