#include "DaySession.h"
#include "ServedRack.h"

namespace tarvik::test {
namespace {

class BehindAServer final : public RackPlace {
 public:
  std::string Server() const override { return m_rack.Url(); }

 private:
  ServedRack m_rack;
};

std::unique_ptr<RackPlace> MakeServer() { return std::make_unique<BehindAServer>(); }

INSTANTIATE_TEST_SUITE_P(EveryInstrumentOfAServer, DaySession,
                         testing::Combine(testing::ValuesIn(Models), testing::Values(&MakeServer)), DaySession::NameOf);

}  // namespace
}  // namespace tarvik::test
