#include "bitpattern/PatternOperations.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "support/Boxes.h"
#include "support/Conversions.h"
#include "support/Host.h"
#include "support/modErrorLog.h"
#include "support/modGlobals.h"

namespace tarvik {

namespace {

constexpr Long MinClockPeriod = 2, MaxClockPeriod = MaxPatternLength;
constexpr Long MinPrbsBase = 7, MaxPrbsBase = 14;

/// The number of an entry, rounded; empty for an entry that is no number or overflows.
std::optional<Double> WholeNumber(const std::string &strEntry) {
  try {
    if (const auto dbl = ParseNumber(strEntry, TheHost().DecimalSeparator())) return std::nearbyint(*dbl);
  } catch (const RunTimeError &) {
    // Overflow: rejected like any other number out of bounds.
  }
  return std::nullopt;
}

/// Asks until the entry is valid; empty if the user cancels.
std::optional<Long> AskForNumber(const char *strTitle, Long lngMin, Long lngMax) {
  std::string strEntry;
  Boolean fOk;
  do {
    strEntry = AskForText("Enter the value for 'n': ", strTitle, "");
    PatternOperations::ValidateNumber(strEntry, lngMin, lngMax, fOk);
  } while (!fOk);
  if (strEntry.empty()) return std::nullopt;
  return CLng(strEntry);
}

}  // namespace

const std::array<PatternOperations::Operation, 9> &PatternOperations::Operations() {
  static constexpr std::array<Operation, 9> arrOperations{{
      {"Fill0", "Fill 0", &PatternOperations::Fill0},
      {"Fill1", "Fill1", &PatternOperations::Fill1},
      {"Invert", "Invert", &PatternOperations::Invert},
      {"SetFirstBitOnly", "Set First Bit Only", &PatternOperations::SetFirstBitOnly},
      {"SetLastBitOnly", "Set Last Bit Only", &PatternOperations::SetLastBitOnly},
      {"InsertBit", "Insert Bit", &PatternOperations::InsertBit},
      {"DeleteBit", "Delete Bit", &PatternOperations::DeleteBit},
      {"Clock/n", "Clock / n", &PatternOperations::AskClock},
      {"PRBS", "PRBS 2^n - 1", &PatternOperations::AskPrbs},
  }};
  return arrOperations;
}

void PatternOperations::RunByKey(const std::string &strKey, Long lngCode, Long lngStart) {
  const auto &arr = Operations();
  const auto operation = std::find_if(arr.begin(), arr.end(), [&](const Operation &op) { return op.strKey == strKey; });
  if (operation == arr.end())
    ShowStopMessage("Invalid case");
  else
    (this->*operation->Run)(lngCode, lngStart);
}

/// Runs the change on the stream of the code, or on the streams of channel 1 and channel 2.
template <class Change>
void PatternOperations::ForEachStream(Long lngCode, Change change) {
  if (lngCode == eBoth) {
    change(m_store.Chan1());
    change(m_store.Chan2());
  } else if (ByteArray *stream = m_store.StreamOf(lngCode)) {
    change(*stream);
  }
}

void PatternOperations::Fill0(Long lngCode, Long lngStart) {
  SetGenerator(lngCode, eGenFill, 0);
  ApplyGenerator(lngCode, lngStart, False);
}

void PatternOperations::Fill1(Long lngCode, Long lngStart) {
  SetGenerator(lngCode, eGenFill, 0);
  ApplyGenerator(lngCode, lngStart, True);
}

void PatternOperations::Invert(Long lngCode, Long lngStart) {
  ForEachStream(lngCode, [&](ByteArray &arr) { InvertRange(arr, RangeFrom(lngStart)); });
}

void PatternOperations::SetFirstBitOnly(Long lngCode, Long) { SetOneBitOnly(lngCode, eGenFirstBitOnly, 1); }

void PatternOperations::SetLastBitOnly(Long lngCode, Long) {
  SetOneBitOnly(lngCode, eGenLastBitOnly, m_store.Length());
}

void PatternOperations::SetOneBitOnly(Long lngCode, Long lngGenerator, Long lngAddress) {
  SetGenerator(lngCode, lngGenerator, 0);
  ForEachStream(lngCode, [&](ByteArray &arr) {
    FillRange(arr, RangeFrom(1), False);
    SetBit(arr, lngAddress);
  });
}

void PatternOperations::InsertBit(Long lngCode, Long lngStart) {
  ForEachStream(lngCode, [&](ByteArray &arr) { tarvik::InsertBit(arr, lngStart, m_store.Length()); });
}

void PatternOperations::DeleteBit(Long lngCode, Long lngStart) {
  ForEachStream(lngCode, [&](ByteArray &arr) { tarvik::DeleteBit(arr, lngStart, m_store.Length()); });
}

void PatternOperations::AskClock(Long lngCode, Long lngStart) {
  if (const auto lngPeriod = AskForNumber("Clock/n", MinClockPeriod, MaxClockPeriod))
    Clock(lngCode, lngStart, *lngPeriod);
}

void PatternOperations::AskPrbs(Long lngCode, Long lngStart) {
  if (const auto lngBase = AskForNumber("PRBS 2^n-1", MinPrbsBase, MaxPrbsBase)) Prbs(lngCode, lngStart, *lngBase);
}

void PatternOperations::Clock(Long lngCode, Long lngStart, Long lngPeriod) {
  SetGenerator(lngCode, eGenClock, lngPeriod);
  ForEachStream(lngCode, [&](ByteArray &arr) {
    FillRange(arr, RangeFrom(lngStart), False);
    SetClockBits(arr, lngStart, m_store.Length(), lngPeriod);
  });
}

void PatternOperations::Prbs(Long lngCode, Long lngStart, Long lngBase) {
  SetGenerator(lngCode, eGenPrbs, lngBase);
  ForEachStream(lngCode, [&](ByteArray &arr) { CalcPrbs(arr, lngStart, lngBase); });
}

void PatternOperations::CalcPrbs(ByteArray &arr, Long lngStart, Long lngBase) {
  InstrReference *instr = InstrOnFirstUse();
  if (!instr) return;
  // A driver may return an array of another size; the stream keeps its own.
  ByteArray arrWhole = arr;
  instr->CalcPRBS(lngStart, m_store.Length(), lngBase, arrWhole);
  const auto count = std::min(arr.Count(), arrWhole.Count());
  std::copy_n(arrWhole.Elements().begin(), count, arr.Elements().begin());
}

void PatternOperations::SetGenerator(Long lngCode, Long lngGenerator, Long lngParam) {
  const auto note = [&](RowInfo &row) {
    row.lngGenerator = lngGenerator;
    row.lngGenParam = lngParam;
  };
  if (lngCode == eBoth) {
    note(*m_store.RowOf(eChan1));
    note(*m_store.RowOf(eChan2));
  } else if (m_store.StreamOf(lngCode)) {
    note(*m_store.RowOf(lngCode));
  } else {
    ShowIllegalCase();
  }
}

void PatternOperations::ApplyGenerator(Long lngCode, Long lngStart, Boolean fFill) {
  if (lngCode == eBoth) {
    ApplyRowGenerator(*m_store.RowOf(eChan1), lngStart, fFill);
    ApplyRowGenerator(*m_store.RowOf(eChan2), lngStart, fFill);
  } else if (m_store.StreamOf(lngCode)) {
    ApplyRowGenerator(*m_store.RowOf(lngCode), lngStart, fFill);
  } else {
    ShowStopMessage("Illegal Case");
  }
}

void PatternOperations::ApplyRowGenerator(const RowInfo &row, Long lngStart, Boolean fFill) {
  ByteArray &arr = *m_store.StreamOf(row.lngChannel);
  switch (row.lngGenerator) {
    case eGenFill: FillRange(arr, RangeFrom(lngStart), fFill); break;
    case eGenFirstBitOnly: SetFirstBitOnly(row.lngChannel); break;
    case eGenLastBitOnly: SetLastBitOnly(row.lngChannel); break;
    case eGenClock: SetClockBits(arr, 1, m_store.Length(), row.lngGenParam); break;
    case eGenPrbs: CalcPrbs(arr, 1, row.lngGenParam); break;
    default: ShowStopMessage("Illegal Case");
  }
}

void PatternOperations::Grow(Long lngOldLength) {
  for (const Long lngCode : {eChan1, eChan2, eStrobe}) {
    Boolean fLastBit;
    GetBit(*m_store.StreamOf(lngCode), lngOldLength, fLastBit);
    ApplyGenerator(lngCode, lngOldLength + 1, fLastBit);
  }
}

void PatternOperations::ValidateNumber(const std::string &strEntry, Long lngMin, Long lngMax, Boolean &fOk) {
  const auto dblWhole = WholeNumber(strEntry);
  fOk = strEntry.empty() || (dblWhole && lngMin <= *dblWhole && *dblWhole <= lngMax);
  if (!fOk) ShowStopMessage("Please enter a number between " + CStr(lngMin) + " and " + CStr(lngMax));
}

}  // namespace tarvik
