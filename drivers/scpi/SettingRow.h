#pragma once

#include <span>
#include <string_view>

#include "common/Settings.h"
#include "settings/Setting.h"

namespace tarvik::scpi {

/// How the driver keeps one setting. Keys, kinds and words are those of setup files; a setting the files do not have
/// borrows those of another one. Values pass as numbers: switches as 0 and 1, choices by their value in the contract.
struct SettingRow {
  std::string_view strKey;      ///< without the channel; the rows of the pattern memory have no reader
  std::string_view strLikeKey;  ///< the row of settings/Setting.h that tells kind, unit and words
  Double (*Read)(const driver::Settings &settings, Long lngChannel) = nullptr;
  void (*Write)(driver::Settings &settings, Long lngChannel, Double dblValue) = nullptr;
  Long lngPatternRow = 0;  ///< a PatternRowNumber, or 0

  const Setting &Like() const;
};

std::span<const SettingRow> SettingRows();
/// Null for a key that is none.
const SettingRow *FindRow(std::string_view strKey);

}  // namespace tarvik::scpi
