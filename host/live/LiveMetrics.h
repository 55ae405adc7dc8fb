#pragma once

#include <string>

#include "host/live/LiveState.h"
#include "host/report/MetricsText.h"

namespace tvn2x {

/// The metrics of a run that goes on.
std::string LiveMetrics(const LiveState& state, MetricsFormat format);

}  // namespace tvn2x
