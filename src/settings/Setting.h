#pragma once

#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "settings/Setup.h"
#include "support/modGlobals.h"

namespace tarvik {

/// The value of one setting: a switch, a whole number or the value of a choice, a quantity in its SI unit, a bit
/// stream.
using SettingValue = std::variant<Boolean, Long, Double, PatternStream>;

/// What the value of a setting is. The order is that of the alternatives of SettingValue, with Count and Choice both
/// a Long.
enum class SettingKind {
  Switch,    ///< "On" or "Off"
  Count,     ///< a whole number
  Choice,    ///< one of the words of the setting
  Quantity,  ///< a number with a unit
  Stream,    ///< bits of a pattern
};

/// A value of a choice as users write it.
struct SettingWord {
  std::string_view strWord;
  Long lngValue;
  Long eLack = 0;  ///< a model with one of these Functionality bits does not have the value
};

/// One row of the table of settings: what a setting is called, where it stands and how a Setup carries it. A setting
/// of the channels has a value for each channel; lngChannel is then 1 or 2, and without meaning otherwise.
struct Setting {
  using Reader = SettingValue (*)(const Setup &setup, Long lngChannel);
  /// The value has the alternative of the kind.
  using Writer = void (*)(Setup &setup, Long lngChannel, const SettingValue &value);
  using Condition = bool (*)(const Setup &setup, Long lngChannel);

  std::string_view strKey;      ///< without the channel: "timing.width"
  TabNumEnum ePage;             ///< where the panel shows it
  std::string_view strCaption;  ///< what the user sees: "Width"
  SettingKind eKind;
  bool fPerChannel;
  Reader Read;
  Writer Write;
  std::string_view strUnit = {};
  /// Levels are in volts or amperes, as the channel's output type tells.
  bool fLevelUnit = false;
  Double dblMin = -std::numeric_limits<Double>::infinity();
  Double dblMax = std::numeric_limits<Double>::infinity();
  std::span<const SettingWord> arrWords = {};
  /// The instrument class knows what to do with the words only; a driver cannot add values.
  bool fOnlyWords = false;
  Long eLack = 0;  ///< a model with one of these Functionality bits does not have the setting
  /// A model with this bit has the two values of its fixed leading edges only.
  Long eFixed = 0;
  bool fOfPattern2 = false;  ///< an instrument with one channel does not have it
  /// Says how others are written, as high and low or as offset and amplitude, and is no setting of the instrument.
  bool fNotation = false;
  Condition InUse = nullptr;   ///< null: a transfer sends it in every mode
  Condition Stored = nullptr;  ///< null: always kept as it is; otherwise it may be worked out from others

  /// Whether a transfer sends the setting in the modes of this setup.
  bool IsInUse(const Setup &setup, Long lngChannel) const { return !InUse || InUse(setup, lngChannel); }
  /// Whether the setup keeps just this number. One that it does not keep can be read and written all the same: the
  /// offset of levels that are kept as high and low.
  bool IsStored(const Setup &setup, Long lngChannel) const { return !Stored || Stored(setup, lngChannel); }
  /// Whether the setup's instrument has the setting (on this channel).
  bool IsHad(const Setup &setup, Long lngChannel) const;
  /// Whether the setup has the value that is sent where a mode leaves no choice: the instrument then keeps its own.
  bool KeepsItsOwn(const Setup &setup, Long lngChannel) const;
  std::string_view Unit(const Setup &setup, Long lngChannel) const;
  /// The word of a choice's value; empty for a value that has none.
  std::string_view WordOf(Long lngValue) const;
  /// The key with the channel, as it stands in files and on command lines: "timing.width[1]".
  std::string Key(Long lngChannel) const;
  /// "Width, channel 1", or the caption alone where the setting is one for the instrument.
  std::string Caption(Long lngChannel) const;
  /// The channels that the row stands for in a Setup: 1 and 2, or 0 alone.
  std::span<const Long> Channels() const;
};

/// The table, in the order of the pages and of the controls on them. All of them have different keys.
std::span<const Setting> Settings();

/// A setting on one of its channels. lngChannel is 0 where it is one for the instrument.
struct SettingPlace {
  const Setting *setting;
  Long lngChannel;

  std::string Key() const { return setting->Key(lngChannel); }
};

/// Finds what a key with its channel names. Empty for a key that is none, also where a channel is missing or too much.
std::optional<SettingPlace> FindSetting(std::string_view strKey);

/// Writes the value as a user means it: a setting that says how others are written has these written anew, so that they
/// mean what they meant. Levels of 2.5 V and 0 V become an offset of 1.25 V and an amplitude of 2.5 V.
void WriteAsMeant(const SettingPlace &place, Setup &setup, const SettingValue &value);

/// Calls action(setting, lngChannel) for every setting that the setup's instrument has and the setup keeps, in the
/// order of the table.
template <class Action>
void ForEachStored(const Setup &setup, Action &&action) {
  for (const Setting &setting : Settings())
    for (const Long lngChannel : setting.Channels())
      if (setting.IsHad(setup, lngChannel) && setting.IsStored(setup, lngChannel)) action(setting, lngChannel);
}

/// The same setup with each value in all places that stand for it, and the values of a fresh Setup for what the
/// instrument lacks. The records of two pages carry the output switches, for one.
Setup Canonical(const Setup &setup);

}  // namespace tarvik
