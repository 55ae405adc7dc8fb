#pragma once

#include <string>
#include <string_view>

#include "host/plan/ChannelPlan.h"

namespace tvn2x {

/// Whether a line, the first one of a plan that is no comment, is a row of a table.
bool IsTableRow(std::string_view line);

/// Reads a plan that is a table, as ReadChannelPlan says. Raises unusableInput where its heading names no frequency.
ChannelPlan ReadTablePlan(std::string_view content, const std::wstring& path, const PlanDefaults& defaults);

}  // namespace tvn2x
