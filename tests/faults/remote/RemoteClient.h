#pragma once

#include <functional>
#include <string>

#include "automation/Ref.h"
#include "instrument/KolvenDriver.h"
#include "remote/Connection.h"
#include "support/RunTimeError.h"

namespace tarvik::remote {

using automation::Ref;
using kolven::IDriverRoot;
using kolven::IInstrument;

/// Shorter than what the panel uses, by the same means.
inline constexpr Patience Short{std::chrono::seconds(5), std::chrono::seconds(2), std::chrono::seconds(1)};

Ref<IDriverRoot> Root(const std::string &strUrl);
Ref<IInstrument> Instrument(const Ref<IDriverRoot> &root, const std::string &strName);
/// The instrument with a session of its own; raises RunTimeError where it does not open.
Ref<IInstrument> Opened(const std::string &strUrl, const std::string &strName = "VP-210");
Ref<IInstrument> Opened(const Ref<IDriverRoot> &root, const std::string &strName);
void Begin(const Ref<IInstrument> &instrument);
bool IsInTransaction(const Ref<IInstrument> &instrument);
/// The pulse width of channel 1 in seconds.
void SetWidth(const Ref<IInstrument> &instrument, Double dblWidth);
Double Width(const Ref<IInstrument> &instrument);

/// The failure of the statement; one that does not fail fails the test.
RunTimeError ErrorOf(const std::function<void()> &statement);
double SecondsOf(const std::function<void()> &statement);

}  // namespace tarvik::remote
