#pragma once

#include <string>
#include <vector>

#include "host/judge/Judgement.h"
#include "host/judge/Limits.h"
#include "host/report/HtmlPlots.h"
#include "host/run/FinishedRun.h"

namespace tvn2x {

// What pages of a run are made of, whether it has ended or goes on. Class names are those of the style sheet; no part
// has a style of its own in it.

std::string ClassOf(Verdict verdict);

/// The heads of a grid's columns behind channel, verdict and pass: the order of QAM where the run mixes them, the run's
/// columns, and the worst margin where there are limits.
std::string GridHeads(const FinishedRun& run, bool hasLimits);
/// The cells of a row under these heads.
std::string GridCells(const FinishedRun& run, const ReportRow& row, bool hasLimits);

/// That readings were reckoned, or are of recorded signals: nobody takes them for those of a network. "" for a cable.
std::string OriginBand(const RunReceiver& receiver);

/// A table of what is known of a run beside its readings. `measured` says when it was measured, `passes` how often, ""
/// for what goes without saying. `limits` are those of the judgement, null for none.
std::string RunFacts(const FinishedRun& run, const RunJudgement& judgement, const Limits* limits,
                     const std::wstring& measured, const std::wstring& passes);

/// The pictures over frequency with what their marks mean; "" without a level, MER or BER. Rows in any order.
std::string FrequencyPlots(const std::vector<ReportRow>& rows, const Limits* limits);
std::string PlotFigure(const ReportPlot& plot);  ///< "" for an empty one

}  // namespace tvn2x
