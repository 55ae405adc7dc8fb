#include "host/report/HtmlReport.h"

#include <algorithm>
#include <map>
#include <set>

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/judge/VerdictText.h"
#include "host/report/Chart.h"
#include "host/report/ConstellationPlot.h"
#include "host/report/HtmlPlots.h"
#include "host/report/HtmlStyle.h"
#include "host/report/Markup.h"
#include "host/report/RunGrid.h"
#include "setup/catalogue/Settings.h"
#include "text/Duration.h"

namespace tvn2x {
namespace {

std::string ClassOf(Verdict verdict)
{
    return verdict == Verdict::notMeasured ? "unmeasured" : Escape(VerdictName(verdict));
}

/// The worst measurement of each channel.
std::vector<size_t> Worst(const FinishedRun& run, const RunJudgement& judgement)
{
    std::map<int32_t, size_t> worst;
    for (const size_t position : run.Latest()) {
        worst[run.channels[position].number] = position;
    }
    const auto isWorse = [&](size_t left, size_t right) {
        const ChannelJudgement& a = judgement.channels[left];
        const ChannelJudgement& b = judgement.channels[right];
        if (a.verdict != b.verdict) {
            return a.verdict > b.verdict;
        }
        return a.Worst() && b.Worst() && a.Worst()->rank < b.Worst()->rank;
    };
    for (size_t i = 0; i < run.channels.size(); ++i) {
        size_t& chosen = worst[run.channels[i].number];
        if (run.channels[i].outcome != ChannelOutcome::unmeasured && isWorse(i, chosen)) {
            chosen = i;
        }
    }
    std::vector<size_t> positions;
    std::ranges::transform(worst, std::back_inserter(positions), [](const auto& entry) { return entry.second; });
    return positions;
}

std::string Fact(const char* name, const std::wstring& value)
{
    return value.empty() ? "" : fmt::format("<tr><th scope=\"row\">{}</th><td>{}</td></tr>\n", name, Escape(value));
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

/// What the limits call themselves, and their file.
std::wstring LimitsName(const RunJudgement& judgement, const Limits* limits)
{
    if (!judgement.hasLimits) {
        return L"none: a channel passes when all locks hold";
    }
    std::wstring text;
    for (const std::wstring& part :
         {limits ? limits->name : L"", limits ? limits->date : L"",
          judgement.limits.substr(judgement.limits.find_last_of(L"\\/") + 1), L"SHA-256 " + judgement.limitsSha256}) {
        text += part.empty() ? L"" : (text.empty() ? L"" : L", ") + part;
    }
    return text;
}

std::string ProtocolFacts(const RunProtocol& protocol)
{
    return Fact("Site", protocol.site) + Fact("Outlet", protocol.outlet) + Fact("Measured by", protocol.by) +
           Fact("Order", protocol.order) + Fact("Remark", protocol.remark);
}

std::string SetupFacts(const RunSetup& setup)
{
    const SetupSettings& settings = setup.settings;
    return Fact("Setup", setup.FileName() + L", SHA-256 " + setup.sha256) +
           Fact("Settings",
                fmt::format(L"{}-QAM, roll-off {} %, input {}, SAW filter {}, reference {}, BER over {} · 10^7 bits, "
                            L"settling up to {} s",
                            settings.orderOfQam, settings.rollOffFactor,
                            ChoiceWords(setting::inputRoute, settings.inputRoute),
                            settings.sawBandwidth == 0 ? L"off" : fmt::format(L"{} MHz", settings.sawBandwidth),
                            settings.referenceSource == 1 ? L"external" : L"internal", settings.berSamples,
                            settings.maxSettlingTime));
}

std::string Facts(const FinishedRun& run, const RunJudgement& judgement, const Limits* limits)
{
    std::wstring resumed;
    for (const std::wstring& time : run.resumed) {
        resumed += (resumed.empty() ? L"" : L", ") + LocalText(time);
    }
    std::string text = "<table class=\"facts\"><tbody>\n" + ProtocolFacts(run.protocol);
    text += Fact("Measured",
                 LocalText(run.began) + (run.ended.empty() ? L", never ended" : L" to " + LocalText(run.ended)) +
                     L", " + DurationText(run.Seconds()) + L" min of measuring" + (run.stopped ? L", stopped" : L""));
    text += Fact("Passes", PassesText(run));
    text += Fact("Resumed", resumed);
    std::set<std::wstring> told;  // those of one network mostly have the same notes
    for (const RunSetup& setup : run.setups) {
        text += SetupFacts(setup);
        text += told.insert(setup.notes).second ? Fact("Notes", setup.notes) : "";
    }
    text +=
        Fact("Receiver", run.receiver.identity + (run.receiver.hardware.empty() ? L"" : L", ") + run.receiver.hardware);
    text += Fact("Serial number", run.receiver.serialNumber);
    text += Fact("Firmware", run.receiver.firmware);
    text += Fact("Options", run.receiver.options);
    text += Fact("Limits", LimitsName(judgement, limits));
    text += Fact("Program", run.program);
    return text + "</tbody></table>\n";
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

std::string MarginCell(const ChannelJudgement& judgement)
{
    const Finding* worst = judgement.Worst();
    if (!worst || !worst->margin) {
        return "<td></td>";
    }
    return fmt::format("<td>{} {}</td>", Escape(FindReadingKind(worst->parameter)->title), Escape(MarginText(*worst)));
}

/// How the cells of a column are set, its heading among them.
std::string ClassOf(const RunColumn& column)
{
    const bool isText =
        column.parameter <= MP_TIMESTAMP && column.parameter != MP_FREQUENCY && column.parameter != MP_SYMBOLRATE;
    const ReadingKind* kind = FindReadingKind(column.parameter);
    return column.parameter == MP_USERFIELD ? "label" : isText || (kind && kind->isLock) ? "" : "number";
}

std::string GridRow(const FinishedRun& run, const RunJudgement& judgement, const ReportRow& row, bool showsOrder)
{
    std::string text = fmt::format("<tr><td class=\"number\">{}</td><td class=\"{}\">{}</td>", row.channel.number,
                                   ClassOf(row.judgement.verdict), Escape(VerdictName(row.judgement.verdict)));
    if (run.passes != 1) {
        text += fmt::format("<td class=\"number\">{}</td>", row.channel.pass);
    }
    if (showsOrder) {
        text += fmt::format("<td class=\"number\">{}</td>", row.channel.orderOfQam);
    }
    for (const RunColumn& column : run.columns) {
        const Finding* finding = row.judgement.Find(column.parameter);
        const ReadingKind* kind = FindReadingKind(column.parameter);
        std::string classes = ClassOf(column);
        if (finding) {
            classes += " " + ClassOf(finding->verdict);
        } else if (kind && kind->isLock && row.channel.outcome == ChannelOutcome::notSynchronised &&
                   CellText(row.channel, column.parameter) != L"OK") {
            classes = "fail";
        }
        const bool isTime = column.parameter == MP_TIMESTAMP;
        text += fmt::format("<td{}>{}</td>", classes.empty() ? "" : " class=\"" + classes + "\"",
                            Escape(isTime ? LocalText(row.channel.began) : CellText(row.channel, column.parameter)));
    }
    return text + (judgement.hasLimits ? MarginCell(row.judgement) : "") + "</tr>\n";
}

std::string GridTable(const FinishedRun& run, const RunJudgement& judgement, const std::vector<ReportRow>& rows)
{
    std::string text =
        "<section class=\"wide\">\n<h2>All readings</h2>\n<table><thead><tr><th scope=\"col\" class=\"number\">No.</th>"
        "<th scope=\"col\">Verdict</th>";
    if (run.passes != 1) {
        text += "<th scope=\"col\" class=\"number\">Pass</th>";
    }
    const bool showsOrder = run.MixesOrders();
    if (showsOrder) {
        text += "<th scope=\"col\" class=\"number\">QAM</th>";
    }
    for (const RunColumn& column : run.columns) {
        text += fmt::format(R"(<th scope="col" class="{}">{}</th>)", ClassOf(column), Escape(column.caption));
    }
    text += judgement.hasLimits ? "<th scope=\"col\">Worst Margin</th>" : "";
    text += "</tr></thead><tbody>\n";
    for (const ReportRow& row : rows) {
        text += GridRow(run, judgement, row, showsOrder);
    }
    return text + "</tbody></table>\n</section>\n";
}

std::string Legend()
{
    std::string text = "<p>";
    for (const Verdict verdict : {Verdict::pass, Verdict::warning, Verdict::fail, Verdict::notMeasured}) {
        text += R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 14 14" width="14" height="14" )"
                R"(style="display:inline;width:1em;height:1em" aria-hidden="true">)" +
                Mark(7, 7, verdict) + "</svg> " +
                (verdict == Verdict::notMeasured ? "no value" : Escape(VerdictName(verdict))) + " &#160; ";
    }
    return text + "</p>\n";
}

/// Nobody takes readings that were reckoned, or of another day, for those of a network.
std::string OriginBand(const RunReceiver& receiver)
{
    const std::wstring origin = OriginText(receiver);
    return origin.empty() ? "" : "<p class=\"band\">" + Escape(origin) + "</p>\n";
}

std::string Plots(const std::vector<ReportRow>& rows, const Limits* limits)
{
    std::vector<const ReportRow*> order;
    order.reserve(rows.size());
    for (const ReportRow& row : rows) {
        order.push_back(&row);
    }
    std::ranges::stable_sort(order, {}, [](const ReportRow* row) { return row->channel.frequency; });
    std::vector<ReportRow> byFrequency;
    byFrequency.reserve(order.size());
    for (const ReportRow* row : order) {
        byFrequency.push_back(*row);
    }
    std::string text;
    for (const ReportPlot& plot :
         {LevelPlot(byFrequency, limits), StepPlot(byFrequency, limits), MerPlot(byFrequency, limits),
          BerPlot(byFrequency, limits), BudgetPlot(byFrequency)}) {
        if (!plot.svg.empty()) {
            text += "<figure>\n" + plot.svg + "<figcaption>" + plot.caption + "</figcaption>\n</figure>\n";
        }
    }
    return text.empty() ? ""
                        : "<section class=\"frequency\">\n<h2>Over frequency</h2>\n" + Legend() +
                              "<div class=\"plots\">\n" + text + "</div>\n</section>\n";
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
    text += Facts(run, judgement, limits);
    text += FindingsTable(run, rows);
    text += rows.empty() ? "" : Plots(rows, limits);
    text += ConstellationSection(run, rows);
    text += GridTable(run, judgement, rows);
    return text + "</body>\n</html>\n";
}

}  // namespace tvn2x
