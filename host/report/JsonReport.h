#pragma once

#include <string>

#include "host/judge/Judgement.h"
#include "host/run/FinishedRun.h"

namespace tvn2x {

/// The whole result file, as docs/result.schema.json describes it. With a judgement each channel and, in the last line,
/// the run have their verdict.
std::string ResultText(const FinishedRun& run, const RunJudgement* judgement = nullptr);

/// Single records of it, without the end of the line: a channel with its verdict, and the verdict on the run.
std::string ChannelRecord(const ChannelResult& channel, const ChannelJudgement& judgement);
std::string VerdictRecord(const FinishedRun& run, const RunJudgement& judgement);

}  // namespace tvn2x
