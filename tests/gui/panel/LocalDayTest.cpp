#include <gmock/gmock.h>

#include "DaySession.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

INSTANTIATE_TEST_SUITE_P(EveryInstrument, DaySession,
                         testing::Combine(testing::ValuesIn(Models), testing::Values(&BesideThePanel)),
                         DaySession::NameOf);

TEST(DaySessionRack, TheReservedInstrumentIsTheOnlyOneThatDoesNotOpen) {
  SimulatorSession session({{"WorkWithBoxes", "1"}});
  for (const Model &model : Models) {
    session.Open(model.strName);
    EXPECT_THAT(session->Ticked(), ElementsAre(model.strName));
  }
  EXPECT_THAT(session.host.TakeBoxes(), IsEmpty());
  session.Open("VP-210 reserved");
  EXPECT_THAT(session->Ticked(), IsEmpty());
  EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box stop: Unable to start a session with this instrument"));
}

}  // namespace
}  // namespace tarvik::test
