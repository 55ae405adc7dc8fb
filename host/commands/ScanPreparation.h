#pragma once

#include <optional>

#include "host/commands/ScanLoop.h"
#include "host/judge/Limits.h"
#include "host/run/RunRecords.h"

namespace tvn2x {

/// A scan from its options to its last channel, for whoever shows or serves it.
class PreparedScan
{
public:
    /// Reads all files, loads each setup into a plug-in of its own and makes the journal; the receiver is not touched.
    /// `limits` and `live` may be null, and outlive the scan. Raises unusableInput for what cannot be scanned.
    PreparedScan(const ScanOptions& options, const Limits* limits, LiveRun* live, Console& console);

    /// Prepares the receiver and measures. False where a stop came before the first channel.
    bool Measure();

    const ScanRun& Scan() const { return scan_; }

private:
    const ScanOptions& options_;
    const std::vector<ScanFile> files_;
    std::optional<StoredRun> stored_;  ///< the journal that is gone on with; its run has been moved on
    ScanParts parts_;
    FinishedRun run_;
    ScanJournal journal_;
    StopRequest stop_;
    PartReceiver receiver_;
    ScanRun scan_;
};

}  // namespace tvn2x
