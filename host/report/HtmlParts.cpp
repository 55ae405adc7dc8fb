#include "host/report/HtmlParts.h"

#include <algorithm>
#include <set>

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/judge/VerdictText.h"
#include "host/report/Chart.h"
#include "host/report/Markup.h"
#include "host/report/RunGrid.h"
#include "setup/catalogue/Settings.h"

namespace tvn2x {
namespace {

std::string Fact(const char* name, const std::wstring& value)
{
    return value.empty() ? "" : fmt::format("<tr><th scope=\"row\">{}</th><td>{}</td></tr>\n", name, Escape(value));
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

std::string Legend()
{
    std::string text = "<p>";
    for (const Verdict verdict : {Verdict::pass, Verdict::warning, Verdict::fail, Verdict::notMeasured}) {
        text += R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 14 14" width="14" height="14" )"
                R"(class="mark" aria-hidden="true">)" +
                Mark(7, 7, verdict) + "</svg> " +
                (verdict == Verdict::notMeasured ? "no value" : Escape(VerdictName(verdict))) + " &#160; ";
    }
    return text + "</p>\n";
}

}  // namespace

std::string ClassOf(Verdict verdict)
{
    return verdict == Verdict::notMeasured ? "unmeasured" : Escape(VerdictName(verdict));
}

std::string GridHeads(const FinishedRun& run, bool hasLimits)
{
    std::string text = run.MixesOrders() ? "<th scope=\"col\" class=\"number\">QAM</th>" : "";
    for (const RunColumn& column : run.columns) {
        text += fmt::format(R"(<th scope="col" class="{}">{}</th>)", ClassOf(column), Escape(column.caption));
    }
    return text + (hasLimits ? "<th scope=\"col\">Worst Margin</th>" : "");
}

std::string GridCells(const FinishedRun& run, const ReportRow& row, bool hasLimits)
{
    std::string text = run.MixesOrders() ? fmt::format("<td class=\"number\">{}</td>", row.channel.orderOfQam) : "";
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
    return text + (hasLimits ? MarginCell(row.judgement) : "");
}

std::string OriginBand(const RunReceiver& receiver)
{
    const std::wstring origin = OriginText(receiver);
    return origin.empty() ? "" : "<p class=\"band\">" + Escape(origin) + "</p>\n";
}

std::string RunFacts(const FinishedRun& run, const RunJudgement& judgement, const Limits* limits,
                     const std::wstring& measured, const std::wstring& passes)
{
    std::wstring resumed;
    for (const std::wstring& time : run.resumed) {
        resumed += (resumed.empty() ? L"" : L", ") + LocalText(time);
    }
    std::string text = "<table class=\"facts\"><tbody>\n" + ProtocolFacts(run.protocol);
    text += Fact("Measured", measured) + Fact("Passes", passes) + Fact("Resumed", resumed);
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

std::string PlotFigure(const ReportPlot& plot)
{
    return plot.svg.empty() ? ""
                            : "<figure>\n" + plot.svg + "<figcaption>" + plot.caption + "</figcaption>\n</figure>\n";
}

std::string FrequencyPlots(const std::vector<ReportRow>& rows, const Limits* limits)
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
        text += PlotFigure(plot);
    }
    return text.empty() ? "" : Legend() + "<div class=\"plots\">\n" + text + "</div>\n";
}

}  // namespace tvn2x
