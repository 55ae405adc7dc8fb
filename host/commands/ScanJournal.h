#pragma once

#include <optional>
#include <string>

#include "host/commands/Commands.h"
#include "host/commands/JournalFile.h"

namespace tvn2x {

/// The journal of a scan, or none.
class ScanJournal
{
public:
    /// A new one, or one to go on with behind its first `wholeBytes`. Raises what JournalFile raises.
    ScanJournal(const ScanOptions& options, size_t wholeBytes, Console& console);
    ScanJournal(const ScanJournal&) = delete;
    ScanJournal& operator=(const ScanJournal&) = delete;

    void Add(const std::string& line);
    bool IsWhole() const { return !journal_ || journal_->IsWhole(); }

private:
    std::optional<JournalFile> file_;
    std::optional<Journal> journal_;
};

}  // namespace tvn2x
