#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "settings/Setting.h"

namespace tarvik {

/// The setups that a user lays side by side.
enum class ComparedSide { Panel, Instrument, File };

/// A setting in which not all sides are the same.
struct ComparedRow {
  const Setting *setting;
  Long lngChannel;  ///< 0 for a setting of the instrument
  /// By side, as the panel shows values: "5.000 V". Empty for a side that is not there or does not have the setting.
  std::array<std::string, 3> arrTexts;
};

/// Up to three setups side by side: what differs, what of it the user looks for, and what is taken over to the panel.
class SetupComparison {
 public:
  void Set(ComparedSide eSide, std::optional<Setup> setup) { Side(eSide) = std::move(setup); }
  bool Has(ComparedSide eSide) const { return m_arrSides[static_cast<std::size_t>(eSide)].has_value(); }

  /// The differences in the order of the pages: of one page, or of all (eAllPages), and of those the ones with this
  /// text in caption, key or a value, whatever its case.
  std::vector<ComparedRow> Rows(TabNumEnum ePage, std::string_view strFilter, char chSeparator) const;
  /// The panel's setup with these settings of another side. Levels in another unit come with the unit and with the
  /// other level of their channel. Both sides have to be there.
  Setup Taken(ComparedSide eFrom, const std::vector<ComparedRow> &arrRows) const;

 private:
  std::optional<Setup> &Side(ComparedSide eSide) { return m_arrSides[static_cast<std::size_t>(eSide)]; }
  const Setup &SetupOf(ComparedSide eSide) const { return *m_arrSides[static_cast<std::size_t>(eSide)]; }
  std::optional<ComparedRow> RowOf(const Setting &setting, Long lngChannel, char chSeparator) const;

  std::array<std::optional<Setup>, 3> m_arrSides;
};

/// The caption of a page: "Timing".
std::string_view PageCaption(TabNumEnum ePage);
std::string_view SideCaption(ComparedSide eSide);

/// Rows as text for other programs: a line of captions, then one line for each, separated by tabs.
std::string ToText(const std::vector<ComparedRow> &arrRows);

}  // namespace tarvik
