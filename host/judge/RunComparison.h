#pragma once

#include <map>
#include <string>
#include <vector>

#include "host/run/FinishedRun.h"

namespace tvn2x {

/// One thing that differs between two runs.
struct RunChange
{
    std::wstring channel;    ///< "K45 666 MHz"
    std::wstring parameter;  ///< "RF level", "outcome", "256-QAM channel"
    std::wstring before;
    std::wstring after;
    std::wstring change;  ///< "-15.1 dB", "" where it is no number
};

/// What is other between two runs.
struct RunComparison
{
    int32_t channels = 0;            ///< that both runs were to measure
    int32_t changed = 0;             ///< of all channels, those with a change
    std::vector<RunChange> changes;  ///< by frequency
};

/// What changed from one run to another, by centre frequency and order of QAM and the latest pass of each: channels
/// that are in one only, other locks or outcomes, and readings that came, went, or drifted by more than their limit (by
/// parameter, levels in dB, ratios in decades). A channel that either run did not measure is never unchanged.
RunComparison CompareRuns(const FinishedRun& before, const FinishedRun& after, const std::map<int32_t, double>& drift);

}  // namespace tvn2x
