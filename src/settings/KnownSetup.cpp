#include "settings/KnownSetup.h"

#include <algorithm>
#include <string_view>

#include "settings/SetupDifferences.h"

namespace tarvik {

namespace {

/// Settings that the transfer of a page carries although another page shows them.
struct Passenger {
  TabNumEnum ePage;
  std::string_view strKey;
};
constexpr Passenger Passengers[] = {
    {ePageTiming, "levels.output"},
    {ePageTiming, "levels.complement"},
    {ePageTiming, "mode.pulseType"},
    {ePageMode, "pattern.rz"},
};

bool TravelsWith(const Setting &setting, TabNumEnum ePage) {
  return setting.ePage == ePage || std::ranges::any_of(Passengers, [&](const Passenger &passenger) {
           return passenger.ePage == ePage && passenger.strKey == setting.strKey;
         });
}

/// The same setup with the values of one page's record in the places where the table reads them.
Setup AsRead(const Setup &read, TabNumEnum ePage) {
  Setup setup = read;
  const bool fPattern = read.Mode.PulseMode == ePulsePattern;
  for (const Long i : {1, 2}) {
    if (ePage == ePageTiming) {
      setup.Levels.fChannelOutputOn[i] = read.Timing.fChannelOutputOn[i];
      setup.Levels.fChannelOutputInvOn[i] = read.Timing.fChannelOutputInvOn[i];
    } else if (ePage == ePageMode && fPattern) {
      setup.fRz[i] = read.Mode.SignalFormat[i] != eFormatNrz;
    } else if (ePage == ePageMode) {
      setup.Timing.fDoublePulse[i] = read.Mode.PulseType[i] == eTypeDouble;
    }
  }
  return setup;
}

/// The driver tells the PLL or a slope as the arming source has it, and the pulses of a channel or its bits.
bool IsRead(const Setting &setting, TabNumEnum ePage, const Setup &read) {
  const bool fPllArms = read.Mode.ArmingSource == eArmPll, fPattern = read.Mode.PulseMode == ePulsePattern;
  if (setting.strKey == "mode.armingLevel") return !fPllArms;
  if (setting.strKey.starts_with("mode.pll")) return fPllArms;
  if (ePage == ePageMode && setting.strKey == "mode.pulseType") return !fPattern;
  if (ePage == ePageMode && setting.strKey == "pattern.rz") return fPattern;
  return true;
}

/// The mode sends what it uses, and a page that sends its record whole sends all of it.
bool IsSent(const Setting &setting, Long lngChannel, TabNumEnum ePage, const Setup &sent) {
  if (ePage != ePageMode) return true;
  const bool fSendsChannels = sent.Mode.TriggerMode != eTriggerExtWidth;
  if (setting.strKey == "pattern.rz") return fSendsChannels && sent.Mode.PulseMode == ePulsePattern;
  if (setting.strKey == "mode.pulseType" && !fSendsChannels) return false;
  return setting.IsInUse(sent, lngChannel) && !setting.KeepsItsOwn(sent, lngChannel);
}

bool HasStream(const Setting &setting, const Setup &setup) {
  return setting.eKind != SettingKind::Stream || std::get<PatternStream>(setting.Read(setup, 0)).lngLength > 0;
}

}  // namespace

KnownSetup::KnownSetup() { Forget(); }

void KnownSetup::Forget() {
  m_values = {};
  TakeIdentity({});
  m_arrKnown.assign(Settings().size(), {});
  Changed.Raise(eAllPages);
}

void KnownSetup::TakeIdentity(const udtInstrInfo &info) {
  m_values.Instrument = info;
  // The setup that it is compared with says what the instrument has.
  m_values.Instrument.lngNumChannels = 2;
}

bool KnownSetup::KnowsAnything() const {
  return std::ranges::any_of(m_arrKnown, [](const auto &row) { return std::ranges::count(row, true) > 0; });
}

bool KnownSetup::Knows(const Setting &setting, Long lngChannel) const {
  const auto row = static_cast<std::size_t>(&setting - Settings().data());
  return m_arrKnown[row][static_cast<std::size_t>(lngChannel)];
}

std::vector<TabNumEnum> KnownSetup::PagesToSend(const Setup &setup) const {
  std::vector<TabNumEnum> arrPages;
  for (const TabNumEnum ePage :
       {ePageMode, ePageTiming, ePageLevels, ePagePattern, ePageLimits, ePageTrigLev, ePageConfig}) {
    const bool fDiffers = std::ranges::any_of(Settings(), [&](const Setting &setting) {
      return TravelsWith(setting, ePage) && std::ranges::any_of(setting.Channels(), [&](Long lngChannel) {
               return HasToBeSent(setting, lngChannel, setup);
             });
    });
    if (fDiffers) arrPages.push_back(ePage);
  }
  return arrPages;
}

bool KnownSetup::HasToBeSent(const Setting &setting, Long lngChannel, const Setup &setup) const {
  if (setting.fNotation || !setting.IsHad(setup, lngChannel) || !setting.IsInUse(setup, lngChannel)) return false;
  if (!setting.IsStored(setup, lngChannel) || setting.KeepsItsOwn(setup, lngChannel)) return false;
  if (!Knows(setting, lngChannel)) return true;
  return DifferenceIn(setting, lngChannel, setup, m_values).has_value();
}

void KnownSetup::Take(const Setup &setup, const Told &isTold) {
  for (const Setting &setting : Settings()) {
    for (const Long lngChannel : setting.Channels()) {
      if (!isTold(setting, lngChannel)) continue;
      if (setting.strKey == "mode.pulseType" && setting.Read(setup, lngChannel) != setting.Read(m_values, lngChannel))
        ForgetDelay(lngChannel);
      SetKnown(setting, lngChannel, true);
      // The others follow from these.
      if (setting.IsStored(setup, lngChannel)) setting.Write(m_values, lngChannel, setting.Read(setup, lngChannel));
    }
  }
}

void KnownSetup::SetKnown(const Setting &setting, Long lngChannel, bool fKnown) {
  const auto row = static_cast<std::size_t>(&setting - Settings().data());
  m_arrKnown[row][static_cast<std::size_t>(lngChannel)] = fKnown;
}

void KnownSetup::ForgetDelay(Long lngChannel) {
  SetKnown(*std::ranges::find(Settings(), "timing.delay", &Setting::strKey), lngChannel, false);
}

void KnownSetup::TakeRead(TabNumEnum ePage, const Setup &read) {
  Take(AsRead(read, ePage), [&](const Setting &setting, Long) {
    return TravelsWith(setting, ePage) && IsRead(setting, ePage, read) && HasStream(setting, read);
  });
  Changed.Raise(ePage);
}

void KnownSetup::TakeSent(TabNumEnum ePage, const Setup &sent) {
  Take(sent, [&](const Setting &setting, Long lngChannel) {
    return TravelsWith(setting, ePage) && IsSent(setting, lngChannel, ePage, sent) && HasStream(setting, sent);
  });
  Changed.Raise(ePage);
}

void KnownSetup::TakeStreams(const Setup &sent) {
  Take(sent,
       [&](const Setting &setting, Long) { return setting.eKind == SettingKind::Stream && HasStream(setting, sent); });
  Changed.Raise(ePagePattern);
}

void KnownSetup::TakeOutput(Long lngChannel, Boolean fIsComplement, Boolean fOn) {
  const std::string_view strKey = fIsComplement ? "levels.complement" : "levels.output";
  Setup setup;
  (fIsComplement ? setup.Levels.fChannelOutputInvOn : setup.Levels.fChannelOutputOn)[lngChannel] = fOn;
  Take(setup,
       [&](const Setting &setting, Long lngOther) { return setting.strKey == strKey && lngOther == lngChannel; });
  Changed.Raise(ePageLevels);
}

}  // namespace tarvik
