#include "host/report/HtmlReport.h"

#include <algorithm>
#include <map>

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/judge/VerdictText.h"
#include "host/report/ConstellationPlot.h"
#include "host/report/HtmlParts.h"
#include "host/report/HtmlStyle.h"
#include "host/report/Markup.h"
#include "text/Duration.h"

namespace tvn2x {
namespace {

/// The worst measurement of each channel.
std::vector<size_t> Worst(const FinishedRun& run, const RunJudgement& judgement)
{
    std::map<int32_t, size_t> worst;
    for (const size_t position : run.Latest()) {
        worst[run.channels[position].number] = position;
    }
    for (size_t i = 0; i < run.channels.size(); ++i) {
        size_t& chosen = worst[run.channels[i].number];
        if (run.channels[i].outcome != ChannelOutcome::unmeasured &&
            judgement.channels[i].IsWorseThan(judgement.channels[chosen])) {
            chosen = i;
        }
    }
    std::vector<size_t> positions;
    std::ranges::transform(worst, std::back_inserter(positions), [](const auto& entry) { return entry.second; });
    return positions;
}

std::wstring PassesText(const FinishedRun& run)
{
    if (run.passes == 1) {
        return L"";
    }
    const int32_t last = run.channels.empty() ? 0 : run.channels.back().pass;
    return fmt::format(L"{}{}; of each channel the worst measurement is shown", last,
                       run.passes == 0 ? L"" : fmt::format(L" of {}", run.passes));
}

std::wstring MeasuredText(const FinishedRun& run)
{
    return LocalText(run.began) + (run.ended.empty() ? L", never ended" : L" to " + LocalText(run.ended)) + L", " +
           DurationText(run.Seconds()) + L" min of measuring" + (run.stopped ? L", stopped" : L"");
}

std::string GridRow(const FinishedRun& run, const ReportRow& row, bool hasLimits)
{
    return fmt::format("<tr><td class=\"number\">{}</td><td class=\"{}\">{}</td>", row.channel.number,
                       ClassOf(row.judgement.verdict), Escape(VerdictName(row.judgement.verdict))) +
           (run.passes != 1 ? fmt::format("<td class=\"number\">{}</td>", row.channel.pass) : "") +
           GridCells(run, row, hasLimits) + "</tr>\n";
}

std::string FindingsTable(const FinishedRun& run, const std::vector<ReportRow>& rows)
{
    std::string body;
    for (const ReportRow& row : rows) {
        if (row.judgement.verdict != Verdict::pass) {
            body += fmt::format("<tr><td class=\"name\">{}</td><td class=\"{}\">{}</td><td>{}</td></tr>\n",
                                Escape(run.NameOf(row.channel)), ClassOf(row.judgement.verdict),
                                Escape(VerdictName(row.judgement.verdict)), Escape(row.judgement.reason));
        }
    }
    if (body.empty()) {
        return "";
    }
    return "<section>\n<h2>What to look at</h2>\n<table><thead><tr><th scope=\"col\">Channel</th><th "
           "scope=\"col\">Verdict</th><th scope=\"col\">Why</th></tr></thead><tbody>\n" +
           body + "</tbody></table>\n</section>\n";
}

std::string GridTable(const FinishedRun& run, bool hasLimits, const std::vector<ReportRow>& rows)
{
    std::string text =
        "<section class=\"wide\">\n<h2>All readings</h2>\n<table><thead><tr><th scope=\"col\" class=\"number\">No.</th>"
        "<th scope=\"col\">Verdict</th>";
    text += run.passes != 1 ? "<th scope=\"col\" class=\"number\">Pass</th>" : "";
    text += GridHeads(run, hasLimits) + "</tr></thead><tbody>\n";
    for (const ReportRow& row : rows) {
        text += GridRow(run, row, hasLimits);
    }
    return text + "</tbody></table>\n</section>\n";
}

}  // namespace

std::string HtmlReport(const FinishedRun& run, const RunJudgement& judgement, const Limits* limits)
{
    const auto steps = LevelSteps(run);
    std::vector<ReportRow> rows;
    for (const size_t position : Worst(run, judgement)) {
        rows.push_back({run.channels[position], judgement.channels[position], steps[position]});
    }
    const std::wstring title = L"Cable network scan: " + SetupNames(run);
    std::string text = fmt::format(
        "<!DOCTYPE html>\n<html xmlns=\"http://www.w3.org/1999/xhtml\" lang=\"en\">\n<head>\n<meta "
        "charset=\"utf-8\"/>\n"
        "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"/>\n"
        "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src 'unsafe-inline'\"/>\n"
        "<title>{0}</title>\n<style>{1}</style>\n</head>\n<body>\n<h1>{0}</h1>\n{4}<p class=\"verdict {2}\">{3}</p>\n",
        Escape(title), htmlStyle, ClassOf(judgement.verdict), Escape(VerdictSentence(run, judgement)),
        OriginBand(run.receiver));
    text += RunFacts(run, judgement, limits, MeasuredText(run), PassesText(run));
    text += FindingsTable(run, rows);
    const std::string plots = rows.empty() ? "" : FrequencyPlots(rows, limits);
    text += plots.empty() ? "" : "<section class=\"frequency\">\n<h2>Over frequency</h2>\n" + plots + "</section>\n";
    text += ConstellationSection(run, rows);
    text += GridTable(run, judgement.hasLimits, rows);
    return text + "</body>\n</html>\n";
}

}  // namespace tvn2x
