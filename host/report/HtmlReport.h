#pragma once

#include <string>

#include "host/judge/Judgement.h"
#include "host/judge/Limits.h"
#include "host/run/FinishedRun.h"

namespace tvn2x {

/// A run as one page that needs nothing else: no script, no style sheet, picture or font of another file. It can be
/// read without its styles, follows the reader's light or dark scheme, prints on A4, and is well-formed XML.
///
/// Of a channel that was measured several times the worst measurement is shown. `limits` are those of the judgement,
/// null for none.
std::string HtmlReport(const FinishedRun& run, const RunJudgement& judgement, const Limits* limits);

}  // namespace tvn2x
