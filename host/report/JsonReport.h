#pragma once

#include <string>

#include "host/judge/Judgement.h"
#include "host/run/FinishedRun.h"

namespace tvn2x {

/// The whole result file, as docs/result.schema.json describes it. With a judgement each channel and, in the last line,
/// the run have their verdict.
std::string ResultText(const FinishedRun& run, const RunJudgement* judgement = nullptr);

}  // namespace tvn2x
