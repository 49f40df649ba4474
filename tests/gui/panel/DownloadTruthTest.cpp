#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "DaySession.h"
#include "instrument/Vocabulary.h"
#include "settings/modCboTags.h"
#include "support/Conversions.h"

namespace tarvik::test {
namespace {

using namespace kolven;
using automation::Ref;
using testing::IsEmpty;

/// The same numbers in each run.
class Dice {
 public:
  Long Below(Long lngCount) { return static_cast<Long>(m_engine() % static_cast<unsigned long>(lngCount)); }
  bool Coin() { return Below(2) == 1; }
  Double Between(Double dblLow, Double dblHigh) {
    return dblLow + (dblHigh - dblLow) * (static_cast<Double>(m_engine() >> 11) / 0x1p53);
  }
  /// As likely in each decade.
  Double Scaled(Double dblLow, Double dblHigh) {
    return std::pow(10, Between(std::log10(dblLow), std::log10(dblHigh)));
  }

 private:
  std::mt19937_64 m_engine{20240611};
};

/// Somebody else's hands on an instrument. What it refuses stays as it was.
class Meddler {
 public:
  Meddler(Ref<IInstrument> instrument, const Model &model, Dice &dice)
      : m_instrument(std::move(instrument)), m_model(model), m_dice(dice) {
    // Refusals come back from the call, and none waits for the panel.
    Call(m_instrument, &IInstrument::SetAutoDetectErrors, True);
  }

  void ChangeEverything() {
    Do([&] { SetMode(); });
    SetTriggerLevels();
    Do([&] { Call(m_instrument, &IInstrument::SetChannelMath, m_dice.Below(2)); });
    const auto channels = Fetch(m_instrument, &IInstrument::GetChannels);
    const Long lngChannels = Read(channels, &IChannelList::GetCount);
    for (Long i = 1; i <= lngChannels; ++i) {
      const auto channel = Fetch(channels, &IChannelList::GetItem, i);
      SetTiming(Fetch(channel, &IChannel::GetTiming));
      SetLevels(automation::Narrow<IChannelLevels>(Fetch(channel, &IChannel::GetLevels)));
      SetLimits(Fetch(channel, &IChannel::GetVoltageLimits), 20);
      SetLimits(Fetch(channel, &IChannel::GetCurrentLimits), 0.8);
      Do([&] { Call(channel, &IChannel::SetSignalFormat, m_dice.Below(2)); });
    }
    Do([&] {
      Double dblReference = m_dice.Coin() ? 5e6 : 1e7;
      Call(Fetch(m_instrument, &IInstrument::GetPllReference), &IPllReference::SetReference, &dblReference,
           m_dice.Below(2));
    });
    SetPatterns(lngChannels);
  }

 private:
  template <class Step>
  static void Do(Step &&step) {
    IgnoreErrors(step);
  }

  void SetMode() {
    const auto setup = Fetch(m_instrument, &IInstrument::GetModeSetup);
    const Long lngBurst = 2 + m_dice.Below(1000), lngPeriod = m_dice.Below(3), lngClock = m_dice.Below(2);
    // No list offers both slopes beside the PLL as the source of the period.
    const Long lngArm = ArmingSource(), lngSlope = m_dice.Below(lngPeriod == eSourcePll ? 2 : 3);
    const Double dblPll = m_dice.Scaled(1, 1e8);
    switch (m_dice.Below(10)) {
      case 0: return Call(setup, &IModeSetup::SetContinuousPulses, lngPeriod, lngClock);
      case 1: return Call(setup, &IModeSetup::SetContinuousBurst, lngBurst, lngPeriod, lngClock);
      case 2: return Call(setup, &IModeSetup::SetContinuousPattern, lngPeriod, lngClock);
      case 3: return Call(setup, &IModeSetup::SetTriggeredPulses, lngArm, lngSlope);
      case 4:
        return Call(setup, &IModeSetup::SetTriggeredBurst, lngBurst, lngPeriod, lngClock, lngArm, lngSlope,
                    ePllFrequency, dblPll);
      case 5:
        return Call(setup, &IModeSetup::SetTriggeredPattern, lngPeriod, lngClock, lngArm, lngSlope, ePllFrequency,
                    dblPll);
      case 6: return Call(setup, &IModeSetup::SetGatedPulses, lngPeriod, lngClock, lngArm, lngSlope);
      case 7: return Call(setup, &IModeSetup::SetGatedBurst, lngBurst, lngPeriod, lngClock, lngArm, lngSlope);
      case 8: return Call(setup, &IModeSetup::SetGatedPattern, lngPeriod, lngClock, lngArm, lngSlope);
      default:
        const auto trigger = Fetch(m_instrument, &IInstrument::GetTriggerSystem);
        Call(Fetch(trigger, &ITriggerSystem::GetArmSource), &IArmSource::SetSource, lngArm);
        Call(trigger, &ITriggerSystem::SetTriggerMode, eTriggerExtWidth);
    }
  }

  /// The lists offer VXI lines or the key, never both.
  Long ArmingSource() {
    switch (m_dice.Below(3)) {
      case 0: return eArmPll;
      case 1: return eArmExternal;
      default: return m_model.Has(eLacksVxiLines) ? eVxiEclt0 + m_dice.Below(10) : eArmManual;
    }
  }

  void SetTriggerLevels() {
    const auto trigger = Fetch(m_instrument, &IInstrument::GetTriggerSystem);
    const auto clock = Fetch(trigger, &ITriggerSystem::GetClockInput);
    const auto ext = Fetch(trigger, &ITriggerSystem::GetExtInput);
    const auto aux = Fetch(trigger, &ITriggerSystem::GetAuxOutputs);
    Do([&] { Call(clock, &IClockInput::SetThreshold, Threshold()); });
    Do([&] { Call(ext, &IExtInput::SetThreshold, Threshold()); });
    Do([&] { Call(clock, &IClockInput::SetImpedance, m_dice.Coin() ? 50.0 : 10000.0); });
    Do([&] { Call(ext, &IExtInput::SetImpedance, m_dice.Coin() ? 50.0 : 10000.0); });
    for (const Long lngOutput : {1, 2}) Do([&] { Call(aux, &IAuxOutputs::SetOutLevel, lngOutput, m_dice.Below(2)); });
    Do([&] { Call(aux, &IAuxOutputs::SetVxiSource, 1 + m_dice.Below(2)); });
    Do([&] { Call(aux, &IAuxOutputs::SetVxiLine, eVxiEclt0 + m_dice.Below(10)); });
  }

  Double Threshold() {
    const Double arr[] = {2.5, -1.3, 0, m_dice.Between(-10, 10)};
    return arr[m_dice.Below(std::size(arr))];
  }

  void SetTiming(const Ref<IChannelTiming> &timing) {
    const auto edges = Fetch(timing, &IChannelTiming::GetEdges);
    const bool fFixed = m_dice.Coin();
    const auto edge = [&] { return fFixed ? (m_dice.Coin() ? 0.8e-9 : 1.6e-9) : m_dice.Scaled(1e-9, 1e-3); };
    Do([&] { Call(timing, &IChannelTiming::SetPulseType, 1 + m_dice.Below(2)); });
    // Each value has its chance before and behind the others: they have to fit together.
    for (int i = 0; i < 3; ++i) {
      const Double dblPeriod = m_dice.Scaled(1e-8, 100);
      Do([&] { Call(timing, &IChannelTiming::SetWidth, dblPeriod * m_dice.Between(0.01, 0.5)); });
      if (Read(timing, &IChannelTiming::GetPulseType) == eTypeDouble)
        Do([&] {
          CallSelected(Fetch(timing, &IChannelTiming::GetDoublePulse), &IDoublePulse::SetDelay,
                       dblPeriod * m_dice.Between(0, 0.9));
        });
      else
        Do([&] {
          CallSelected(Fetch(timing, &IChannelTiming::GetSinglePulse), &ISinglePulse::SetDelay,
                       dblPeriod * m_dice.Between(0, 0.5));
        });
      Do([&] { Call(timing, &IChannelTiming::SetFrequency, 1 / dblPeriod); });
    }
    Do([&] { Call(edges, &IEdges::SetCoupling, m_dice.Below(2)); });
    Do([&] { CallSelected(edges, &IEdges::SetLeading, edge()); });
    Do([&] { CallSelected(edges, &IEdges::SetTrailing, edge()); });
  }

  void SetLevels(const Ref<IChannelLevels> &levels) {
    Do([&] { Call(levels, &IChannelLevels::SetLoadCompensation, m_dice.Scaled(1, 1e5)); });
    const bool fCurrent = m_dice.Coin();
    // The field takes an amplitude up to 20 V.
    const Double dblHighest = fCurrent ? 0.8 : 10;
    const Double dblLow = m_dice.Between(-dblHighest, dblHighest), dblHigh = m_dice.Between(dblLow, dblHighest);
    Do([&] { Call(levels, &IChannelLevels::SetLevel, eLevelHighLow, fCurrent ? 1 : 0, dblHigh, dblLow); });
    Do([&] { Call(levels, &IChannelLevels::SetImpedance, m_dice.Coin() ? 50.0 : 1000.0); });
    Do([&] { Call(levels, &IChannelLevels::SetPolarity, m_dice.Below(2)); });
    Do([&] { Call(levels, &IChannelLevels::SetOutput, Boolean(m_dice.Coin())); });
    Do([&] { Call(levels, &IChannelLevels::SetComplementOutput, Boolean(m_dice.Coin())); });
  }

  void SetLimits(const Ref<ILimitGroup> &group, Double dblHighest) {
    const auto pair = Fetch(group, &ILimitGroup::GetLimits);
    const Double dblLow = m_dice.Between(-dblHighest, 0), dblHigh = m_dice.Between(0, dblHighest);
    Do([&] { Call(pair, &ILimitPair::SetHigh, dblHigh); });
    Do([&] { Call(pair, &ILimitPair::SetLow, dblLow); });
    Do([&] { Call(pair, &ILimitPair::SetEnabled, Boolean(m_dice.Coin())); });
  }

  void SetPatterns(Long lngChannels) {
    const auto memory = Fetch(m_instrument, &IInstrument::GetPatternMemory);
    const Long lngLength = 2 + m_dice.Below(99);
    for (Long lngRow = 1; lngRow <= 3; ++lngRow) {
      if (lngRow == 2 && lngChannels < 2) continue;
      std::vector<Byte> arrBytes(static_cast<std::size_t>((lngLength + 7) / 8));
      for (Byte &byte : arrBytes) byte = static_cast<Byte>(m_dice.Below(256));
      automation::ArrayOwner array(ByteArray(1, arrBytes));
      Do([&] { Call(memory, &IPatternMemory::SetPattern, lngRow, PatternForm, array.InOut(), lngLength); });
    }
  }

  Ref<IInstrument> m_instrument;
  const Model &m_model;
  Dice &m_dice;
};

/// A panel in any state before, an instrument in any state: a download shows what the instrument holds.
class DownloadTruth : public DaySession {
 protected:
  DownloadTruth() {
    User().ShowPage(ePageOptions);
    // Nothing but transfers, and only when they are asked for.
    for (const char *strName : {"chkAutoOutputOnOff", "chkAutoWarnings"}) User().Choose(strName);
  }
  void Meddle(const Model &model) { Meddler(session.Instrument(model.strName), model, m_dice).ChangeEverything(); }

  /// What a user may have left on the pages without sending it.
  void LeaveAnything() {
    User().ShowPage(ePageMode);
    Click("optTriggerMode(" + std::to_string(m_dice.Below(4)) + ")");
    Click("optPulseMode(" + std::to_string(m_dice.Below(3)) + ")");
    for (const char *strList :
         {"cboPulseType1", "cboPulseType2", "cboPeriodSource", "cboTriggerSlope", "cboArmingSource", "cboArmingLevel"})
      Take(strList);
    User().ShowPage(ePageTiming);
    if (m_dice.Coin()) User().Click("cmdPeriodOrFreq");
    Type("esPeriodOrFreq", m_dice.Scaled(1e-8, 1e6));
    User().ShowPage(ePageLevels);
    for (const char *strChannel : {"(0)", "(1)"}) {
      // A preset is left again: the choice that a download makes over it brings its numbers back.
      Take(std::string("cboLevelFormat") + strChannel);
      Choose(std::string("cboLevelFormat") + strChannel, m_dice.Coin() ? 1 : 2);
      Type(std::string("esLoadCompensation") + strChannel, m_dice.Scaled(1, 1e4));
      Take(std::string("cboLevelUnits") + strChannel);
      Type(std::string("esLevelHigh") + strChannel, m_dice.Between(-1, 1));
      Take(std::string("cboLevelUnits") + strChannel);
      Take(std::string("cboOutputImpedance") + strChannel);
    }
    for (const char *strChannel : {"(0)", "(1)"}) {
      User().ShowPage(ePageTiming);
      Type(std::string("esWidth") + strChannel, m_dice.Scaled(1e-9, 1e2));
      Type(std::string("esDelay") + strChannel, m_dice.Scaled(1e-9, 1e2));
      User().ShowPage(ePageTrigLev);
      Take(strChannel[1] == '0' ? "cboVxiTriggerEnable" : "cboVxiTriggerSource");
    }
    User().ShowPage(ePageTrigLev);
    Click("optTrigLevelExtIn(" + std::to_string(m_dice.Below(3)) + ")");
    User().ShowPage(ePageConfig);
    Take("cboPllRefSource");
    Take("cboPllRefFreq");
    User().ShowPage(TabNumEnum(m_dice.Below(eNumPages)));
  }

  bool Reachable(const std::string &strName) const { return User().Get<QWidget>(strName).isEnabled(); }
  void Click(const std::string &strOption) {
    if (Reachable(strOption)) User().Choose(strOption);
  }
  void Choose(const std::string &strList, int intItem) {
    if (Reachable(strList)) User().Take(strList, intItem);
  }
  void Take(const std::string &strList) {
    if (const Long lngCount = User().List(strList).ListCount(); lngCount > 0) Choose(strList, m_dice.Below(lngCount));
  }
  void Type(const std::string &strField, Double dblValue) {
    if (Reachable(strField) && !User().Field(strField).Locked()) User().Type(strField, CStr(dblValue) + "E0");
  }

  Dice m_dice;
};

TEST_P(DownloadTruth, WhateverStoodOnThePagesBefore) {
  session.Open(Instrument().strName);
  ExpectNoBox();
  for (int i = 0; i < 25 && !HasFailure(); ++i) {
    SCOPED_TRACE(i);
    LeaveAnything();
    Meddle(Instrument());
    session.host.TakeBoxes();
    User().Click("cmdDownload");
    ExpectNoBox();
    ExpectAll(ePageIsCurrent);
    ExpectPanelAgrees("after the download");
    for (const TabNumEnum ePage : {ePageMode, ePageTiming, ePageLevels, ePageTrigLev, ePageInstr})
      User().ShowPage(ePage);
    ExpectPanelAgrees("after a look at the pages");
  }
}

TEST_P(DownloadTruth, WhateverInstrumentWasOpenBefore) {
  for (int i = 0; i < 12 && !HasFailure(); ++i) {
    SCOPED_TRACE(i);
    session.Open(Models[m_dice.Below(std::size(Models))].strName);
    LeaveAnything();
    Meddle(Instrument());
    if (session->Ticked() == std::vector<std::string>{Instrument().strName}) session.Open(Instrument().strName);
    session.host.TakeBoxes();
    session.Open(Instrument().strName);
    ExpectNoBox();
    ExpectPanelAgrees("after the automatic download");
    for (const TabNumEnum ePage : {ePageMode, ePageTiming, ePageLevels, ePageTrigLev, ePageInstr})
      User().ShowPage(ePage);
    ExpectPanelAgrees("after a look at the pages");
  }
}

INSTANTIATE_TEST_SUITE_P(EveryInstrument, DownloadTruth,
                         testing::Combine(testing::ValuesIn(Models), testing::Values(&BesideThePanel)),
                         DaySession::NameOf);

}  // namespace
}  // namespace tarvik::test
