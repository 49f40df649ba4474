#include "ReferenceInstrument.h"

namespace tarvik::test {

// Frames of the operations.

void ReferenceInstrument::Report(const std::string &strModule, const std::string &strProc, const Failure &failure) {
  // At most three reports inside one another ask the driver whether it is to be told at length.
  ++m_intReports;
  const bool fAtLength = m_intReports <= 3 && GetVerboseErrorMsg();
  --m_intReports;
  Box("stop", (fAtLength ? strModule + "\r\n" + strProc + "\r\n\r\n" : "") + failure.strText);
  Log(failure, strModule, strProc);
}

void ReferenceInstrument::Box(const std::string &strIcon, const std::string &strText) {
  arrTold.push_back("box " + strIcon + ": " + strText);
}

void ReferenceInstrument::Log(const Failure &failure, const std::string &strModule, const std::string &strProc) {
  arrTold.push_back("log: 02/03/01 04:05\r\n  Error: " + std::to_string(failure.lngNumber) + " " + failure.strText +
                    "\r\n  Mod: " + strModule + "; Proc: " + strProc + "\r\n\r\n\r\n");
}

void ReferenceInstrument::Reported(const char *strProc, const std::function<void()> &steps,
                                   const std::function<void()> &afterwards) {
  try {
    steps();
  } catch (const Failure &failure) {
    Report("clsInstrInterface", strProc, failure);
    if (afterwards) afterwards();
  }
}

void ReferenceInstrument::WhileOnline(const char *strProc, const std::function<void()> &steps) {
  Reported(strProc, [&] {
    if (IsOnline(false)) steps();
  });
}

bool ReferenceInstrument::Sends(const char *strProc, const std::function<void()> &steps) {
  bool fResult = false;
  Reported(
      strProc,
      [&] {
        if (!IsOnline(false)) return;
        TransactionStart(false);
        steps();
        TransactionFinish(false);
        fResult = CheckWarnings(false);
      },
      [&] { TransactionCancel(); });
  return fResult;
}

void ReferenceInstrument::Ignored(const std::function<void()> &step) {
  try {
    step();
  } catch (const Failure &) {
  }
}

ReferenceInstrument::Object ReferenceInstrument::At(std::initializer_list<const char *> calls) {
  Object object = fOnline;
  for (const char *strCall : calls) object = driver.Fetch(object, strCall);
  return object;
}

void ReferenceInstrument::EachChannel(const std::function<void()> &steps) {
  for (long i = 1; i <= lngChannels; ++i) steps();
}

void ReferenceInstrument::EachOf(Object object, const std::string &strInterface,
                                 std::initializer_list<const char *> calls) {
  for (const char *strCall : calls) driver.Do(object, strInterface + "." + strCall);
}

// Transactions.

bool ReferenceInstrument::TransactionStart(bool fGlobalTrans) {
  bool fResult = false;
  try {
    if (fGlobalTrans) TransactionCancel();
    if (fTransaction || !IsOnline(false)) return false;
    if (!driver.Read(fOnline, "IInstrument.GetTransactionState", driver.fTransaction)) {
      driver.Do(fOnline, "IInstrument.Transaction(0)");
      driver.fTransaction = true;
    }
    fResult = fTransaction = true;
    fGlobal = fGlobalTrans;
    m_strLastWarning.clear();
  } catch (const Failure &) {
    TransactionCancel();
  }
  return fResult;
}

bool ReferenceInstrument::TransactionFinish(bool fGlobalTrans) {
  if (!fGlobalTrans && fGlobal) return false;
  bool fResult = false;
  try {
    if (IsOnline(false)) {
      if (driver.Read(fOnline, "IInstrument.GetTransactionState", driver.fTransaction)) {
        driver.Do(fOnline, "IInstrument.Transaction(1)");
        driver.fTransaction = false;
      }
      fResult = true;
    }
    fTransaction = fGlobal = false;
  } catch (const Failure &failure) {
    TransactionCancel();
    ShowErrors(failure.strText);
    arrEvents.push_back("InstrError: " + failure.strText);
    if (OnInstrError) OnInstrError();
  }
  return fResult;
}

void ReferenceInstrument::TransactionCancel() {
  if (IsOnline(false))
    Ignored([&] {
      driver.Do(fOnline, "IInstrument.Transaction(2)");
      driver.fTransaction = false;
    });
  fTransaction = fGlobal = false;
}

// Sessions.

bool ReferenceInstrument::IsOnline(bool fSilent) {
  if (!fOnline && !fSilent) Box("information", "You need to be online to an instrument to perform this operation");
  return fOnline;
}

bool ReferenceInstrument::Connect() {
  bool fResult = false;
  Reported("Connect", [&] {
    Hourglass(true);
    fConnected = false;
    fConnected = driver.Create();
    Hourglass(false);
    if (!fConnected) {
      arrTold.push_back(
          "input: Please enter the complete URL of the network server.\r\nLeave this blank if the server is local [" +
          strStoredAddress + "] -> ");
      fConnected = driver.Create();
    }
    if (!fConnected) return Box("stop", "Connection Failed!");
    strStoredAddress.clear();
    Status("Local Connection");
    fResult = true;
  });
  return fResult;
}

bool ReferenceInstrument::ConnectAgain() {
  bool fResult = false;
  Reported(
      "ConnectAgain",
      [&] {
        Hourglass(true);
        fOnline = fConnected = false;
        fConnected = driver.Create();
        Hourglass(false);
        if (!fConnected) return Box("stop", "Connection Failed!");
        Status("Connected again");
        fResult = true;
      },
      [&] { Hourglass(false); });
  return fResult;
}

bool ReferenceInstrument::OpenInstrument() {
  bool fResult = false;
  Reported("OpenInstrument", [&] {
    if (!fConnected) return;
    CloseInstrument();
    const Object list = driver.Fetch(true, "IDriverRoot.GetInstruments");
    fOnline = driver.FetchNarrowed(list, "IInstrumentList.GetItem");
    if (!fOnline) return;
    fOnline = driver.Read(fOnline, "IInstrument.Open", driver.fOpens);
    if (!fOnline) return;
    fResult = true;
    lngChannels = driver.Read(At({"IInstrument.GetChannels"}), "IChannelList.GetCount", driver.lngChannels);
    LetVerboseErrorMsg(false);
    lngMask = driver.Read(At({"IInstrument.GetRestrictions"}), "IRestrictions.GetMask", driver.lngMask);
    std::string strProductId;
    GetInstrInfo(strProductId);
    Status("Online with Alpha (" + strProductId + ")");
  });
  return fResult;
}

void ReferenceInstrument::CloseInstrument() {
  if (fOnline)
    Ignored([&] {
      driver.Do(fOnline, "IInstrument.Close");
      driver.fTransaction = false;
    });
  fOnline = false;
  Status("Offline");
  lngChannels = lngMask = 0;
}

bool ReferenceInstrument::GetInstrInfo(std::string &strProductId) {
  bool fResult = false;
  WhileOnline("GetInstrInfo", [&] {
    std::string strOptions;
    InstrumentCommands(4, strOptions);
    const std::string strIdentity = driver.Read(fOnline, "IInstrument.GetIdentity", "MAKER,Alpha,SN1,V1.0");
    if (strIdentity.empty()) throw Failure{9, "Subscript out of range"};
    strProductId = "Alpha";
    fResult = true;
  });
  return fResult;
}

bool ReferenceInstrument::InstrumentCommands(int intCommand, std::string &strText) {
  bool fResult = false;
  const auto pointerBack = [&] { Hourglass(false); };
  Reported(
      "InstrumentCommands",
      [&] {
        if (intCommand == 3 ? fConnected : IsOnline(false)) {
          Hourglass(true);
          switch (intCommand) {
            case 0:
              driver.Do(fOnline, "IInstrument.Reset");
              driver.fReset = true;
              break;
            case 1: strText = driver.Read(fOnline, "IInstrument.SelfTest", std::string("Passed")); break;
            case 2: driver.Do(fOnline, "IInstrument.Calibrate"); break;
            case 3: driver.Do(driver.Fetch(true, "IDriverRoot.GetInstruments"), "IInstrumentList.Refresh"); break;
            case 4: strText = driver.Read(fOnline, "IInstrument.GetOptions", std::string("OPT 001")); break;
            default: Box("stop", "Illegal Case");
          }
          fResult = true;
        }
        pointerBack();
      },
      pointerBack);
  return fResult;
}

bool ReferenceInstrument::GetVerboseErrorMsg() {
  bool fResult = false;
  WhileOnline("GetVerboseErrorMsg", [&] {
    fResult = driver.Read(At({"IInstrument.GetErrorQueue"}), "IErrorQueue.GetVerbose", driver.fVerbose);
  });
  return fResult;
}

void ReferenceInstrument::LetVerboseErrorMsg(bool fVerbose) {
  WhileOnline("LetVerboseErrorMsg", [&] {
    driver.Do(At({"IInstrument.GetErrorQueue"}), "IErrorQueue.SetVerbose");
    driver.fVerbose = fVerbose;
  });
}

// Polling.

namespace {

std::string InLines(std::string strText) {
  for (std::size_t at = 0; (at = strText.find_first_of("\";", at)) != std::string::npos;)
    strText.replace(at, 1, strText[at] == '"' ? "" : "\r\n");
  return strText;
}

}  // namespace

void ReferenceInstrument::ShowErrors(const std::string &strText) {
  if (!strText.empty()) Box("exclamation", "Instrument Errors(s):\r\n" + InLines(strText));
}

bool ReferenceInstrument::CheckErrors(bool fOverride) {
  bool fResult = false;
  Reported("CheckErrors", [&] {
    if (!fErrorsEnabled && !fOverride) {
      fResult = true;
      return;
    }
    if (!IsOnline(true)) return;
    const std::string strText =
        driver.Read(At({"IInstrument.GetErrorQueue"}), "IErrorQueue.GetErrors", driver.strErrors);
    ShowErrors(strText);
    fResult = !strText.empty();
  });
  return fResult;
}

bool ReferenceInstrument::CheckWarnings(bool fOverride) {
  if (fGlobal || !(fWarningsEnabled || fOverride) || !fOnline) return true;
  bool fResult = false;
  Reported("CheckWarnings", [&] {
    const std::string strText =
        driver.Read(At({"IInstrument.GetErrorQueue"}), "IErrorQueue.GetWarnings", driver.strWarnings);
    fResult = true;
    if (strText == m_strLastWarning) return;
    m_strLastWarning = strText;
    if (!strText.empty()) Box("exclamation", "Instrument Warning(s):\r\n" + InLines(strText));
  });
  return fResult;
}

void ReferenceInstrument::LetErrorsEnabled(bool fEnable) {
  if (fEnable == fErrorsEnabled) return;
  fErrorsEnabled = fEnable;
  if (fOnline) driver.Do(fOnline, "IInstrument.SetAutoDetectErrors");
}

long ReferenceInstrument::GetPnpTimeout() {
  long lngResult = 0;
  WhileOnline("GetPnpTimeout", [&] { lngResult = driver.Read(fOnline, "IInstrument.GetPnpTimeout", 10000); });
  return lngResult;
}

void ReferenceInstrument::LetPnpTimeout() {
  WhileOnline("LetPnpTimeout", [&] { driver.Do(fOnline, "IInstrument.SetPnpTimeout"); });
}

// Enumeration.

bool ReferenceInstrument::GetViInfo(int intIndex, std::string &strName) {
  bool fResult = false;
  Reported("GetViInfo", [&] {
    if (!fConnected) return;
    const long lngCount = driver.Read(driver.Fetch(true, "IDriverRoot.GetInstruments"), "IInstrumentList.GetCount", 1);
    if (intIndex > lngCount || intIndex <= 0) return;
    const Object list = driver.Fetch(true, "IDriverRoot.GetInstruments");
    const Object instrument = driver.FetchNarrowed(list, "IInstrumentList.GetItem");
    if (!instrument) return;
    strName = driver.Read(instrument, "IInstrument.GetName", std::string("Alpha"));
    driver.Do(instrument, "IInstrument.GetViInfo");
    fResult = true;
  });
  return fResult;
}

bool ReferenceInstrument::PllRefSource(bool fGet) {
  bool fResult = false;
  WhileOnline("PllRefSource", [&] {
    driver.Do(At({"IInstrument.GetPllReference"}), fGet ? "IPllReference.GetReference" : "IPllReference.SetReference");
    fResult = fGet || CheckWarnings(false);
  });
  return fResult;
}

// Mode and timing.

void ReferenceInstrument::ChannelModes(bool fPattern, const std::string &strVerb) {
  const Object channels = At({"IInstrument.GetChannels"});
  const long lngCount = driver.Read(channels, "IChannelList.GetCount", driver.lngChannels);
  for (long i = 1; i <= lngCount; ++i) {
    const Object channel = driver.Fetch(channels, "IChannelList.GetItem");
    if (fPattern)
      driver.Do(channel, "IChannel." + strVerb + "SignalFormat");
    else
      driver.Do(driver.Fetch(channel, "IChannel.GetTiming"), "IChannelTiming." + strVerb + "PulseType");
  }
}

bool ReferenceInstrument::SetMode(long lngTrigger, long lngPulse, const std::string &strSetter) {
  return Sends("SetMode", [&] {
    if (lngTrigger == 3) {
      driver.Do(At({"IInstrument.GetTriggerSystem", "ITriggerSystem.GetArmSource"}), "IArmSource.SetSource");
      driver.Do(At({"IInstrument.GetTriggerSystem"}), "ITriggerSystem.SetTriggerMode");
      return;
    }
    if (strSetter.empty())
      Box("stop", "Illegal case in SetMode");
    else
      driver.Do(At({"IInstrument.GetModeSetup"}), "IModeSetup." + strSetter);
    ChannelModes(lngPulse == 2, "Set");
  });
}

bool ReferenceInstrument::GetMode() {
  bool fResult = false;
  WhileOnline("GetMode", [&] {
    const long lngPulseMode = driver.Read(fOnline, "IInstrument.GetPulseMode", driver.lngPulseMode);
    const Object trigger = At({"IInstrument.GetTriggerSystem"});
    EachOf(trigger, "ITriggerSystem", {"GetTriggerMode", "GetBurstLength", "GetPeriodSource"});
    driver.Do(driver.Fetch(trigger, "ITriggerSystem.GetClockInput"), "IClockInput.GetSlope");
    const long lngSource = driver.Read(driver.Fetch(trigger, "ITriggerSystem.GetArmSource"), "IArmSource.GetSource",
                                       driver.lngArmingSource);
    driver.Do(driver.Fetch(trigger, "ITriggerSystem.GetArmSource"),
              lngSource == 1 ? "IArmSource.GetPllFrequency" : "IArmSource.GetSlope");
    ChannelModes(lngPulseMode == 2, "Get");
    fResult = true;
  });
  return fResult;
}

bool ReferenceInstrument::SetTiming(bool fDoublePulse) {
  return Sends("SetTiming", [&] {
    EachChannel([&] {
      const Object timing = driver.Fetch(Channel(), "IChannel.GetTiming");
      const auto edges = [&] { return driver.Fetch(timing, "IChannelTiming.GetEdges"); };
      driver.Do(edges(), "IEdges.SetLeading");
      driver.Do(edges(), "IEdges.SetTrailing");
      EachOf(timing, "IChannelTiming", {"SetWidth", "SetFrequency"});
      if (fDoublePulse)
        driver.Do(driver.Fetch(timing, "IChannelTiming.GetDoublePulse"), "IDoublePulse.SetDelay");
      else
        driver.Do(driver.Fetch(timing, "IChannelTiming.GetSinglePulse"), "ISinglePulse.SetDelay");
      if (!IsRestricted(4)) driver.Do(edges(), "IEdges.SetCoupling");
      Output(false);
      Output(true);
    });
  });
}

void ReferenceInstrument::ReadTiming() {
  const Object timing = driver.Fetch(Channel(), "IChannel.GetTiming");
  const auto edges = [&] { return driver.Fetch(timing, "IChannelTiming.GetEdges"); };
  if (!IsRestricted(4)) driver.Do(edges(), "IEdges.GetCoupling");
  driver.Do(edges(), "IEdges.GetLeading");
  driver.Do(edges(), "IEdges.GetTrailing");
  EachOf(timing, "IChannelTiming", {"GetWidth", "GetFrequency"});
  // The channels stand at single pulses.
  driver.Do(driver.Fetch(timing, "IChannelTiming.GetDoublePulse"), "IDoublePulse.GetEnabled");
  driver.Do(driver.Fetch(timing, "IChannelTiming.GetSinglePulse"), "ISinglePulse.GetDelay");
}

bool ReferenceInstrument::GetTiming() {
  bool fResult = false;
  WhileOnline("GetTiming", [&] {
    EachChannel([&] {
      ReadTiming();
      const Object levels = Levels();
      driver.Do(levels, "IChannelLevels.GetOutput");
      if (!IsRestricted(512)) driver.Do(levels, "IChannelLevels.GetComplementOutput");
    });
    fResult = true;
  });
  return fResult;
}

bool ReferenceInstrument::Output(bool fIsComplement) {
  bool fResult = false;
  WhileOnline("Output", [&] {
    const Object levels = Levels();
    if (!fIsComplement) driver.Do(levels, "IChannelLevels.SetOutput");
    if (fIsComplement && !IsRestricted(512)) driver.Do(levels, "IChannelLevels.SetComplementOutput");
    fResult = CheckWarnings(false);
  });
  return fResult;
}

// Levels, limits and trigger levels.

void ReferenceInstrument::LevelSteps(const std::string &strVerb) {
  EachChannel([&] {
    const Object levels = Levels();
    const auto step = [&](const char *strName) { driver.Do(levels, "IChannelLevels." + strVerb + strName); };
    step("Level");
    if (!IsRestricted(128)) step("LoadCompensation");
    if (!IsRestricted(64)) step("Impedance");
    step("Polarity");
    step("Output");
    if (!IsRestricted(512)) step("ComplementOutput");
  });
  if (!IsRestricted(256)) driver.Do(fOnline, "IInstrument." + strVerb + "ChannelMath");
}

void ReferenceInstrument::LimitSteps(bool fSet) {
  EachChannel([&] {
    const Object channel = Channel();
    const auto pair = [&](const char *strGroup) {
      return driver.Fetch(driver.Fetch(channel, strGroup), "ILimitGroup.GetLimits");
    };
    const Object voltage = pair("IChannel.GetVoltageLimits");
    if (fSet)
      EachOf(voltage, "ILimitPair", {"SetHigh", "SetLow"});
    else
      EachOf(voltage, "ILimitPair", {"GetEnabled", "GetHigh", "GetLow"});
    const Object current = pair("IChannel.GetCurrentLimits");
    if (fSet)
      EachOf(current, "ILimitPair", {"SetHigh", "SetLow", "SetEnabled"});
    else
      EachOf(current, "ILimitPair", {"GetHigh", "GetLow"});
  });
}

void ReferenceInstrument::TriggerLevelSteps(const std::string &strVerb) {
  const Object trigger = At({"IInstrument.GetTriggerSystem"});
  const auto steps = [&](const char *strFetch, const std::string &strInterface,
                         std::initializer_list<const char *> names) {
    const Object block = driver.Fetch(trigger, strFetch);
    for (const std::string strName : names) {
      const bool fLacks =
          (strName == "VxiSource" && IsRestricted(1024)) || (strName == "VxiLine" && IsRestricted(2048));
      if (!fLacks) driver.Do(block, strInterface + "." + strVerb + strName);
    }
  };
  steps("ITriggerSystem.GetAuxOutputs", "IAuxOutputs", {"OutLevel", "OutLevel", "VxiSource", "VxiLine"});
  steps("ITriggerSystem.GetClockInput", "IClockInput", {"Impedance", "Threshold"});
  steps("ITriggerSystem.GetExtInput", "IExtInput", {"Impedance", "Threshold"});
}

namespace {

/// The frame of an operation that answers whether its steps ran to their end.
std::function<void()> ThenTrue(bool &fResult, const std::function<void()> &steps) {
  return [&fResult, steps] {
    steps();
    fResult = true;
  };
}

}  // namespace

bool ReferenceInstrument::SetLevels() {
  return Sends("SetLevels", [&] { LevelSteps("Set"); });
}

bool ReferenceInstrument::GetLevels() {
  bool fResult = false;
  WhileOnline("GetLevels", ThenTrue(fResult, [&] { LevelSteps("Get"); }));
  return fResult;
}

bool ReferenceInstrument::SetLimits() {
  return Sends("SetLimits", [&] { LimitSteps(true); });
}

bool ReferenceInstrument::GetLimits() {
  bool fResult = false;
  WhileOnline("GetLimits", ThenTrue(fResult, [&] { LimitSteps(false); }));
  return fResult;
}

bool ReferenceInstrument::SetTriggerLevels() {
  return Sends("SetTriggerLevels", [&] { TriggerLevelSteps("Set"); });
}

bool ReferenceInstrument::GetTriggerLevels() {
  bool fResult = false;
  WhileOnline("GetTriggerLevels", ThenTrue(fResult, [&] { TriggerLevelSteps("Get"); }));
  return fResult;
}

// Patterns.

bool ReferenceInstrument::SetRz() {
  bool fResult = false;
  WhileOnline("SetRz", [&] {
    const Object channels = At({"IInstrument.GetChannels"});
    EachChannel([&] { driver.Do(driver.Fetch(channels, "IChannelList.GetItem"), "IChannel.SetSignalFormat"); });
    fResult = CheckWarnings(false);
  });
  return fResult;
}

bool ReferenceInstrument::GetRz() {
  bool fResult = false;
  WhileOnline("GetRz", [&] {
    const Object channels = At({"IInstrument.GetChannels"});
    EachChannel([&] { driver.Do(driver.Fetch(channels, "IChannelList.GetItem"), "IChannel.GetSignalFormat"); });
    fResult = true;
  });
  return fResult;
}

bool ReferenceInstrument::Pattern(const std::string &strProc, const std::string &strCall, bool fPolls) {
  bool fResult = false;
  WhileOnline(strProc.c_str(), [&] {
    driver.Do(At({"IInstrument.GetPatternMemory"}), strCall);
    fResult = !fPolls || CheckWarnings(false);
  });
  return fResult;
}

}  // namespace tarvik::test
