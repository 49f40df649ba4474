#pragma once

/// The types shared by all drivers that the simulated instruments are made of, under the names of this namespace.

#include "common/Instrument.h"
#include "common/Prbs.h"
#include "common/Session.h"

namespace tarvik::simulator {

using driver::Change;
using driver::ChannelLevels;
using driver::ChannelLimits;
using driver::ChannelTiming;
using driver::FastestEdge;
using driver::FillPrbs;
using driver::InputSettings;
using driver::InstrumentDescription;
using driver::JoinEntries;
using driver::ModeSettings;
using driver::PatternBits;
using driver::PatternRow;
using driver::Quantity;
using driver::Reject;
using driver::Rejected;
using driver::ScpiDataOutOfRange;
using driver::ScpiError;
using driver::ScpiHardwareMissing;
using driver::ScpiIllegalParameterValue;
using driver::ScpiMissingParameter;
using driver::ScpiQueueOverflow;
using driver::ScpiSelfTestFailed;
using driver::ScpiSettingsConflict;
using driver::Session;
using driver::Settings;
using driver::SlowerFixedEdge;
using driver::TriggerLevelSettings;

}  // namespace tarvik::simulator
