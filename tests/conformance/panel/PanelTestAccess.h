#pragma once

#include <functional>
#include <string>

#include "Recorder.h"
#include "Words.h"
#include "panel/PanelState.h"
#include "panel/TarvikGUI.h"

namespace tarvik {

/// The way of the tests into panel and pages. It forwards and does nothing of its own.
class PanelTestAccess {
 public:
  using Json = paneltest::Json;

  static const PanelState &State(const TarvikGUI &panel) { return panel.m_state; }
  /// The last presets of the levels page, by channel.
  static Json PresetsHigh(const TarvikGUI &panel);
  static Json PresetsLow(const TarvikGUI &panel);

  static void Terminate(TarvikGUI &panel) { panel.UserControl_Terminate(); }

  /// Calls a procedure by its name with the arguments that follow it in the line; null where it has no result.
  static Json Invoke(TarvikGUI &panel, const std::string &strProcedure, paneltest::Words &arguments);

 private:
  using Procedure = Json (*)(TarvikGUI &, paneltest::Words &);
  struct NamedProcedure {
    const char *strName;
    Procedure procedure;
  };
  static const std::vector<NamedProcedure> &PanelProcedures();
  static const std::vector<NamedProcedure> &PageProcedures();
  static const std::vector<NamedProcedure> &Transfers();
};

}  // namespace tarvik
