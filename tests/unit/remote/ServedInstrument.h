#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "LoopbackServer.h"
#include "StandInDriver.h"
#include "instrument/DriverCall.h"

namespace tarvik::remote {

/// An open instrument with two channels behind a server, over a driver that writes down each call.
class ServedInstrument : public testing::Test {
 protected:
  ServedInstrument() {
    using namespace kolven;
    driver.Add("Alpha");
    root = automation::Narrow<IDriverRoot>(ConnectDriver(DriverProgId, server.Url()));
    const automation::String name("Alpha");
    AutomationVariant key{};
    key.vt = automation::VtString;
    key.bstrVal = name.Get();
    instrument = automation::Narrow<IInstrument>(
        Fetch(Fetch(root, &IDriverRoot::GetInstruments), &IInstrumentList::GetItem, key));
    automation::VariantBool fOpened = 0;
    Call(instrument, &IInstrument::Open, False, False, False, &fOpened);
  }

  Ref<kolven::IChannelTiming> Timing(Long lngChannel) const {
    using namespace kolven;
    return Fetch(Fetch(Fetch(instrument, &IInstrument::GetChannels), &IChannelList::GetItem, lngChannel),
                 &IChannel::GetTiming);
  }

  /// What a piece of work brought, and what it cost on the wire and at the driver.
  struct Cost {
    std::string strRead;
    std::uint64_t lngTrips = 0;
    std::vector<std::string> arrCalls;
  };
  Cost Of(const std::function<std::string()> &work) {
    SynchroniseConnections();
    driver.TakeTrace();
    Cost cost;
    const std::uint64_t lngBefore = RoundTripsSoFar();
    cost.strRead = work();
    cost.lngTrips = RoundTripsSoFar() - lngBefore;
    SynchroniseConnections();
    cost.arrCalls = driver.TakeTrace();
    return cost;
  }

  test::StandInDriver driver;
  LoopbackServer server{[this](const std::string &strProgId) { return driver.Create(strProgId, {}); }};
  Ref<kolven::IDriverRoot> root;
  Ref<kolven::IInstrument> instrument;
};

}  // namespace tarvik::remote
