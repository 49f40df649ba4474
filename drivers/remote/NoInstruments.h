#pragma once

#include "automation/ClassFactory.h"

namespace tarvik::remote {

/// The driver of a machine that has no instruments of its own. Its creation hands back nothing without a failure, at
/// which the panel asks for a server.
class NoInstruments final : public automation::ClassFactory {
  automation::Status Make(const automation::Guid &, void **) override { return automation::StatusOk; }
};

}  // namespace tarvik::remote
