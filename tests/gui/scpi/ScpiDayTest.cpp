#include "ScpiPlace.h"

namespace tarvik::test {
namespace {

std::unique_ptr<RackPlace> OverScpi() { return std::make_unique<ScpiPlace>(); }

INSTANTIATE_TEST_SUITE_P(OverScpi, DaySession, testing::Combine(testing::ValuesIn(Models), testing::Values(&OverScpi)),
                         DaySession::NameOf);

}  // namespace
}  // namespace tarvik::test
