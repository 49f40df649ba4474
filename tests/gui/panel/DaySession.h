#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>
#include <tuple>

#include "DriverSettings.h"
#include "SimulatorSession.h"
#include "panel/TarvikGUI.h"

namespace tarvik::test {

/// An instrument of the rack with what it lacks.
struct Model {
  const char *strName;
  Long lngChannels;
  Long lngLacks;
  bool Has(Long lngBit) const { return (lngLacks & lngBit) == 0; }
};
void PrintTo(const Model &model, std::ostream *out);

/// Every instrument of the rack that opens.
inline constexpr Model Models[] = {{"VP-210", 2, 0},
                                   {"VB-200", 2, 1024 + 2048 + 4096},
                                   {"VP-110", 1, 4 + 64 + 128 + 256 + 512},
                                   {"VP-220", 2, 1024 + 2048 + 4096},
                                   {"VP-250F", 2, 4 + 16384}};

/// Where the rack stands during the day: beside the panel, or behind the server that this makes.
class RackPlace {
 public:
  virtual ~RackPlace() = default;
  /// The server's address; empty for this machine.
  virtual std::string Server() const { return {}; }
  /// The name of a model in the list of instruments.
  virtual std::string Listed(const std::string &strModel) const { return strModel; }
};
using RackPlaceMaker = std::unique_ptr<RackPlace> (*)();
inline std::unique_ptr<RackPlace> BesideThePanel() { return std::make_unique<RackPlace>(); }

/// A day's work on one instrument. Whoever has places for a rack instantiates it with them.
class DaySession : public testing::TestWithParam<std::tuple<Model, RackPlaceMaker>> {
 public:
  /// The instrument's name as it may stand in the name of a test.
  static std::string NameOf(const testing::TestParamInfo<ParamType> &test);

 protected:
  const Model &Instrument() const { return std::get<Model>(GetParam()); }
  std::string Listed() const { return place->Listed(Instrument().strName); }
  const PanelUser &User() const { return *session.user; }
  SettingsByName Held() const { return ReadDriver(session.Instrument(Listed())); }

  /// Each setting that the pages show is the one that the instrument holds.
  void ExpectPanelAgrees(const char *strWhen);
  void ExpectHeld(const char *strName, Double dblValue);
  void ExpectNoBox();
  void ExpectAll(TabStates eState);
  /// The panel got its driver from the place that it was told.
  void ExpectConnected();

  // Each page gets at least three changes.

  void EditMode(bool fAgain);
  void EditTiming(bool fAgain);
  void EditLevels(bool fAgain);
  void EditPattern(bool fAgain);
  void EditLimits(bool fAgain);
  void EditTrigLev(bool fAgain);
  void EditConfig(bool fAgain);
  void EditEverything(bool fAgain);
  void UseOptions();

  const std::unique_ptr<RackPlace> place = std::get<RackPlaceMaker>(GetParam())();
  SimulatorSession session{{{"WorkWithBoxes", "1"}}, TestRack, place->Server()};
};

}  // namespace tarvik::test
