#pragma once

#include <cstdint>
#include <string>

namespace tvn2x {

/// Where a scan is.
struct ScanProgress
{
    int32_t channels = 0;      ///< to be measured in this run
    int32_t done = 0;          ///< of them
    double step = 0;           ///< of the running channel, 0..1
    double elapsed = 0;        ///< seconds since the run began
    double elapsedAtDone = 0;  ///< the same when the last channel was done
    std::wstring channel;      ///< label of the running channel
    std::wstring status;
};

/// One line for a terminal: bar, count, channel, status and time left, at most width columns. The time left is shown
/// once a channel is done, because the channels before it are what it is reckoned from.
std::wstring ProgressLine(const ScanProgress& progress, int32_t width);

/// The same for an operation of a few steps: bar, step and status.
std::wstring StepLine(double step, double steps, const std::wstring& status, int32_t width);

}  // namespace tvn2x
