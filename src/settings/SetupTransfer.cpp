#include "settings/SetupTransfer.h"

#include <algorithm>
#include <bit>

#include "automation/CallsAhead.h"
#include "automation/ReadAhead.h"
#include "instrument/clsInstrInterface.h"
#include "settings/SettingText.h"
#include "support/ConnectionLoss.h"
#include "support/RunReported.h"

namespace tarvik {

namespace {

constexpr const char *ModuleName = "SetupTransfer";

constexpr Long PatternRowNumbers[Setup::PatternRows] = {ePatternChan1, ePatternChan2, ePatternStrobe};

bool HasRow(const Setup &setup, Long eRow) { return eRow != ePatternChan2 || setup.Instrument.lngNumChannels > 1; }

std::size_t BytesFor(Long lngLength) { return static_cast<std::size_t>((lngLength + 7) / 8); }

/// What the driver handed over, without what it carries behind the end.
PatternStream ToStream(const ByteArray &arr, Long lngLength) {
  if (lngLength < 0 || lngLength > PatternStream::MaxLength || arr.Elements().size() < BytesFor(lngLength))
    throw RunTimeError(ErrOverflow, "The driver tells a pattern of " + std::to_string(lngLength) + " bits in " +
                                        std::to_string(arr.Elements().size()) + " bytes");
  PatternStream stream{lngLength, arr.Elements()};
  stream.arrBytes.resize(BytesFor(lngLength));
  if (lngLength % 8 != 0)
    stream.arrBytes.back() = static_cast<Byte>(stream.arrBytes.back() & 0xFF << (8 - lngLength % 8));
  return stream;
}

bool ReadPattern(clsInstrInterface &instr, Long eRow, PatternStream &stream) {
  ByteArray arr(1);
  Long lngLength = 0;
  if (!instr.GetPatternArray(eRow, arr, lngLength)) return false;
  return RunReported(ModuleName, "ReadPattern", [&] { stream = ToStream(arr, lngLength); });
}

bool ReadPatterns(clsInstrInterface &instr, Setup &setup) {
  for (const Long eRow : PatternRowNumbers)
    if (HasRow(setup, eRow) && !ReadPattern(instr, eRow, setup.Pattern[static_cast<std::size_t>(eRow - 1)]))
      return false;
  return true;
}

bool ReadReturnToZero(clsInstrInterface &instr, Setup &setup) {
  BooleanArray fRz(1, {False, False});
  if (!instr.GetRz(fRz)) return false;
  setup.fRz = {fRz[1], fRz[2]};
  return true;
}

bool ReadLevels(clsInstrInterface &instr, Setup &setup) {
  setup.Levels.eOutputLevel = {eLevelHighLow, eLevelHighLow};
  return instr.GetLevels(setup.Levels);
}

// ---- Sending ----

udtTimingInfo TimingToSend(const Setup &setup) {
  udtTimingInfo timing = setup.Timing;
  for (const Long lngChannel : {1, 2}) {
    if ((setup.lngLacks & eLacksTrailingEdge) != 0) timing.fAutoCoupleLeTe[lngChannel] = True;
    // An instrument takes a trailing edge also where it follows, and may refuse one that was never set.
    if (timing.fAutoCoupleLeTe[lngChannel]) timing.dblTrailing[lngChannel] = timing.dblLeading[lngChannel];
  }
  return timing;
}

bool SendPatterns(clsInstrInterface &instr, const Setup &setup) {
  for (const Long eRow : PatternRowNumbers) {
    const PatternStream &stream = setup.Pattern[static_cast<std::size_t>(eRow - 1)];
    if (!HasRow(setup, eRow) || stream.lngLength == 0) continue;
    ByteArray arr(1, stream.arrBytes);
    if (!instr.SetPatternArray(eRow, arr, stream.lngLength)) return false;
  }
  return true;
}

bool SendPll(clsInstrInterface &instr, const Setup &setup) {
  Double dblFreq = setup.dblPllRefFreq;
  Long eSource = setup.ePllRefSource;
  return instr.PllRefSource(dblFreq, eSource, False);
}

bool SendFormats(clsInstrInterface &instr, const Setup &setup) {
  return instr.SetRz(BooleanArray(1, {setup.fRz[1], setup.fRz[2]}));
}

using Instr = clsInstrInterface;

struct PartTransfer {
  SetupPart ePart;
  bool (*Read)(Instr &instr, Setup &setup);
  bool (*Send)(Instr &instr, const Setup &setup);
};

/// In the order of an upload.
constexpr PartTransfer Transfers[] = {
    {ePartMode, [](Instr &instr, Setup &setup) -> bool { return instr.GetMode(setup.Mode); },
     [](Instr &instr, const Setup &setup) -> bool { return instr.SetMode(setup.Mode); }},
    {ePartTiming, [](Instr &instr, Setup &setup) -> bool { return instr.GetTiming(setup.Timing); },
     [](Instr &instr, const Setup &setup) -> bool { return instr.SetTiming(TimingToSend(setup)); }},
    {ePartLevels, &ReadLevels, [](Instr &instr, const Setup &setup) -> bool { return instr.SetLevels(setup.Levels); }},
    {ePartLimits, [](Instr &instr, Setup &setup) -> bool { return instr.GetLimits(setup.Limits); },
     [](Instr &instr, const Setup &setup) -> bool { return instr.SetLimits(setup.Limits); }},
    {ePartTrgLevels, [](Instr &instr, Setup &setup) -> bool { return instr.GetTriggerLevels(setup.TrgLevels); },
     [](Instr &instr, const Setup &setup) -> bool { return instr.SetTriggerLevels(setup.TrgLevels); }},
    {ePartPll,
     [](Instr &instr, Setup &setup) -> bool {
       return instr.PllRefSource(setup.dblPllRefFreq, setup.ePllRefSource, True);
     },
     &SendPll},
    {ePartFormats, &ReadReturnToZero, &SendFormats},
    {ePartPatterns, &ReadPatterns, &SendPatterns},
};

bool ForEachPart(Long eParts, const auto &step) {
  return std::ranges::all_of(
      Transfers, [&](const PartTransfer &transfer) { return (eParts & transfer.ePart) == 0 || step(transfer); });
}

/// Stops at the first failure: the class has then left the transaction, and what followed would reach the instrument
/// at once. A switch of an output that fails within the timing does not end SetTiming; it counts as well.
bool SendAll(clsInstrInterface &instr, const Setup &setup, Long eParts) {
  bool fFailed = false;
  const auto connection = FailureNoted().ConnectScoped([&](Long, const std::string &) { fFailed = true; });
  return ForEachPart(eParts, [&](const PartTransfer &transfer) { return transfer.Send(instr, setup) && !fFailed; });
}

/// Sends all, commits and polls the warnings. Whatever ends it before the commit drops the transaction, also a box
/// whose host ends the event.
Boolean SendInTransaction(clsInstrInterface &instr, const Setup &setup, Long eParts) {
  bool fSent = false;
  try {
    fSent = SendAll(instr, setup, eParts);
  } catch (...) {
    instr.TransactionCancel();
    throw;
  }
  if (!fSent) {
    instr.TransactionCancel();
    return False;
  }
  const auto ahead = instr.FinishAhead(True);
  // A commit that fails drops the transaction itself.
  if (!instr.TransactionFinish(True)) return False;
  instr.CheckWarnings(False);
  return True;
}

Long LacksOf(const clsInstrInterface &instr) {
  Long lngLacks = 0;
  for (auto rest = static_cast<unsigned>(AllFunctionality); rest != 0; rest &= rest - 1) {
    const auto eBit = static_cast<Long>(1U << std::countr_zero(rest));
    if (instr.IsRestricted(eBit)) lngLacks |= eBit;
  }
  return lngLacks;
}

/// Why the instrument cannot have this setting of another one; empty when it can.
std::string WhyNot(const Setting &setting, Long lngChannel, const Setup &instrument, const Setup &other) {
  if ((instrument.lngLacks & setting.eLack) != 0) return "the instrument does not have it";
  if (!setting.IsHad(instrument, lngChannel)) return "the instrument has one channel";
  if (!setting.IsInUse(other, lngChannel)) return {};
  return LackObjection(setting, instrument, setting.Read(other, lngChannel));
}

/// Why the open instrument cannot be sent this setup, one reason for each line.
std::string Unfit(const Setup &open, const Setup &setup) {
  std::string strReasons;
  const auto add = [&](const std::string &strKey, const std::string &strReason) {
    strReasons += (strReasons.empty() ? "" : "\r\n") + strKey + ": " + strReason;
  };
  for (const Setting &setting : Settings())
    for (const Long lngChannel : setting.Channels()) {
      if (!setting.IsHad(open, lngChannel)) continue;
      if (!setting.IsHad(setup, lngChannel)) {
        add(setting.Key(lngChannel), "the setup does not tell it");
      } else if (setting.fOnlyWords) {
        const std::string strWhy = Objection(setting, open, lngChannel, setting.Read(setup, lngChannel));
        if (!strWhy.empty()) add(setting.Key(lngChannel), strWhy);
      }
    }
  return strReasons;
}

/// The setup with each value of these parts in all places of them that stand for it.
Setup Aligned(const Setup &setup, Long eParts) {
  Setup aligned = setup;
  ForEachStored(setup, [&](const Setting &setting, Long lngChannel) {
    const bool fWhole = (PartsOf(setting) & ~eParts) == 0;
    if (fWhole) setting.Write(aligned, lngChannel, setting.Read(setup, lngChannel));
  });
  return aligned;
}

}  // namespace

Long PartsOf(const Setting &setting) {
  switch (setting.ePage) {
    case ePageMode: return ePartMode | ePartTiming | ePartFormats;
    case ePageTiming: return ePartTiming;
    case ePageLevels: return ePartLevels;
    case ePagePattern: return setting.eKind == SettingKind::Stream ? ePartPatterns : ePartFormats;
    case ePageLimits: return ePartLimits;
    case ePageTrigLev: return ePartTrgLevels;
    case ePageConfig: return ePartPll;
    default: return eAllParts;
  }
}

Boolean ReadIdentity(clsInstrInterface &instr, Setup &setup) {
  Setup identity;
  if (!instr.GetInstrInfo(identity.Instrument)) return False;
  identity.lngLacks = LacksOf(instr);
  setup = std::move(identity);
  return True;
}

Boolean ReadSetup(clsInstrInterface &instr, Setup &setup) {
  const automation::ReadAhead ahead("setup read");
  Setup fresh;
  if (!ReadIdentity(instr, fresh) || !ReadParts(instr, fresh, eAllParts)) return False;
  setup = Canonical(fresh);
  return True;
}

Boolean ReadParts(clsInstrInterface &instr, Setup &setup, Long eParts) {
  Setup read = setup;
  if (!ForEachPart(eParts, [&](const PartTransfer &transfer) { return transfer.Read(instr, read); })) return False;
  setup = std::move(read);
  return True;
}

SetupWritten WriteSetup(clsInstrInterface &instr, const Setup &setup) {
  return WriteParts(instr, Canonical(setup), eAllParts);
}

SetupWritten WriteParts(clsInstrInterface &instr, const Setup &setup, Long eParts) {
  if (!instr.IsOnline(False)) return {};
  Setup open;
  open.Instrument.lngNumChannels = instr.ChannelCount().value_or(0);
  open.lngLacks = LacksOf(instr);
  if (const std::string strUnfit = Unfit(open, setup); !strUnfit.empty()) return {False, strUnfit};

  if (!instr.TransactionStart(True)) return {False, "The instrument does not begin a transaction"};

  SetupWritten written;
  const auto connection =
      instr.InstrError.ConnectScoped([&](const std::string &strError) { written.strReasons = strError; });
  written.fDone = SendInTransaction(instr, Aligned(setup, eParts), eParts);
  return written;
}

TakenOver TakeOver(const Setup &base, const Setup &other) {
  TakenOver taken{base, {}, {}};
  for (const Setting &setting : Settings())
    for (const Long lngChannel : setting.Channels()) {
      const bool fTold = setting.IsHad(other, lngChannel);
      if (!fTold) {
        if (setting.IsHad(base, lngChannel) && setting.IsStored(base, lngChannel) && !setting.fNotation)
          taken.arrKept.push_back(setting.Key(lngChannel));
        continue;
      }
      if (!setting.IsStored(other, lngChannel)) continue;
      if (std::string strWhy = WhyNot(setting, lngChannel, base, other); !strWhy.empty())
        taken.arrLeftOut.push_back({setting.Key(lngChannel), std::move(strWhy)});
      else
        setting.Write(taken.setup, lngChannel, setting.Read(other, lngChannel));
    }
  return taken;
}

}  // namespace tarvik
