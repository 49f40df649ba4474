#pragma once

#include <array>
#include <optional>

#include "support/Types.h"
#include "support/modGlobals.h"

namespace tarvik {

/// The state of each page, by its number.
using PageStates = std::array<TabStates, eNumPages>;

/// A page number below 0 or from eNumPages on is error 9.
TabStates &StateOf(PageStates &arrStates, Long lngPage);
TabStates StateOf(const PageStates &arrStates, Long lngPage);

/// A request to mark pages, with lngVisible the number of the page in front. eCurrPage and eAllPages stand for the
/// visible page and for all of them; ePageSetStatus changes nothing; another number that is no page is error 9.
/// False where the request is dropped: while the program fills the controls, no page gets dirty.
Boolean SetPageState(PageStates &arrStates, TabStates eState, TabNumEnum ePage, Long lngVisible, Boolean fProgramFills);

/// One of the three states, and not the command among them.
Boolean IsPageState(TabStates eState);

/// What the pictures under the two transfer buttons show.
struct PageHighlights {
  Boolean fDownload;
  Boolean fUpload;
  Boolean fOtherPage;  ///< what waits for an upload is on other pages only; lights the upload in a lighter shade
  bool operator==(const PageHighlights &) const = default;
};

/// Changes of the visible page come first. With fUploadsAll, changes of other pages come before a visible page that has
/// not been read yet. Empty where the highlights stay as they are: the visible page's state is unknown.
std::optional<PageHighlights> HighlightsOf(const PageStates &arrStates, Long lngVisible, Boolean fUploadsAll);

/// Whether this step of an upload is to be taken: the page is dirty, it is visible or all pages are uploaded (fAll),
/// and no earlier step failed (fContinue). Error 9 for a number that is no page.
Boolean NeedsUpload(const PageStates &arrStates, Long lngPage, Long lngVisible, Boolean fAll, Boolean fContinue);

}  // namespace tarvik
