#pragma once

#include <cstdint>
#include <string>

namespace tvn2x {

/// What became of a channel.
enum class ChannelOutcome
{
    unmeasured,
    synchronised,
    notSynchronised,  ///< a lock indicator is not "OK": never locked, or lost while measuring
    error
};

/// The result cells that tell the outcome. An indicator that the setup does not measure is "".
struct ChannelCells
{
    std::wstring status;
    std::wstring reference;  ///< "OK", "UNSYNC" or "INTERMITTENT"
    std::wstring carrier;
    std::wstring frame;
};

ChannelOutcome OutcomeOf(const ChannelCells& cells, bool measured);
std::wstring OutcomeText(ChannelOutcome outcome);

/// What a run brought, and what its process tells the caller.
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
    int ExitCode() const;       ///< 0 all synchronised, 1 some not, 3 stopped
};

}  // namespace tvn2x
