#pragma once

#include <string>
#include <string_view>

#include "host/run/FinishedRun.h"

namespace tvn2x {

/// A run as text: JSON lines in UTF-8, LF behind each, as docs/result.schema.json describes. A result file and a
/// journal have the same form; a journal has grown line by line, so it may lack the end and have a torn last line.
/// `further` are members that a report adds to a record, as JSON ("\"verdict\":...").
std::string RunLine(const FinishedRun& run);  ///< setup, receiver, columns and what was to be measured
std::string ChannelLine(const ChannelResult& channel, std::string_view further = {});
std::string ResumedLine(const std::wstring& time);
/// The end of a run, or of its first part where it was stopped.
std::string EndLine(const FinishedRun& run);

/// A run as it was read back.
struct StoredRun
{
    FinishedRun run;
    size_t wholeBytes = 0;  ///< what precedes a torn last line
    bool isTorn = false;
};

/// Reads a result file or a journal. Verdicts in it are passed over: they follow from limits that may be others now. A
/// last line without its end is torn, and counts as not written. Raises unusableInput for anything else that is no run,
/// naming file and line.
StoredRun ReadRun(std::string_view content, const std::wstring& path);

}  // namespace tvn2x
