#include "ReferencePanel.h"

namespace tarvik::test {

ReferencePanel::ReferencePanel() {
  instr.OnInstrError = [this] {
    if (!fDownloadsOnError) return;
    Event(
        "clsInstrInterface",
        [this] {
          states.fill(NeedsDownloading);
          DownloadEverything();
        },
        "InstrError");
  };
}

void ReferencePanel::Event(const char *strControl, const std::function<void()> &action, const char *strEvent) {
  try {
    action();
  } catch (const ReferenceInstrument::Failure &failure) {
    instr.Box("stop", failure.strText);
    instr.Log(failure, strControl, strEvent);
  }
}

// Upload.

bool ReferencePanel::UploadPage(Page ePage) {
  switch (ePage) {
    case Mode: return instr.SetMode(0, 0, "SetContinuousPulses");
    case Timing: return instr.SetTiming(false);
    case Levels: return instr.SetLevels();
    case Limits: return instr.SetLimits();
    case TrigLev: return instr.SetTriggerLevels();
    case Config: return instr.PllRefSource(false);
    default: return instr.SetRz();
  }
}

bool ReferencePanel::UploadPattern() {
  for (int intRow = 1; intRow <= 3; ++intRow)
    if (!instr.Pattern("SetPatternArray", "IPatternMemory.SetPattern", true)) return false;
  return true;
}

void ReferencePanel::Upload() {
  if (!IsOnline()) return instr.Hourglass(false);
  instr.Hourglass(true);
  instr.TransactionStart(true);
  bool fOk = true;
  const auto needs = [&](Page ePage) { return fOk && states[ePage] == Dirty && (fUploadsAll || ePage == eVisible); };
  for (const Page ePage : {Mode, Timing, Levels, Limits, TrigLev, Config, Pattern}) {
    if (!needs(ePage)) continue;
    fOk = UploadPage(ePage);
    if (fOk && ePage != Pattern) states[ePage] = Current;
  }
  if (fOk) {
    instr.TransactionFinish(true);
    instr.CheckWarnings(false);
  } else {
    instr.TransactionCancel();
  }
  if (needs(Pattern) && UploadPattern()) states[Pattern] = Current;
  instr.Hourglass(false);
}

// Download.

void ReferencePanel::DownloadPage(Page ePage) {
  const auto done = [&](bool fRead) {
    if (fRead) states[ePage] = Current;
  };
  switch (ePage) {
    case Mode: return done(instr.GetMode());
    case Timing: return done(instr.GetTiming());
    case Levels: {
      const bool fRead = instr.GetLevels();
      if (fRead) RaiseIfNotANumber("IChannelLevels.GetImpedance");
      return done(fRead);
    }
    case Pattern: return DownloadPattern();
    case Limits: return done(instr.GetLimits());
    case TrigLev: return done(instr.GetTriggerLevels());
    default: return DownloadConfig();
  }
}

void ReferencePanel::DownloadPattern() {
  m_intSequence = 0;
  for (const int intBytes : instr.driver.patternBytes) {
    if (!instr.Pattern("GetPatternArray", "IPatternMemory.GetPattern", false)) continue;
    if (!instr.driver.Is(DriverFault::Unfilled)) m_intBuffer = intBytes;
    if (instr.driver.Is(DriverFault::ShorterArray)) m_intBuffer = 0;
    if (instr.driver.Is(DriverFault::LongerArray)) m_intBuffer = 200;
    ShowRow(m_intBuffer);
  }
  instr.GetRz();
  states[Pattern] = Current;
}

void ReferencePanel::ShowRow(int intBytes) {
  if (intBytes == 0) return instr.Report("BitPattern", "SetPattern", {9, "Subscript out of range"});
  if (m_intSequence == 0) m_intSequence = intBytes;
  if (intBytes != m_intSequence) instr.Box("stop", "Illegal use of SetPattern()");
}

void ReferencePanel::DownloadConfig() {
  std::string strText;
  if (!instr.GetInstrInfo(strText)) return;
  if (fTicked) instr.GetViInfo(1, strText);
  if (instr.PllRefSource(true)) RaiseIfNotANumber("IPllReference.GetReference");
  states[Config] = Current;
}

void ReferencePanel::RaiseIfNotANumber(const char *strCall) {
  if (instr.driver.AnswersNoNumber(strCall)) throw ReferenceInstrument::Failure{6, "Overflow"};
}

void ReferencePanel::Download() {
  if (!IsOnline()) return;
  // A failure that leaves a page leaves the pointer and the flag as they are.
  instr.Hourglass(true);
  fDownloading = true;
  const bool fAll = m_fForcesAll || fDownloadsAll;
  for (const Page ePage : {Mode, Timing, Levels, Pattern, Limits, TrigLev, Config})
    if (fAll || ePage == eVisible) DownloadPage(ePage);
  fDownloading = false;
  instr.Hourglass(false);
  instr.CheckWarnings(false);
}

void ReferencePanel::DownloadEverything() {
  // Whatever becomes of it.
  struct Forcing {
    bool &fForces;
    explicit Forcing(bool &fFlag) : fForces(fFlag) { fForces = true; }
    Forcing(const Forcing &) = delete;
    Forcing &operator=(const Forcing &) = delete;
    ~Forcing() { fForces = false; }
  } forcing(m_fForcesAll);
  Download();
}

// List of the instruments.

void ReferencePanel::Show() {
  instr.fWarningsEnabled = true;
  instr.LetErrorsEnabled(true);
  if (instr.Connect()) Refresh();
}

void ReferencePanel::Refresh() {
  fTicked = false;
  instr.CloseInstrument();
  std::string strText;
  if (instr.InstrumentCommands(3, strText)) {
    instr.Hourglass(true);
    intRows = 0;
    while (instr.GetViInfo(intRows + 1, strText)) ++intRows;
  }
  instr.Hourglass(false);
}

void ReferencePanel::StartOrStop() {
  const bool fStart = !fTicked;
  fTicked = false;
  instr.CloseInstrument();
  states.fill(Current);
  try {
    if (fStart) Start();
  } catch (const ReferenceInstrument::Failure &failure) {
    instr.Report("TarvikVI", "InstrStartStop", failure);
  }
  instr.Hourglass(false);
}

void ReferencePanel::Start() {
  instr.Hourglass(true);
  fTicked = instr.OpenInstrument();
  if (fTicked) {
    states.fill(NeedsDownloading);
    states[Instr] = Current;
    if (fAutoDownload) DownloadEverything();
  } else {
    instr.Hourglass(false);
    instr.Box("stop", "Unable to start a session with this instrument");
  }
}

// Commands.

std::string ReferencePanel::Command(int intCommand, const char *strQuestion) {
  instr.Box("question", strQuestion);
  std::string strResult;
  instr.InstrumentCommands(intCommand, strResult);
  return strResult;
}

void ReferencePanel::Reset() {
  if (!IsOnline()) return;
  Command(0, "Do you really want to reset?");
  if (instr.driver.fReset) instr.driver.patternBytes = {1, 2, 3};
  Download();
}

void ReferencePanel::SelfTest() {
  if (!IsOnline()) return;
  const std::string strResult = Command(1, "Do you really want to perform a selftest?");
  instr.Box("information", "Result: \r\n" + (strResult.empty() ? "Selftest failed!" : strResult));
}

void ReferencePanel::Calibrate() {
  if (IsOnline()) Command(2, "Do you really want to calibrate the instrument?\r\n(This may take up to 30 seconds)");
}

void ReferencePanel::Check(bool fErrors) {
  if (!IsOnline()) return;
  if (!(fErrors ? instr.CheckErrors(true) : instr.CheckWarnings(true)))
    instr.Box("information", fErrors ? "No Instrument Errors" : "No Instrument Warnings");
}

void ReferencePanel::Output(bool fIsComplement) { instr.Output(fIsComplement); }

void ReferencePanel::AllOutputsOff() {
  if (!instr.fOnline) return;
  // No warning comes between two outputs.
  const bool fWarnings = instr.fWarningsEnabled;
  instr.fWarningsEnabled = false;
  for (const bool fIsComplement : {false, true})
    for (long i = 1; i <= instr.lngChannels; ++i) instr.Output(fIsComplement);
  instr.fWarningsEnabled = fWarnings;
  instr.CheckWarnings(false);
}

void ReferencePanel::Prbs() {
  instr.arrTold.push_back("input");
  states[Pattern] = Dirty;
  instr.Pattern("CalcPRBS", "IPatternMemory.CalcPrbs", false);
}

void ReferencePanel::Compare() {
  std::string strText;
  const auto patterns = [&] {
    for (int intRow = 1; intRow <= 3; ++intRow) {
      if (!instr.Pattern("GetPatternArray", "IPatternMemory.GetPattern", false)) return false;
      if (!instr.driver.Is(DriverFault::ShorterArray)) continue;
      instr.Report("SetupTransfer", "ReadPattern", {6, "The driver tells a pattern of 8 bits in 0 bytes"});
      return false;
    }
    return true;
  };
  // The first that fails ends it.
  static_cast<void>(IsOnline() && instr.GetInstrInfo(strText) && instr.GetMode() && instr.GetTiming() &&
                    instr.GetLevels() && instr.GetLimits() && instr.GetTriggerLevels() && instr.PllRefSource(true) &&
                    instr.GetRz() && patterns());
}

}  // namespace tarvik::test
