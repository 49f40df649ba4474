#pragma once

#include <string>
#include <string_view>

#include "settings/Setting.h"

namespace tarvik {

/// Significant digits of a quantity where it is shown, as the panel's fields have them.
inline constexpr Long ShownDigits = 4;

/// A quantity as the panel shows it, cut to lngDigits (4 to 10): "5.000 V", "50.00 ns". Without a prefix beyond pico
/// and tera, and for what is not finite, the shortest text that stands for the number.
std::string EngineeringText(Double dblValue, std::string_view strUnit, Long lngDigits = ShownDigits,
                            char chSeparator = '.');

/// The shortest text that gives the same number, with prefix and unit: "50ns", "2.5V". Beyond the prefixes, the number
/// alone: "1e-15".
std::string ExactText(Double dblValue, std::string_view strUnit);

/// The shortest text that gives the same number: "5e-08".
std::string ShortestText(Double dblValue);

/// What the setting has in this setup, for people: "50.00 ns", "On", "Triggered", "16 bits, FF00".
std::string ShownText(const Setting &setting, const Setup &setup, Long lngChannel, Long lngDigits = ShownDigits,
                      char chSeparator = '.');

/// The same for programs and command lines, exactly: "50ns". ReadEntryText takes it.
std::string EntryText(const Setting &setting, const Setup &setup, Long lngChannel);

/// The value that a typed text stands for: a number as the panel's fields take it, a word of the choice in any case or
/// its number, "on" or "off", the words of a pattern as EntryText writes them. Any other text is a RunTimeError whose
/// description says what would be right.
SettingValue ReadEntryText(const Setting &setting, const Setup &setup, Long lngChannel, const std::string &strText);

/// Why the instrument cannot have this value, such as "1 V is out of the range -20 mV to 20 mV". Empty when it can.
std::string Objection(const Setting &setting, const Setup &setup, Long lngChannel, const SettingValue &value);

/// Why the model of `instrument` cannot have this value although it has the setting: "the instrument does not have
/// Ttlt0". Empty when it can.
std::string LackObjection(const Setting &setting, const Setup &instrument, const SettingValue &value);

/// The words of a choice, as they are listed to the user: "Single or Double".
std::string WordsOf(const Setting &setting);

}  // namespace tarvik
