#pragma once

#include <string>

#include "host/judge/Judgement.h"
#include "host/run/FinishedRun.h"

namespace tvn2x {

/// A run as JUnit XML: a suite for each pass, a case for each channel. A missed limit or lock is a failure, an error of
/// the instrument and what was not measured an error; a warning is a passed case that says so in its output. What keeps
/// the run from passing and belongs to no channel is a suite of its own.
std::string JunitReport(const FinishedRun& run, const RunJudgement& judgement);

}  // namespace tvn2x
