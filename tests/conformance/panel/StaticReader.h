#pragma once

#include <string>

#include "PanelUnderTest.h"

namespace tarvik::paneltest {

/// A design text or number of a control: Caption, ToolTip, Tag, TagX, Label, Min, Max, MinExponent, MaxExponent,
/// DefaultValue, BaseUnit, NumberFormat, Columns, Menu, Width, Height, BackColor, ForeColor.
Json ReadStatic(const PanelUnderTest &panel, const std::string &strControl, const std::string &strProperty);

}  // namespace tarvik::paneltest
