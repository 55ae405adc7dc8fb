#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/run/RunRecords.h"
#include "util/FileSystem.h"

namespace tvn2x {

/// A file that grows line by line.
class GrowingFile
{
public:
    virtual ~GrowingFile() = default;
    /// Adds bytes behind the last ones and brings them to the disk. After a fault none of them is in the file.
    virtual FileFault Append(std::string_view bytes) = 0;
};

/// The journal of a scan: a line is on the disk when Add returns. What the file cannot take is kept in memory and tried
/// again with each later line, so that a full disk that is cleared loses nothing.
class Journal
{
public:
    /// `tell` is called when the file begins to refuse lines (with the reason), and when it has taken all of them again
    /// (with FileFault::none).
    Journal(GrowingFile& file, std::function<void(FileFault)> tell) : file_(file), tell_(std::move(tell)) {}

    void Add(std::string_view lines);
    bool IsWhole() const { return kept_.empty(); }

private:
    GrowingFile& file_;
    std::function<void(FileFault)> tell_;
    std::string kept_;
};

/// One channel of one pass that is still to be measured.
struct ChannelTurn
{
    int32_t pass = 1;
    int32_t channel = 0;

    bool operator==(const ChannelTurn&) const = default;
};

/// Raises unusableInput, with what to do about it, where a stored run followed other setups than these, or in another
/// order, or other channels (these have 1..channels).
void RequireSameSetups(const FinishedRun& run, const std::wstring& journal, const std::vector<RunSetup>& given,
                       int32_t channels, const std::wstring& remedy);

/// What a run has left to do in its present pass, or in the next one where that is done. Empty when all passes are
/// done.
std::vector<ChannelTurn> TurnsLeft(const FinishedRun& run);

/// A time such as "90s", "15m", "2h", "1d" or "30" (seconds) in seconds. Raises unusableInput for anything else and
/// outside 1 s to 7 days.
double ReadInterval(std::wstring_view text);

}  // namespace tvn2x
