#pragma once

#include <string>

#include "host/plan/ChannelPlan.h"

namespace tvn2x {

/// Where a command has its channels from: a plan, or without a file a raster of frequencies.
struct PlanSource
{
    std::wstring file;
    double from = 0;  ///< MHz
    double to = 0;
    double step = 8;
    PlanDefaults defaults;
};

/// The channels. Raises unusableInput with what to do about it.
ChannelPlan LoadPlan(const PlanSource& source);

/// What the source is called in notes: the file's name without its folder, or "306 to 858 MHz".
std::wstring NameOf(const PlanSource& source);

}  // namespace tvn2x
