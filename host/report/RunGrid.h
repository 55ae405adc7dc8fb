#pragma once

#include <cstdint>
#include <string>

#include "host/judge/RunComparison.h"
#include "host/run/FinishedRun.h"
#include "host/terminal/TextGrid.h"

namespace tvn2x {

/// The text of a result cell, "" where there is none.
std::wstring CellText(const ChannelResult& channel, int32_t parameter);

/// The result grid of one pass for a terminal, the columns up to the first measured one repeated where it is folded.
/// Where there are several orders of QAM they have a column.
TextGrid RunGrid(const FinishedRun& run, int32_t pass);

/// The changes from one run to another.
TextGrid ComparisonGrid(const RunComparison& comparison);

}  // namespace tvn2x
