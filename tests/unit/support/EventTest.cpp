#include "support/Event.h"

#include <gmock/gmock.h>

#include <string>

namespace tarvik::test {
namespace {

using testing::ElementsAre;

using Notes = std::vector<std::string>;

TEST(EventTest, HandlersRunInTheOrderOfTheirConnectionWithTheArguments) {
  Event<int> event;
  Notes notes;
  EXPECT_FALSE(event.HasHandlers());
  event.Connect([&](int n) { notes.push_back("a" + std::to_string(n)); });
  event.Connect([&](int n) { notes.push_back("b" + std::to_string(n)); });
  EXPECT_TRUE(event.HasHandlers());
  event.Raise(7);
  EXPECT_THAT(notes, ElementsAre("a7", "b7"));
}

TEST(EventTest, AHandlerThatIsDisconnectedWhileTheEventIsRaisedIsNotCalledAnyMore) {
  Event<> event;
  Notes notes;
  Event<>::Connection second;
  event.Connect([&] {
    notes.push_back("first");
    second.Disconnect();
  });
  second = event.ConnectScoped([&] { notes.push_back("second"); });
  event.Raise();
  EXPECT_THAT(notes, ElementsAre("first"));
  EXPECT_FALSE(second.IsConnected());
}

TEST(EventTest, AHandlerThatIsConnectedWhileTheEventIsRaisedIsCalledFromTheNextRaiseOn) {
  Event<> event;
  Notes notes;
  event.Connect([&] {
    notes.push_back("first");
    if (notes.size() == 1) event.Connect([&] { notes.push_back("new"); });
  });
  event.Raise();
  EXPECT_THAT(notes, ElementsAre("first"));
  event.Raise();
  EXPECT_THAT(notes, ElementsAre("first", "first", "new"));
}

TEST(EventTest, AHandlerMayEndTheLifeOfTheEventItself) {
  auto event = std::make_unique<Event<>>();
  Notes notes;
  event->Connect([&] {
    event.reset();
    notes.push_back("gone");
  });
  event->Connect([&] { notes.push_back("last"); });
  event->Raise();
  EXPECT_THAT(notes, ElementsAre("gone", "last"));
}

TEST(EventTest, AConnectionThatGoesOutOfScopeEndsTheDelivery) {
  Event<> event;
  Notes notes;
  {
    const auto connection = event.ConnectScoped([&] { notes.push_back("in scope"); });
    event.Raise();
  }
  event.Raise();
  EXPECT_THAT(notes, ElementsAre("in scope"));
}

}  // namespace
}  // namespace tarvik::test
