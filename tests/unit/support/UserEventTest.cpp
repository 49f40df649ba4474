#include "support/UserEvent.h"

#include <gmock/gmock.h>

#include "RecordingHost.h"
#include "support/ActionEnd.h"
#include "support/Boxes.h"
#include "support/ConnectionLoss.h"
#include "support/EventBoundary.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Tells what the host is asked for around driver calls, too.
class WatchedHost : public RecordingHost {
 public:
  void Repaint() override { arrAsked.emplace_back("paint"); }
  void DropInput() override { arrAsked.emplace_back("drop input"); }
  BoxAnswer MsgBox(const std::string &strText, BoxIcon icon, BoxButtons buttons, const std::string &strTitle) override {
    arrAsked.emplace_back("box " + strText);
    // It may be replaced while it runs.
    if (const auto onBox = OnBox) onBox();
    return RecordingHost::MsgBox(strText, icon, buttons, strTitle);
  }
  std::vector<std::string> Take() { return std::exchange(arrAsked, {}); }

  std::vector<std::string> arrAsked;
  std::function<void()> OnBox;
};

struct UserEventTest : testing::Test {
  /// An event of this control.
  template <class Procedure>
  bool Run(const void *owner, Procedure &&procedure) {
    return RunUserEvent("cmdUpload", "Click", std::forward<Procedure>(procedure), owner);
  }
  static std::function<bool(const void *)> Is(const void *owner) {
    return [owner](const void *other) { return other == owner; };
  }

  WatchedHost host;
  const int intPanel = 0, intOther = 0;
};

TEST_F(UserEventTest, WhatTheUserDidWhileTheDriverWorkedIsDroppedOnceWhenTheEventIsDone) {
  Run(nullptr, [] {
    UserEvent::BeforeDriverCall();
    UserEvent::BeforeDriverCall();
  });
  EXPECT_THAT(host.Take(), ElementsAre("paint", "paint", "drop input"));
  Run(nullptr, [] {});
  EXPECT_THAT(host.Take(), IsEmpty()) << "no driver was called";
}

TEST_F(UserEventTest, AnEventWithinAnotherLeavesTheDroppingToThatOne) {
  Run(nullptr, [&] {
    Run(nullptr, [] { UserEvent::BeforeDriverCall(); });
    EXPECT_THAT(host.Take(), ElementsAre("paint"));
  });
  EXPECT_THAT(host.Take(), ElementsAre("drop input"));
}

TEST_F(UserEventTest, ACallOfTheHostsOwnDropsNothingOfAnEventThatComesLater) {
  UserEvent::BeforeDriverCall();
  host.Take();
  Run(nullptr, [] {});
  EXPECT_THAT(host.Take(), IsEmpty());
}

TEST_F(UserEventTest, NothingThatWasTypedWhileTheDriverWorkedAnswersABox) {
  Run(nullptr, [&] {
    UserEvent::BeforeDriverCall();
    ShowBox("first", BoxIcon::Stop);
    ShowBox("second", BoxIcon::Stop);
  });
  EXPECT_THAT(host.Take(), ElementsAre("paint", "drop input", "box first", "box second"));
}

TEST_F(UserEventTest, AnEventWhoseOwnerEndsBehindItsBoxDoesNotGoOn) {
  bool fWentOn = false;
  host.OnBox = [&] { EXPECT_TRUE(UserEvent::EndAllOf(Is(&intPanel))); };
  EXPECT_FALSE(Run(&intPanel, [&] {
    ShowBox("question", BoxIcon::Question);
    fWentOn = true;
  }));
  EXPECT_FALSE(fWentOn);
  EXPECT_THAT(host.TakeBoxes(), ElementsAre("box question: question")) << "no failure is told";
}

TEST_F(UserEventTest, TheEndOfOneOwnerLetsTheEventsOfAnotherGoOn) {
  bool fWentOn = false;
  host.OnBox = [&] { EXPECT_FALSE(UserEvent::EndAllOf(Is(&intOther))); };
  EXPECT_TRUE(Run(&intPanel, [&] {
    ShowBox("question", BoxIcon::Question);
    fWentOn = true;
  }));
  EXPECT_TRUE(fWentOn);
  EXPECT_FALSE(UserEvent::EndAllOf(Is(nullptr))) << "without an event there is none to end";
}

TEST_F(UserEventTest, TheEventsBelowAnEndedOneEndWithTheirBoxes) {
  std::vector<std::string> arrWentOn;
  host.OnBox = [&] {
    host.OnBox = [&] { UserEvent::EndAllOf(Is(&intPanel)); };
    // Served while the box of the first event stands.
    EXPECT_TRUE(Run(&intOther, [&] {
      ShowBox("inner", BoxIcon::Stop);
      arrWentOn.emplace_back("inner");
    }));
  };
  EXPECT_FALSE(Run(&intPanel, [&] {
    ShowBox("outer", BoxIcon::Stop);
    arrWentOn.emplace_back("outer");
  }));
  EXPECT_THAT(arrWentOn, ElementsAre("inner"));
}

TEST_F(UserEventTest, WhatIsLeftForTheEndRunsWhenTheBottommostEventIsDone) {
  std::vector<std::string> arrRun;
  const auto note = [&](const char *strText) { return [&arrRun, strText] { arrRun.emplace_back(strText); }; };
  UserEvent::AfterAll(note("at once"));
  EXPECT_THAT(arrRun, ElementsAre("at once"));
  Run(nullptr, [&] {
    Run(nullptr, [&] { UserEvent::AfterAll(note("first")); });
    UserEvent::AfterAll(note("second"));
    EXPECT_EQ(arrRun.size(), 1u);
  });
  EXPECT_THAT(arrRun, ElementsAre("at once", "first", "second"));
  Run(nullptr, [] {});
  EXPECT_EQ(arrRun.size(), 3u) << "once each";
}

TEST_F(UserEventTest, TheEndOfAnActionIsToldOnceWithItsOwner) {
  std::vector<const void *> arrEnded;
  const auto connection = ActionEnded().ConnectScoped([&](const void *owner) { arrEnded.push_back(owner); });
  Run(&intPanel, [&] {
    Run(&intOther, [] {});
    EXPECT_THAT(arrEnded, IsEmpty());
  });
  EXPECT_THAT(arrEnded, ElementsAre(&intPanel));
}

TEST_F(UserEventTest, AllThatFollowsFromAnActionSharesItsBoxes) {
  EXPECT_EQ(UserEvent::BoxesOfAction(), nullptr);
  Run(nullptr, [&] {
    UserEvent::ActionBoxes *pBoxes = UserEvent::BoxesOfAction();
    ASSERT_NE(pBoxes, nullptr);
    EXPECT_FALSE(pBoxes->fListProposed || pBoxes->fAnyShown || pBoxes->fRestInListOnly);
    Run(nullptr, [&] { EXPECT_EQ(UserEvent::BoxesOfAction(), pBoxes); });
    host.OnBox = [&] {
      EXPECT_EQ(UserEvent::BoxesOfAction(), pBoxes);
      // What the user does while the box stands is an action of its own.
      Run(nullptr, [&] { EXPECT_NE(UserEvent::BoxesOfAction(), pBoxes); });
      EXPECT_EQ(UserEvent::BoxesOfAction(), pBoxes);
    };
    ShowBox("text", BoxIcon::Stop);
  });
  EXPECT_EQ(UserEvent::BoxesOfAction(), nullptr);
}

TEST(ConnectionLoss, IsToldForTheStatusOfADeadSessionAndNoOther) {
  std::vector<std::string> arrLost, arrNoted;
  const auto lost = ConnectionLost().ConnectScoped([&](const std::string &strText) { arrLost.push_back(strText); });
  const auto noted = FailureNoted().ConnectScoped([&](std::int32_t lngNumber, const std::string &strText) {
    arrNoted.push_back(std::to_string(lngNumber) + strText);
  });
  for (const std::uint32_t lngStatus : {0x800706BAu, 0x800706BEu, 0x80010007u, 0x80010012u, 0x80010108u}) {
    EXPECT_TRUE(TellsLostConnection(static_cast<std::int32_t>(lngStatus))) << lngStatus;
    NoteFailure(static_cast<std::int32_t>(lngStatus), " gone");
  }
  EXPECT_EQ(arrLost, std::vector<std::string>(5, " gone"));
  NoteFailure(13, " mismatch");
  EXPECT_EQ(arrLost.size(), 5u);
  EXPECT_EQ(arrNoted.size(), 6u);
  EXPECT_EQ(arrNoted.back(), "13 mismatch");
  for (const std::uint32_t lngStatus : {0u, 0x80004005u, 0x800706B9u, 0x800706BBu})
    EXPECT_FALSE(TellsLostConnection(static_cast<std::int32_t>(lngStatus))) << lngStatus;
}

}  // namespace
}  // namespace tarvik::test
