#pragma once

#include <string>
#include <vector>

#include "settings/Setting.h"

namespace tarvik {

class clsInstrInterface;

/// The groups of settings that an instrument is sent and asked for as a whole. A sum of them names several.
enum SetupPart : Long {
  ePartMode = 1,
  ePartTiming = 2,
  ePartLevels = 4,
  ePartLimits = 8,
  ePartTrgLevels = 16,
  ePartPll = 32,
  ePartFormats = 64,  ///< return to zero
  ePartPatterns = 128,
  eAllParts = 255,
};

/// The parts that a setting has to be read and sent with. The mode's record carries pulse types and signal formats,
/// which timing and formats tell as well.
Long PartsOf(const Setting &setting);

/// Reads all settings of the open instrument, levels as high and low. False, with the setup as it was, when a read
/// fails; the user has then been told why by the instrument class.
Boolean ReadSetup(clsInstrInterface &instr, Setup &setup);

/// Who the open instrument is and what it lacks, with the settings of a fresh Setup. False when it does not tell.
Boolean ReadIdentity(clsInstrInterface &instr, Setup &setup);

/// Reads these parts into a setup with the instrument's identity; levels as high and low. Fails as ReadSetup.
Boolean ReadParts(clsInstrInterface &instr, Setup &setup, Long eParts);

/// What became of a setup that was sent.
struct SetupWritten {
  Boolean fDone;
  /// Why the instrument took nothing: its own words where it refused the settings at the commit, and empty where a box
  /// of the instrument class has told.
  std::string strReasons;
};

/// Sends all settings in one transaction, in the order of an upload of all pages and with the patterns before the
/// commit. The instrument takes all of them or none: any failure on the way drops the transaction. A pattern of no bits
/// is not sent. A setup that does not fit the open instrument is refused before anything is sent; TakeOver makes one
/// that fits. A commit that fails is shown by the instrument class as well.
SetupWritten WriteSetup(clsInstrInterface &instr, const Setup &setup);

/// Sends these parts in the same way. What PartsOf names together has to be sent together.
SetupWritten WriteParts(clsInstrInterface &instr, const Setup &setup, Long eParts);

/// A setting that was not taken over, and why: "the instrument has one channel".
struct SettingLeftOut {
  std::string strKey;
  std::string strReason;
};

/// The setup of one instrument as another one can have it.
struct TakenOver {
  Setup setup;
  std::vector<SettingLeftOut> arrLeftOut;  ///< what the instrument does not have
  std::vector<std::string> arrKept;        ///< keys of what the instrument has and the other setup does not tell
};

/// `base` is the setup of the instrument that is to get the settings of `other`: what cannot be taken over stays as it
/// is there.
TakenOver TakeOver(const Setup &base, const Setup &other);

}  // namespace tarvik
