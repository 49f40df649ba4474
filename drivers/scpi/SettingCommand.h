#pragma once

#include <optional>
#include <string>
#include <vector>

#include "scpi/Profile.h"

namespace tarvik::scpi {

/// One setting of a profile on one of its channels; the channel is 0 where it is one for the instrument.
struct ProfilePlace {
  const ProfileSetting *pSetting;
  Long lngChannel;
  /// What is sent in the place of the settings' own value, while other settings change.
  std::optional<Long> lngAside = std::nullopt;

  /// In the contract's unit; a choice by its value. Not for patterns.
  Double Value(const driver::Settings &settings) const;
  /// As setup files write it: "timing.width[1]".
  std::string Key() const;
  /// "Width, channel 1", for messages.
  std::string Caption() const;
  /// Whether the setting has this command in these settings: levels in amperes have others than those in volts.
  std::string SetCommand(const driver::Settings &settings) const;
  std::string Query(const driver::Settings &settings) const;
};

/// The places of a profile in the order of its settings: all that are read or set.
std::vector<ProfilePlace> PlacesOf(const Profile &profile);

/// Why the instrument cannot be sent the value that the settings have at the place; empty when it can.
std::string WhyNotSent(const ProfilePlace &place, const driver::Settings &settings);
/// Writes an answer of the instrument into the settings. The reason why not for an answer that makes no sense,
/// otherwise empty.
std::string TakeAnswer(const ProfilePlace &place, const std::string &strAnswer, driver::Settings &settings);

/// What has to be sent to an instrument that has the settings `from` so that it has `to`, in an order that passes
/// through no state that both ends would not allow: what gives room to others first, what takes it last. Each entry
/// belongs together: the unit of levels and both of them.
std::vector<std::vector<ProfilePlace>> StepsBetween(const Profile &profile, const driver::Settings &from,
                                                    const driver::Settings &to);
/// The commands of an entry, to stand in one message.
std::string CommandsOf(const std::vector<ProfilePlace> &arrPlaces, const driver::Settings &settings);

}  // namespace tarvik::scpi
