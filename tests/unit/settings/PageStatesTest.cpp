#include "settings/PageStates.h"

#include <gmock/gmock.h>

#include "support/RunTimeError.h"

namespace tarvik::test {
namespace {

using testing::Each;
using testing::ElementsAre;

constexpr auto Current = ePageIsCurrent, Unread = ePageNeedsDownloading, Dirty = ePageIsDirty;
constexpr auto Unknown = static_cast<TabStates>(7);

template <class Step>
Long ErrorOf(Step step) {
  try {
    step();
  } catch (const RunTimeError &error) {
    return error.Number();
  }
  return 0;
}

// ---- Marks ----

TEST(PageStates, AreCurrentAtFirst) { EXPECT_THAT(PageStates{}, Each(Current)); }

TEST(PageStates, ARequestMeansOnePageTheVisibleOneOrAll) {
  PageStates states{};
  EXPECT_TRUE(SetPageState(states, Dirty, ePageLevels, ePageMode, False));
  EXPECT_TRUE(SetPageState(states, Unread, eCurrPage, ePagePattern, False));
  EXPECT_THAT(states, ElementsAre(Current, Current, Current, Dirty, Unread, Current, Current, Current, Current));
  EXPECT_TRUE(SetPageState(states, Unread, eAllPages, ePageMode, False));
  EXPECT_THAT(states, Each(Unread));
}

TEST(PageStates, TheCommandChangesNoState) {
  PageStates states{};
  states[ePageLevels] = Unread;
  EXPECT_TRUE(SetPageState(states, ePageSetStatus, eAllPages, ePageMode, False));
  EXPECT_TRUE(SetPageState(states, ePageSetStatus, eCurrPage, ePageLevels, True));
  EXPECT_THAT(states, ElementsAre(Current, Current, Current, Unread, Current, Current, Current, Current, Current));
}

TEST(PageStates, ADirtyMarkIsDroppedWhileTheProgramFillsTheControls) {
  PageStates states{};
  states[ePageMode] = Unread;
  for (const TabNumEnum ePage : {ePageMode, eCurrPage, eAllPages, eNumPages})
    EXPECT_FALSE(SetPageState(states, Dirty, ePage, ePageMode, True));
  EXPECT_THAT(states, ElementsAre(Current, Unread, Current, Current, Current, Current, Current, Current, Current));
}

TEST(PageStates, TheOtherStatesTakeEffectWhileTheProgramFillsTheControls) {
  PageStates states{};
  states.fill(Dirty);
  EXPECT_TRUE(SetPageState(states, Current, eAllPages, ePageMode, True));
  EXPECT_TRUE(SetPageState(states, Unread, ePageLimits, ePageMode, True));
  EXPECT_THAT(states, ElementsAre(Current, Current, Current, Current, Current, Unread, Current, Current, Current));
}

TEST(PageStates, ANumberThatIsNoPageIsOutOfBounds) {
  PageStates states{};
  for (const Long lngPage : {-1, 9, 12})
    EXPECT_EQ(ErrorOf([&] { SetPageState(states, Current, static_cast<TabNumEnum>(lngPage), ePageMode, False); }), 9)
        << lngPage;
  EXPECT_EQ(ErrorOf([&] { NeedsUpload(states, 9, ePageMode, True, True); }), 9);
  EXPECT_EQ(ErrorOf([&] { NeedsUpload(states, 9, ePageMode, True, False); }), 9);
}

// ---- Highlights ----

struct HighlightRow {
  const char *strName;
  TabStates eVisible;
  bool fOtherDirty, fAll;
  std::optional<PageHighlights> shown;
};

void PrintTo(const HighlightRow &row, std::ostream *out) { *out << row.strName; }

constexpr PageHighlights Nothing{False, False, False}, Download{True, False, False}, UploadDark{False, True, False},
    UploadLight{False, True, True};

class Highlights : public testing::TestWithParam<HighlightRow> {};

TEST_P(Highlights, FollowTheVisiblePageAndTheChangesElsewhere) {
  const HighlightRow &row = GetParam();
  PageStates states{};
  states[ePageLimits] = row.eVisible;
  if (row.fOtherDirty) states[ePageMode] = Dirty;
  EXPECT_EQ(HighlightsOf(states, ePageLimits, row.fAll), row.shown);
}

INSTANTIATE_TEST_SUITE_P(All, Highlights,
                         testing::Values(HighlightRow{"DirtyAlone", Dirty, false, true, UploadDark},
                                         HighlightRow{"DirtyWithOthers", Dirty, true, true, UploadDark},
                                         HighlightRow{"DirtyWithOthersPageOnly", Dirty, true, false, UploadDark},
                                         HighlightRow{"CurrentAlone", Current, false, true, Nothing},
                                         HighlightRow{"CurrentWithOthers", Current, true, true, UploadLight},
                                         HighlightRow{"CurrentWithOthersPageOnly", Current, true, false, Nothing},
                                         HighlightRow{"UnreadAlone", Unread, false, true, Download},
                                         HighlightRow{"UnreadWithOthers", Unread, true, true, UploadLight},
                                         HighlightRow{"UnreadWithOthersPageOnly", Unread, true, false, Download},
                                         HighlightRow{"UnknownAlone", Unknown, false, true, std::nullopt},
                                         HighlightRow{"UnknownWithOthers", Unknown, true, true, UploadLight},
                                         HighlightRow{"UnknownWithOthersPageOnly", Unknown, true, false, std::nullopt}),
                         [](const auto &test) { return test.param.strName; });

TEST(PageStates, ThreeNumbersAreStates) {
  EXPECT_TRUE(IsPageState(Current));
  EXPECT_TRUE(IsPageState(Unread));
  EXPECT_TRUE(IsPageState(Dirty));
  EXPECT_FALSE(IsPageState(ePageSetStatus));
  EXPECT_FALSE(IsPageState(Unknown));
}

// ---- Steps of an upload ----

TEST(PageStates, AnUploadTakesDirtyPagesThatAreVisibleOrAllAsLongAsNothingFailed) {
  PageStates states{};
  states[ePageMode] = Dirty;
  states[ePageLevels] = Unread;
  EXPECT_TRUE(NeedsUpload(states, ePageMode, ePageMode, False, True));
  EXPECT_TRUE(NeedsUpload(states, ePageMode, ePageLimits, True, True));
  EXPECT_FALSE(NeedsUpload(states, ePageMode, ePageLimits, False, True));
  EXPECT_FALSE(NeedsUpload(states, ePageMode, ePageMode, True, False));
  EXPECT_FALSE(NeedsUpload(states, ePageLevels, ePageLevels, True, True));
  EXPECT_FALSE(NeedsUpload(states, ePageTiming, ePageTiming, True, True));
}

}  // namespace
}  // namespace tarvik::test
