#pragma once

#include <cstdint>
#include <string>

namespace tvn2x {

/// What became of a channel.
enum class ChannelOutcome
{
    unmeasured,
    synchronised,
    notSynchronised,  ///< a lock indicator is not "OK": never locked, lost while measuring, or not looked at
    error
};

std::wstring OutcomeText(ChannelOutcome outcome);

/// What a pass brought.
struct ScanSummary
{
    int32_t channels = 0;  ///< chosen for the run
    int32_t synchronised = 0;
    int32_t notSynchronised = 0;
    int32_t errors = 0;
    bool stopped = false;
    double seconds = 0;

    void Count(ChannelOutcome outcome);
    std::wstring Text() const;  ///< one line without its end
};

}  // namespace tvn2x
