#include "RemoteClient.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "automation/AutomationString.h"
#include "instrument/DriverCall.h"

namespace tarvik::remote {

using namespace kolven;

Ref<IDriverRoot> Root(const std::string &strUrl) {
  return automation::Narrow<IDriverRoot>(ConnectDriver(DriverProgId, strUrl, Short));
}

Ref<IInstrument> Instrument(const Ref<IDriverRoot> &root, const std::string &strName) {
  const automation::String name(strName);
  AutomationVariant key{};
  key.vt = automation::VtString;
  key.bstrVal = name.Get();
  return automation::Narrow<IInstrument>(
      Fetch(Fetch(root, &IDriverRoot::GetInstruments), &IInstrumentList::GetItem, key));
}

Ref<IInstrument> Opened(const std::string &strUrl, const std::string &strName) { return Opened(Root(strUrl), strName); }

Ref<IInstrument> Opened(const Ref<IDriverRoot> &root, const std::string &strName) {
  const auto instrument = Instrument(root, strName);
  automation::VariantBool opened = 0;
  Call(instrument, &IInstrument::Open, automation::VariantBool{0}, automation::VariantBool{0},
       automation::VariantBool{-1}, &opened);
  if (!opened) throw std::runtime_error(strName + " is not opened");
  return instrument;
}

void Begin(const Ref<IInstrument> &instrument) { Call(instrument, &IInstrument::Transaction, TransactionBegin); }

bool IsInTransaction(const Ref<IInstrument> &instrument) {
  Integer first = 0;
  automation::VariantBool isOpen = 0;
  Call(instrument, &IInstrument::GetTransactionState, &first, &isOpen);
  return isOpen != 0;
}

namespace {

Ref<IChannelTiming> Timing(const Ref<IInstrument> &instrument) {
  const auto channels = Fetch(instrument, &IInstrument::GetChannels);
  return Fetch(Fetch(channels, &IChannelList::GetItem, Long{1}), &IChannel::GetTiming);
}

}  // namespace

void SetWidth(const Ref<IInstrument> &instrument, Double dblWidth) {
  Call(Timing(instrument), &IChannelTiming::SetWidth, dblWidth);
}

Double Width(const Ref<IInstrument> &instrument) { return Read(Timing(instrument), &IChannelTiming::GetWidth); }

RunTimeError ErrorOf(const std::function<void()> &statement) {
  try {
    statement();
  } catch (const RunTimeError &error) {
    return error;
  }
  ADD_FAILURE() << "no failure";
  return RunTimeError(0, "");
}

double SecondsOf(const std::function<void()> &statement) {
  const auto start = std::chrono::steady_clock::now();
  statement();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace tarvik::remote
