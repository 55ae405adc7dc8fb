#pragma once

#include <string>
#include <vector>

#include "host/judge/Judgement.h"
#include "host/judge/Limits.h"
#include "host/run/FinishedRun.h"

namespace tvn2x {

/// One row of a report: a channel and what was found.
struct ReportRow
{
    const ChannelResult& channel;
    const ChannelJudgement& judgement;
    std::optional<double> step;  ///< dB to the channel below
    bool isAwaited = false;      ///< not measured yet: it has its place in a picture, and no mark
};

/// A picture with the sentence that belongs below it (HTML); both empty where there is nothing to show.
struct ReportPlot
{
    std::string svg;
    std::string caption;
};

/// Rows are by ascending frequency. Lines show the limits where they hold, by the order of QAM of the channels there.
ReportPlot LevelPlot(const std::vector<ReportRow>& rows, const Limits* limits);
ReportPlot StepPlot(const std::vector<ReportRow>& rows, const Limits* limits);
ReportPlot MerPlot(const std::vector<ReportRow>& rows, const Limits* limits);
ReportPlot BerPlot(const std::vector<ReportRow>& rows, const Limits* limits);
/// What eats the MER of the channels that have the lowest.
ReportPlot BudgetPlot(const std::vector<ReportRow>& rows);

}  // namespace tvn2x
