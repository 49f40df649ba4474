#include <benchmark/benchmark.h>

#include "NothingDriver.h"
#include "Ratios.h"
#include "automation/AutomationString.h"
#include "automation/ErrorInfo.h"
#include "instrument/KolvenDriver.h"
#include "instrument/clsInstrInterface.h"
#include "platform/ConsoleHost.h"
#include "support/Host.h"

namespace {

using namespace tarvik;
using namespace tarvik::kolven;
using automation::Check;
using automation::Ref;

/// The open instrument of the driver that does nothing.
Ref<IInstrument> NothingInstrument(bench::NothingDriver &driver) {
  const auto root = automation::Narrow<IDriverRoot>(driver.Root());
  Ref<IInstrumentList> list;
  Check(root->GetInstruments(list.Out()));
  const automation::String strName("One");
  AutomationVariant key{};
  key.vt = automation::VtString;
  key.bstrVal = strName.Get();
  Ref<IDispatch> object;
  Check(list->GetItem(key, object.Out()));
  return automation::Narrow<IInstrument>(object);
}

void BareOutput(IInstrument &instrument, Long lngChannel, bool fComplement, Boolean fOn) {
  Ref<IChannelList> channels;
  Ref<IChannel> channel;
  Ref<IDispatch> generic;
  Check(instrument.GetChannels(channels.Out()));
  Check(channels->GetItem(lngChannel, channel.Out()));
  Check(channel->GetLevels(generic.Out()));
  const auto levels = automation::Narrow<IChannelLevels>(generic);
  Check(fComplement ? levels->SetComplementOutput(fOn.Word()) : levels->SetOutput(fOn.Word()));
}

void BareChannel(IInstrument &instrument, const udtTimingInfo &info, Long i) {
  Ref<IChannelList> channels;
  Ref<IChannel> channel;
  Ref<IChannelTiming> timing;
  Check(instrument.GetChannels(channels.Out()));
  Check(channels->GetItem(i, channel.Out()));
  Check(channel->GetTiming(timing.Out()));
  Long lngSelector = 0;
  Ref<IEdges> edges;
  Check(timing->GetEdges(edges.Out()));
  Check(edges->SetLeading(&lngSelector, info.dblLeading[i]));
  Check(timing->GetEdges(edges.Out()));
  Check(edges->SetTrailing(&lngSelector, info.dblTrailing[i]));
  Check(timing->SetWidth(info.dblWidth[i]));
  Check(timing->SetFrequency(info.dblFrequency));
  Ref<ISinglePulse> pulse;
  Check(timing->GetSinglePulse(pulse.Out()));
  Check(pulse->SetDelay(&lngSelector, info.dblDelay[i]));
  Check(timing->GetEdges(edges.Out()));
  Check(edges->SetCoupling(info.fAutoCoupleLeTe[i] ? 1 : 0));
  BareOutput(instrument, i, false, info.fChannelOutputOn[i]);
  BareOutput(instrument, i, true, info.fChannelOutputInvOn[i]);
}

void BM_BareTiming(benchmark::State &state) {
  bench::NothingDriver driver;
  const auto instrument = NothingInstrument(driver);
  const udtTimingInfo info;
  for (auto _ : state) {
    Integer intFirst = 0;
    VariantBool fOpen = 0;
    Check(instrument->GetTransactionState(&intFirst, &fOpen));
    if (!fOpen) Check(instrument->Transaction(TransactionBegin));
    for (const Long i : {1, 2}) BareChannel(*instrument, info, i);
    Check(instrument->GetTransactionState(&intFirst, &fOpen));
    if (fOpen) Check(instrument->Transaction(TransactionCommit));
  }
}
BENCHMARK(BM_BareTiming);

void BM_SetTiming(benchmark::State &state) {
  ConsoleHost host("/dev/null");
  SetHost(&host);
  bench::NothingDriver driver;
  {
    const auto instr = InstrInterface();
    if (!instr->Connect() || !instr->OpenInstrument("One")) state.SkipWithError("no session");
    const udtTimingInfo info;
    for (auto _ : state) instr->SetTiming(info);
  }
  gobjInstr().reset();
  SetHost(nullptr);
}
BENCHMARK(BM_SetTiming);

}  // namespace

int main(int argc, char **argv) {
  return tarvik::bench::RunWithBounds(argc, argv, {{"BM_SetTiming", "BM_BareTiming", 1.3, 0}});
}
