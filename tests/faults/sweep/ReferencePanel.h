#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "ReferenceInstrument.h"

namespace tarvik::test {

/// The rules of the panel stated a second time: what each action of the user asks of the instrument class and what it
/// does to page states, list, pointer and flags. The panel stands before an instrument with two channels that lacks
/// nothing.
class ReferencePanel {
 public:
  enum State { Current, NeedsDownloading, Dirty };
  enum Page { Instr, Mode, Timing, Levels, Pattern, Limits, TrigLev, Config, Options, NumPages };

  ReferencePanel();

  ReferenceInstrument instr;
  std::array<State, NumPages> states{};
  Page eVisible = Instr;
  int intRows = 1;
  bool fTicked = false;
  bool fDownloading = false;

  // Options.
  bool fUploadsAll = true, fDownloadsAll = true, fAutoDownload = true, fDownloadsOnError = false;

  void Upload();
  void Download();
  /// The panel is shown, and hidden.
  void Show();
  void Hide() { instr.CloseInstrument(); }
  void Refresh();
  /// A tick, a double click or Enter: ends the session of the row or starts one.
  void StartOrStop();
  void Reset();
  void SelfTest();
  void Calibrate();
  void CheckErrors() { Check(true); }
  void CheckWarnings() { Check(false); }
  void Output(bool fIsComplement);
  void AllOutputsOff();
  void Prbs();
  void Compare();

  /// An action at the event boundary, where what nobody has handled is told.
  void Event(const char *strControl, const std::function<void()> &action, const char *strEvent = "Click");

 private:
  bool UploadPage(Page ePage);
  bool UploadPattern();
  void Start();
  void DownloadPage(Page ePage);
  void DownloadPattern();
  /// The editor gets a row as it came, and all rows of one download have to be alike.
  void ShowRow(int intBytes);
  void DownloadConfig();
  /// A number that none can be made of is an overflow where a list looks for it.
  void RaiseIfNotANumber(const char *strCall);
  bool IsOnline() { return instr.IsOnline(false); }

  void DownloadEverything();
  std::string Command(int intCommand, const char *strQuestion);
  void Check(bool fErrors);

  bool m_fForcesAll = false;
  int m_intBuffer = 1;    ///< bytes in the array that the rows are read into
  int m_intSequence = 0;  ///< bytes of the first row of this download; 0 before it
};

}  // namespace tarvik::test
