#pragma once

#include "automation/Ref.h"
#include "instrument/KolvenDriver.h"

/// A driver that does nothing: it hands out objects that are made once, answers constants and forgets what it is told.
tarvik::automation::Ref<tarvik::automation::IUnknown> MakeNothingDriver();

/// The calls that all its objects have got, reference counting left out.
long NothingDriverCalls();
