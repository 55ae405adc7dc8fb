#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/plan/ChannelPlan.h"

namespace tvn2x {

/// What the fields of a channel mean, however a plan writes them down. Each function fills in the channel and returns
/// nothing, or the reason why the channel cannot be measured.

/// A frequency in MHz.
std::optional<std::wstring> TakeFrequency(double megahertz, PlanChannel& channel);

/// A symbol rate in MSymb/s, 0 where the plan says none.
std::optional<std::wstring> TakeSymbolRate(double symbolRate, const PlanDefaults& defaults, PlanChannel& channel);

/// An order of QAM: "QAM/64", "QAM64", "64QAM", "64-QAM" and "64" are the spellings that occur, in either case; "" and
/// "QAM/AUTO" leave it open.
std::optional<std::wstring> TakeModulation(std::string_view text, const PlanDefaults& defaults, PlanChannel& channel);

/// The text of a comment line behind its "#" signs where it says something, "" where it is a heading or a ruler.
std::wstring TitleOf(std::string_view line);

}  // namespace tvn2x
