#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "scpi/simulator/Device.h"
#include "scpi/simulator/Parameter.h"

namespace tarvik::scpisim {

using Values = std::vector<Value>;

inline Double NumberIn(const Values &values, std::size_t lngAt = 0) { return std::get<Double>(values.at(lngAt)); }
inline Long WholeIn(const Values &values, std::size_t lngAt = 0) { return static_cast<Long>(NumberIn(values, lngAt)); }
inline const std::string &TextIn(const Values &values, std::size_t lngAt) {
  return std::get<std::string>(values.at(lngAt));
}

/// A command that is no setting, or its query, while it is carried out.
struct Call {
  Device &device;
  FaultPlan::Client client;
  const std::vector<Long> &arrSuffixes;
  const Values &values;
  /// Whether answers to earlier units of the message wait already.
  bool fMessageAvailable;
};

/// Where a setting is: the numeric suffix of its header, and the model, of which some have less than others.
struct Place {
  Long lngNumber;
  const simulator::InstrumentDescription &description;
};

/// One row of the command table. A setting has read, and write unless it can only be asked for; everything else has
/// act, ask or both. Settings that follow one another in a message are taken together.
struct Command {
  using Read = std::function<Values(const simulator::Settings &, const Place &)>;
  using Write = std::function<void(simulator::Settings &, const Place &, const Values &)>;
  using Act = std::function<void(Call &)>;
  using Ask = std::function<std::string(Call &)>;

  bool fCommon = false;  ///< begins with an asterisk
  HeaderPattern header;
  std::vector<Parameter> arrParameters = {};
  Read read = {};
  Write write = {};
  Act act = {};
  Ask ask = {};
  /// What DEF stands for where that is not what a reset sets.
  std::optional<Double> dblDefault = {};
  /// The answer has no end that the grammar could tell: nothing can be asked behind it in the same message.
  bool fIndefiniteAnswer = false;

  bool IsSetting() const { return static_cast<bool>(read); }
};

/// A setting with one parameter. Get and Set are handed the settings and the channel.
template <class Get, class Set>
Command Setting(const std::string &strHeader, Parameter parameter, Get get, Set set) {
  return {.header = HeaderPattern(strHeader),
          .arrParameters = {std::move(parameter)},
          .read = [get](const simulator::Settings &settings, const Place &place) -> Values {
            return {static_cast<Double>(get(settings, place.lngNumber))};
          },
          .write = [set](simulator::Settings &settings, const Place &place,
                         const Values &values) { set(settings, place.lngNumber, NumberIn(values)); }};
}

/// A setting that is a member of the settings: Member hands out a reference to it, for constant settings too.
template <class Member>
Command Plain(const std::string &strHeader, Parameter parameter, Member member) {
  return Setting(
      strHeader, std::move(parameter),
      [member](const simulator::Settings &settings, Long lngChannel) { return member(settings, lngChannel); },
      [member](simulator::Settings &settings, Long lngChannel, Double dblValue) {
        auto &target = member(settings, lngChannel);
        target = static_cast<std::remove_reference_t<decltype(target)>>(dblValue);
      });
}

inline Command Action(const std::string &strHeader, std::vector<Parameter> arrParameters, Command::Act act) {
  return {.fCommon = strHeader.starts_with('*'),
          .header = HeaderPattern(strHeader),
          .arrParameters = std::move(arrParameters),
          .act = std::move(act)};
}

inline Command Question(const std::string &strHeader, Command::Ask ask) {
  return {.fCommon = strHeader.starts_with('*'), .header = HeaderPattern(strHeader), .ask = std::move(ask)};
}

/// A command with its query.
inline Command Both(const std::string &strHeader, std::vector<Parameter> arrParameters, Command::Act act,
                    Command::Ask ask) {
  Command command = Action(strHeader, std::move(arrParameters), std::move(act));
  command.ask = std::move(ask);
  return command;
}

}  // namespace tarvik::scpisim
