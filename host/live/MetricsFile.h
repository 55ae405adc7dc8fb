#pragma once

#include <functional>
#include <optional>
#include <string>

#include "host/live/LiveState.h"
#include "util/FileSystem.h"

namespace tvn2x {

/// The metrics of a run that goes on in a file that is replaced in one step: at the beginning, at the end of each pass
/// and of the run, and now and then within a pass.
class MetricsFile
{
public:
    /// `tell` is called when the file begins to refuse being written (with the reason), and when it is written again
    /// (with FileFault::none). What is refused is tried again with the next state.
    MetricsFile(FileSystem& files, std::wstring path, std::function<void(FileFault)> tell)
        : files_(files), path_(std::move(path)), tell_(std::move(tell))
    {
    }

    void Take(const LiveState& state);

private:
    bool IsDue(const LiveState& state) const;

    FileSystem& files_;
    std::wstring path_;
    std::function<void(FileFault)> tell_;
    std::optional<double> writtenAt_;  ///< SteadySeconds
    int32_t passes_ = 0;               ///< whole ones, when it was written
    LivePhase phase_ = LivePhase::preparing;
    FileFault fault_ = FileFault::none;
};

}  // namespace tvn2x
