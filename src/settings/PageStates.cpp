#include "settings/PageStates.h"

#include <algorithm>

#include "support/RunTimeError.h"

namespace tarvik {

namespace {

std::size_t Slot(Long lngPage) {
  if (lngPage < 0 || lngPage >= eNumPages) RaiseError(ErrSubscriptOutOfRange);
  return static_cast<std::size_t>(lngPage);
}

}  // namespace

TabStates &StateOf(PageStates &arrStates, Long lngPage) { return arrStates[Slot(lngPage)]; }

TabStates StateOf(const PageStates &arrStates, Long lngPage) { return arrStates[Slot(lngPage)]; }

Boolean SetPageState(PageStates &arrStates, TabStates eState, TabNumEnum ePage, Long lngVisible,
                     Boolean fProgramFills) {
  if (eState == ePageIsDirty && fProgramFills) return False;
  if (eState == ePageSetStatus) return True;
  if (ePage == eAllPages)
    arrStates.fill(eState);
  else
    StateOf(arrStates, ePage == eCurrPage ? lngVisible : ePage) = eState;
  return True;
}

Boolean IsPageState(TabStates eState) {
  return eState == ePageIsCurrent || eState == ePageNeedsDownloading || eState == ePageIsDirty;
}

std::optional<PageHighlights> HighlightsOf(const PageStates &arrStates, Long lngVisible, Boolean fUploadsAll) {
  const TabStates eVisible = StateOf(arrStates, lngVisible);
  if (eVisible == ePageIsDirty) return PageHighlights{False, True, False};
  if (fUploadsAll && std::ranges::find(arrStates, ePageIsDirty) != arrStates.end())
    return PageHighlights{False, True, True};
  if (!IsPageState(eVisible)) return std::nullopt;
  return PageHighlights{eVisible == ePageNeedsDownloading, False, False};
}

Boolean NeedsUpload(const PageStates &arrStates, Long lngPage, Long lngVisible, Boolean fAll, Boolean fContinue) {
  return StateOf(arrStates, lngPage) == ePageIsDirty && (lngPage == lngVisible || fAll) && fContinue;
}

}  // namespace tarvik
