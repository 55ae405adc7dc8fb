#pragma once

#include <string>
#include <vector>

#include "host/report/HtmlPlots.h"

namespace tvn2x {

/// The constellation diagrams of the channels that failed, with what the receiver says of their reception (HTML). Empty
/// where the receiver tells neither.
std::string ConstellationSection(const FinishedRun& run, const std::vector<ReportRow>& rows);

}  // namespace tvn2x
