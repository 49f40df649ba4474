#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "scpi/SettingRow.h"
#include "scpi/Talk.h"

namespace tarvik::scpi {

/// A value of a choice and how the instrument writes it. The first spelling is sent, all are understood.
struct ProfileWord {
  Long lngValue;
  std::vector<std::string> arrSpellings;
};

/// Where a setting stands in the order of dependent settings.
struct ProfileOrder {
  enum class Room { Up, Down, Words };

  std::size_t stage = 0;  ///< 0 is outermost: what gives room goes first and what takes it last
  Room eRoom = Room::Up;
  std::vector<Long> arrWords;  ///< by the room they leave, least first; a value that is not listed leaves the most
  /// A value that stands in the way of every change of these settings is put aside meanwhile: while one of them
  /// changes, a setting that leaves less room than this value has this one.
  std::optional<Long> lngAside;
  std::vector<const SettingRow *> arrWhile;
};

/// How a model sets and reads one setting.
struct ProfileSetting {
  const SettingRow *pRow = nullptr;
  /// Headers with "{channel}", by OutputType: the levels of a channel in volts and in amperes have different ones.
  std::array<std::string, 2> arrSet, arrQuery;
  Double dblUnit = 1;  ///< how much of the contract's unit is one of the instrument's
  std::vector<ProfileWord> arrWords;
  std::optional<Double> dblMin, dblMax;  ///< in the contract's unit
  std::optional<ProfileOrder> order;

  bool IsLevel() const { return pRow->Like().fLevelUnit; }
  bool IsRead() const { return !arrQuery[0].empty(); }
  bool IsSet() const { return !arrSet[0].empty(); }
};

/// What instruments of one model understand.
struct Profile {
  std::string strName, strDescription;
  Long lngChannels = 2;
  Long lngMask = 0;  ///< Functionality bits
  MessageLimits limits;
  std::string strErrorQuery, strWarningQuery;
  std::string strReset, strSelfTest, strCalibrate, strOptions;  ///< empty for what the model lacks
  Long lngLongest = 60;                                         ///< seconds that self test and calibration may take
  /// Which instruments it suits: by a part of the identity, or by a query that they answer. None: every one.
  std::vector<std::string> arrSuitsIdentity;
  std::string strSuitsQuery;
  std::vector<ProfileSetting> arrSettings;  ///< in the order of SettingRows

  const ProfileSetting *Find(std::string_view strKey) const;
};

}  // namespace tarvik::scpi
