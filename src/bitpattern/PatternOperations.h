#pragma once

#include <array>
#include <string>

#include "bitpattern/PatternStore.h"

namespace tarvik {

/// What the menus of the row buttons do to a whole stretch of a pattern. A channel code of 1, 2 or 8 means one
/// stream, 4 both channels. Where an operation has a start it works from that address to the end.
class PatternOperations {
 public:
  explicit PatternOperations(PatternStore &objStore) : m_store(objStore) {}

  /// An entry of the menus.
  struct Operation {
    const char *strKey;
    const char *strCaption;
    void (PatternOperations::*Run)(Long lngCode, Long lngStart);
  };
  static const std::array<Operation, 9> &Operations();

  /// Runs the operation of a menu key; an unknown key shows "Invalid case".
  void RunByKey(const std::string &strKey, Long lngCode, Long lngStart);

  void Fill0(Long lngCode, Long lngStart);
  void Fill1(Long lngCode, Long lngStart);
  void Invert(Long lngCode, Long lngStart);
  /// All addresses 0, the first or the last one 1.
  void SetFirstBitOnly(Long lngCode, Long lngStart = 1);
  void SetLastBitOnly(Long lngCode, Long lngStart = 1);
  void InsertBit(Long lngCode, Long lngStart);
  void DeleteBit(Long lngCode, Long lngStart);
  /// These two ask the user for n first; a cancelled question ends them without change.
  void AskClock(Long lngCode, Long lngStart);
  void AskPrbs(Long lngCode, Long lngStart);

  /// Clock of period n: its first n div 2 addresses are 1. The phase counts from address 1.
  void Clock(Long lngCode, Long lngStart, Long lngPeriod);
  /// Sequence of period 2^n - 1 from the instrument's driver; without an open instrument nothing changes.
  void Prbs(Long lngCode, Long lngStart, Long lngBase);

  /// Notes what filled the row; both rows for code 4. An unknown code shows "Illegal case".
  void SetGenerator(Long lngCode, Long lngGenerator, Long lngParam);
  /// Runs the generator of each row concerned again; fFill is the level where that is a fill. An unknown
  /// generator or code shows "Illegal Case".
  void ApplyGenerator(Long lngCode, Long lngStart, Boolean fFill);
  /// Gives the addresses behind lngOldLength their bits after the pattern has grown.
  void Grow(Long lngOldLength);

  /// Whether the entry is empty or a number whose rounded value lies between the bounds; otherwise a stop box
  /// tells the bounds.
  static void ValidateNumber(const std::string &strEntry, Long lngMin, Long lngMax, Boolean &fOk);

 private:
  template <class Change>
  void ForEachStream(Long lngCode, Change change);
  PatternRange RangeFrom(Long lngStart) const { return ByteRange(lngStart, m_store.BytesUsed()); }
  void SetOneBitOnly(Long lngCode, Long lngGenerator, Long lngAddress);
  void ApplyRowGenerator(const RowInfo &row, Long lngStart, Boolean fFill);
  void CalcPrbs(ByteArray &arr, Long lngStart, Long lngBase);

  PatternStore &m_store;
};

}  // namespace tarvik
