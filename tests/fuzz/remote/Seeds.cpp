#include "Seeds.h"

#include <algorithm>
#include <utility>

#include "SessionFrames.h"

namespace tarvik::remote {

namespace {

/// Objects of every stream that begins with an open instrument.
constexpr ObjectId ListId = 2, InstrumentId = 3, FirstFreeId = 4;

/// Arguments that an operation can be called with: nothing but zeros, as many as it reads.
std::string PlainArguments(const InterfaceTable &interface, const Operation &operation) {
  if (interface.strName == "IInstrumentList" && operation.strName == "GetItem") return Frame().Key("VP-110").Bytes();
  if (interface.strName == "IChannelList" && operation.strName == "GetItem") return Frame().Argument<Long>(1).Bytes();
  const std::string strZeros(256, '\0');
  Reader in(strZeros);
  operation.skip(in);
  return strZeros.substr(0, strZeros.size() - in.Left());
}

/// Fetches from the open instrument to an object of this interface, as the last of which it answers the object.
ObjectId Reach(Frame &frame, std::string_view strInterface) {
  if (strInterface == "IDriverRoot") return RootId;
  if (strInterface == "IInstrumentList") return ListId;
  if (strInterface == "IInstrument") return InstrumentId;
  const auto contract = Contract();
  for (const InterfaceTable &interface : contract)
    for (const Operation &operation : interface.operations) {
      if (!operation.fDeferred || contract[operation.intResultKind].strName != strInterface) continue;
      const ObjectId lngOn = Reach(frame, interface.strName), lngNew = std::max(lngOn + 1, FirstFreeId);
      frame.Fetch(lngOn, interface.strName, operation.strName, lngNew).Raw(PlainArguments(interface, operation));
      return lngNew;
    }
  return InstrumentId;
}

Seed SeedOf(const InterfaceTable &interface, const Operation &operation) {
  Frame frame;
  const ObjectId lngOn = Reach(frame, interface.strName);
  const ObjectId lngNew = operation.intResultKind == KindNothing ? 0 : 100;
  frame.Call(lngOn, interface.strName, operation.strName, lngNew).Raw(PlainArguments(interface, operation));
  return {InputOf({frame.Bytes()}, true), 1};
}

/// All operations of an interface that hand out no object, in one frame.
Seed SeedOfAll(const InterfaceTable &interface) {
  Frame frame;
  const ObjectId lngOn = Reach(frame, interface.strName);
  std::size_t lngAnswers = 0;
  for (const Operation &operation : interface.operations) {
    if (operation.intResultKind != KindNothing || operation.strName.starts_with("Reserved")) continue;
    frame.Queue(lngOn, interface.strName, operation.strName).Raw(PlainArguments(interface, operation));
    lngAnswers = 1;
  }
  return {InputOf({frame.Release(lngOn).Bytes()}, true), lngAnswers};
}

std::string Transaction(Long lngCommand) {
  return Frame().Call(InstrumentId, "IInstrument", "Transaction").Argument(lngCommand).Bytes();
}

std::string SetWidths(const std::string &strExpected) {
  return Frame()
      .Fetch(InstrumentId, "IInstrument", "GetChannels", 4)
      .Queue(4, "IChannelList", "GetCount")
      .Argument<Long>(0)
      .Expect(strExpected)
      .Fetch(4, "IChannelList", "GetItem", 5)
      .Argument<Long>(1)
      .Fetch(5, "IChannel", "GetTiming", 6)
      .Queue(6, "IChannelTiming", "SetWidth")
      .Argument<Double>(2e-7)
      .Release(4)
      .Bytes();
}

std::string Pattern() {
  const ByteArray arr(1, {1, 2, 3, 4});
  automation::ArrayOwner array(arr);
  Writer out;
  PutArray(out, *array.InOut());
  return Frame()
      .Fetch(InstrumentId, "IInstrument", "GetPatternMemory", 4)
      .Call(4, "IPatternMemory", "SetPattern")
      .Argument<Long>(1)
      .Argument<Long>(2)
      .Raw(out.Bytes())
      .Argument<Long>(32)
      .Bytes();
}

void AddConversations(std::map<std::string, Seed> &seeds) {
  const std::string strTwo = Frame().Argument<Long>(2).Bytes(), strThree = Frame().Argument<Long>(3).Bytes();
  seeds["talk-greeting"] = {InputOf({Frame().Hello().Bytes(), Frame().Sync().Bytes()}, false), 2};
  seeds["talk-other-driver"] = {InputOf({Frame().Hello("Another.Driver").Bytes()}, false), 1};
  seeds["talk-transaction"] = {InputOf({Transaction(0), SetWidths(strTwo), Transaction(1)}, true), 3};
  seeds["talk-surprise"] = {InputOf({Transaction(0), SetWidths(strThree), Transaction(2)}, true), 3};
  seeds["talk-pattern"] = {InputOf({Transaction(0), Pattern(), Transaction(1)}, true), 3};
  seeds["talk-left-open"] = {InputOf({Transaction(0), Pattern()}, true), 2};
}

}  // namespace

std::string InputOf(const std::vector<std::string> &arrFrames, bool fOpen) {
  std::string strInput(1, fOpen ? '\1' : '\0');
  for (const std::string &strFrame : arrFrames) {
    if (strFrame.size() > 0xFFFF) continue;
    strInput += static_cast<char>(strFrame.size() & 0xFF);
    strInput += static_cast<char>(strFrame.size() >> 8);
    strInput += strFrame;
  }
  return strInput;
}

std::map<std::string, Seed> Seeds() {
  std::map<std::string, Seed> seeds;
  for (const InterfaceTable &interface : Contract()) {
    for (const Operation &operation : interface.operations)
      seeds[std::string(interface.strName) + "-" + std::string(operation.strName)] = SeedOf(interface, operation);
    seeds[std::string(interface.strName) + "-all"] = SeedOfAll(interface);
  }
  AddConversations(seeds);
  return seeds;
}

}  // namespace tarvik::remote
