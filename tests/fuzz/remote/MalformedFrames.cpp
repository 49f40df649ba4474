#include "MalformedFrames.h"

#include "SessionFrames.h"

namespace tarvik::remote {

namespace {

constexpr std::size_t FrameLimit = 1024u * 1024u;

/// Frames that a client does send. Object 2 is the list, 3 the open instrument.
std::string Hello() { return Frame().Hello().Bytes(); }
std::string Find() {
  return Frame()
      .Fetch(1, "IDriverRoot", "GetInstruments", 2)
      .Call(2, "IInstrumentList", "GetItem", 3)
      .Key("VP-210")
      .Bytes();
}
std::string Open() {
  return Frame()
      .Call(3, "IInstrument", "Open")
      .Argument<Integer>(0)
      .Argument<Integer>(0)
      .Argument<Integer>(-1)
      .Argument<Integer>(0)
      .Bytes();
}
std::string Begin() { return Frame().Call(3, "IInstrument", "Transaction").Argument<Long>(0).Bytes(); }
std::string SetWidth() {
  return Frame()
      .Fetch(3, "IInstrument", "GetChannels", 4)
      .Fetch(4, "IChannelList", "GetItem", 5)
      .Argument<Long>(1)
      .Fetch(5, "IChannel", "GetTiming", 6)
      .Call(6, "IChannelTiming", "SetWidth")
      .Argument<Double>(2e-7)
      .Bytes();
}
std::string ReleaseAll() { return Frame().Release(3).Release(2).Release(1).Bytes(); }

}  // namespace

std::string MalformedFrames::RandomBytes() {
  std::string strBytes(Below(64), '\0');
  for (char &ch : strBytes) ch = static_cast<char>(Below(256));
  return strBytes;
}

std::string MalformedFrames::Mutated(std::string strFrame) {
  for (std::size_t change = 1 + Below(6); change > 0 && !strFrame.empty(); --change) {
    const std::size_t at = Below(strFrame.size());
    switch (Below(4)) {
      case 0: strFrame[at] = static_cast<char>(Below(256)); break;
      case 1: strFrame.resize(at); break;
      case 2: strFrame.insert(at, 1 + Below(9), static_cast<char>(Below(256))); break;
      default: strFrame[at] = static_cast<char>(strFrame[at] ^ (1 << Below(8)));
    }
  }
  return strFrame;
}

std::string MalformedFrames::Misplaced(std::vector<std::string> &arrBefore) {
  switch (Below(6)) {
    case 0: arrBefore.clear(); return Find();  // before the greeting
    case 1: arrBefore = {Hello()}; return Hello();
    case 2: arrBefore = {Hello()}; return Open();                                  // on an object that is not there
    case 3: arrBefore = {Hello(), Find()}; return Find();                          // numbers given twice
    case 4: arrBefore = {Hello(), Find(), Open()}; return Begin() + ReleaseAll();  // behind a call
    default: arrBefore = {Hello(), Find()}; return ReleaseAll() + ReleaseAll();
  }
}

std::vector<std::string> MalformedFrames::Next() {
  std::vector<std::string> arrFrames;
  std::string strLast;
  constexpr std::size_t OneIn = 1000;
  if (Below(OneIn) == 0) {
    // Just too large for the session, or for the transport already.
    strLast = std::string(FrameLimit + 1 + 4096 * Below(2), '\4');
    arrFrames = {Hello()};
  } else {
    switch (Below(8)) {
      case 0: strLast = RandomBytes(); break;
      case 1: strLast = Mutated(Hello()); break;
      case 2: arrFrames = {Hello()}, strLast = RandomBytes(); break;
      case 3: arrFrames = {Hello()}, strLast = Mutated(Find()); break;
      case 4: arrFrames = {Hello(), Find()}, strLast = Mutated(Open()); break;
      case 5: arrFrames = {Hello(), Find(), Open(), Begin()}, strLast = Mutated(SetWidth()); break;
      default: strLast = Misplaced(arrFrames);
    }
  }
  arrFrames.push_back(std::move(strLast));
  return arrFrames;
}

}  // namespace tarvik::remote
