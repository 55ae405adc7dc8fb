#include "host/live/LiveParts.h"
#include "host/live/LivePage.h"

#include <algorithm>

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/judge/RunComparison.h"
#include "host/judge/VerdictText.h"
#include "host/live/LivePage.h"
#include "host/report/HtmlParts.h"
#include "host/report/Markup.h"
#include "text/Duration.h"

namespace tvn2x {
namespace {

/// Leads to the channel's history. The identity lets the page keep the focus where the link is replaced.
std::string Link(const LiveState& state, const LiveChannel& channel, const char* place)
{
    return fmt::format(R"(<a id="{0}{1}" href="/channel/{1}">{2}</a>)", place, channel.planned.number,
                       NameOf(state, channel));
}

/// The grid has the name before the verdict, and not again.
FinishedRun GridRun(const LiveState& state)
{
    FinishedRun run = *state.run;
    std::erase_if(run.columns, [](const RunColumn& column) {
        return column.parameter == MP_USERFIELD || column.parameter == MP_FREQUENCY;
    });
    return run;
}

ChannelResult Awaited(const LiveChannel& channel)
{
    return {.number = channel.planned.number,
            .label = channel.planned.label,
            .frequency = channel.planned.frequency,
            .symbolRate = channel.planned.symbolRate,
            .orderOfQam = channel.orderOfQam,
            .status = {},
            .timeStamp = {},
            .began = {},
            .readings = {}};
}

std::string Row(const LiveState& state, const FinishedRun& run, const LiveChannel& channel)
{
    const ChannelResult awaited = Awaited(channel);
    const ChannelJudgement unjudged{.verdict = Verdict::notMeasured, .findings = {}, .reason = {}};
    const LiveMeasurement* const latest = channel.latest.get();
    const ReportRow row{
        .channel = latest ? latest->result : awaited, .judgement = latest ? latest->judgement : unjudged, .step = {}};
    const std::string verdict = latest ? Escape(VerdictName(row.judgement.verdict)) : "to come";
    return fmt::format(R"(<tr id="c{}" data-verdict="{}"><th scope="row">{}</th><td class="{}">{}</td>{}</tr>)",
                       channel.planned.number, latest ? ClassOf(row.judgement.verdict) : "awaited",
                       Link(state, channel, "l"), latest ? ClassOf(row.judgement.verdict) : "awaited", verdict,
                       GridCells(run, row, state.limits != nullptr));
}

std::string VerdictPart(const LiveState& state)
{
    const bool isBegun =
        std::ranges::any_of(state.channels, [](const LiveChannel& channel) { return channel.latest != nullptr; });
    return fmt::format(R"(<p id="verdict" class="verdict {}">{}</p>)",
                       isBegun ? ClassOf(state.verdict.verdict) : "unmeasured",
                       isBegun ? Escape(state.sentence) : "Nothing has been measured yet.");
}

/// Counts down on the page. "2:10 min"
std::string TimeLeft(double seconds)
{
    return fmt::format(R"(<span class="left" data-left="{:.0f}">{}</span> min)", seconds,
                       Escape(DurationText(seconds)));
}

std::string DoingText(const LiveState& state, double age)
{
    const LiveNow& now = state.now;
    const auto left = [&](double seconds) { return TimeLeft(std::max(0.0, seconds - age)); };
    const std::string pass =
        fmt::format("Pass {}{}", now.pass, state.run->passes > 1 ? fmt::format(" of {}", state.run->passes) : "");
    switch (now.phase) {
        case LivePhase::preparing:
            return "The receiver is brought on line.";
        case LivePhase::waiting:
            return pass + " is done." + (now.nextPass ? " The next one begins in " + left(*now.nextPass) + "." : "");
        case LivePhase::ended:
            return pass + fmt::format(": {} of {} channels. The scan has ended.", now.done, state.channels.size());
        case LivePhase::measuring:
            break;
    }
    std::string text = pass + fmt::format(": {} of {} channels.", now.done, state.channels.size());
    const auto channel = std::ranges::find_if(
        state.channels, [&](const LiveChannel& known) { return known.planned.number == now.channel; });
    if (channel != state.channels.end()) {
        text += " <b>" + NameOf(state, *channel) + "</b> is being measured" +
                (now.status.empty() ? "" : ": " + Escape(now.status)) + ".";
    }
    return text + (now.left ? " About " + left(*now.left) + " left." : "");
}

std::string NowPart(const LiveState& state, double age)
{
    const LiveNow& now = state.now;
    std::string text = fmt::format(R"(<section id="now" data-channel="{}" aria-label="Progress">)",
                                   now.phase == LivePhase::measuring ? now.channel.value_or(0) : 0);
    if (!now.fault.empty()) {
        text += fmt::format(R"(<p class="band fault">The receiver has failed since {}: {}. It is tried anew with each )"
                            R"(channel.</p>)",
                            TimeElement(now.faultSince), Escape(now.fault));
    }
    return text +
           fmt::format(R"(<progress max="{}" value="{:.2f}" aria-label="Channels of this pass"></progress>)",
                       std::max<size_t>(state.channels.size(), 1),
                       now.done + (now.channel && now.phase == LivePhase::measuring ? now.step : 0)) +
           "<p>" + DoingText(state, age) + "</p></section>";
}

/// The worst first.
std::string BadPart(const LiveState& state)
{
    std::vector<const LiveChannel*> bad;
    for (const LiveChannel& channel : state.channels) {
        if (channel.latest && channel.latest->judgement.verdict != Verdict::pass) {
            bad.push_back(&channel);
        }
    }
    std::ranges::stable_sort(bad, [](const LiveChannel* left, const LiveChannel* right) {
        return left->latest->judgement.IsWorseThan(right->latest->judgement);
    });
    std::string text = R"(<section id="bad"><h2>What to look at</h2>)";
    if (bad.empty()) {
        return text + "<p>Nothing so far.</p></section>";
    }
    text += R"(<table><thead><tr><th scope="col">Channel</th><th scope="col">Verdict</th><th scope="col">Since</th>)"
            R"(<th scope="col">Why</th></tr></thead><tbody>)";
    for (const LiveChannel* channel : bad) {
        const ChannelJudgement& judgement = channel->latest->judgement;
        text +=
            fmt::format(R"(<tr><th scope="row">{}</th><td class="{}">{}</td><td class="since">{}</td><td>{}</td></tr>)",
                        Link(state, *channel, "b"), ClassOf(judgement.verdict), Escape(VerdictName(judgement.verdict)),
                        TimeElement(channel->badSince), Escape(judgement.reason));
    }
    return text + "</tbody></table></section>";
}

/// Of the channels that were measured more than once.
std::string ChangesPart(const LiveState& state)
{
    LiveState again = state;
    std::erase_if(again.channels, [](const LiveChannel& channel) {
        return !channel.latest || channel.latest->result.pass == channel.first->result.pass;
    });
    if (again.channels.empty()) {
        return R"(<section id="changes" hidden="hidden"></section>)";
    }
    auto run = std::make_shared<FinishedRun>(*state.run);
    run->selection.clear();
    for (const LiveChannel& channel : again.channels) {
        run->selection.push_back(channel.planned);
    }
    again.run = std::move(run);
    const auto drift = state.limits && !state.limits->drift.empty() ? state.limits->drift : OutletLimits().drift;
    const RunComparison comparison =
        CompareRuns(RunOf(again, &LiveChannel::first), RunOf(again, &LiveChannel::latest), drift);
    std::string text = R"(<section id="changes"><h2>Changed since the first pass</h2>)";
    if (comparison.changes.empty()) {
        return text + "<p>Nothing.</p></section>";
    }
    text += R"(<table><thead><tr><th scope="col">Channel</th><th scope="col">What</th><th scope="col">First</th>)"
            R"(<th scope="col">Now</th><th scope="col">Change</th></tr></thead><tbody>)";
    for (const RunChange& change : comparison.changes) {
        text += fmt::format(R"(<tr><th scope="row">{}</th><td>{}</td><td>{}</td><td>{}</td><td>{}</td></tr>)",
                            Escape(change.channel), Escape(change.parameter), Escape(change.before),
                            Escape(change.after), Escape(change.change));
    }
    return text + "</tbody></table></section>";
}

}  // namespace

std::string PageHead(const std::string& title)
{
    return fmt::format(
        "<!DOCTYPE html>\n<html xmlns=\"http://www.w3.org/1999/xhtml\" lang=\"en\">\n<head>\n<meta "
        "charset=\"utf-8\"/>\n"
        "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"/>\n<title>{}</title>\n"
        "<link rel=\"stylesheet\" href=\"/live.css\"/>\n</head>\n<body>\n",
        title);
}

std::string NameOf(const LiveState& state, const LiveChannel& channel)
{
    return Escape(ChannelName(channel.planned.label, channel.planned.frequency) +
                  (state.run->MixesOrders() ? fmt::format(L" {}-QAM", channel.orderOfQam) : L""));
}

std::vector<LivePart> LiveParts(const LiveState& state, uint64_t since, double age)
{
    std::vector<LivePart> parts;
    const bool isChanged = since == 0 || std::ranges::any_of(state.channels, [&](const LiveChannel& channel) {
                               return channel.changed > since;
                           });
    if (isChanged) {
        parts.push_back({"verdict", VerdictPart(state)});
    }
    parts.push_back({"now", NowPart(state, age)});
    if (isChanged) {
        parts.push_back({"bad", BadPart(state)});
        parts.push_back({"changes", ChangesPart(state)});
    }
    const FinishedRun run = GridRun(state);
    for (const LiveChannel& channel : state.channels) {
        if (since == 0 || channel.changed > since) {
            parts.push_back({fmt::format("c{}", channel.planned.number), Row(state, run, channel)});
        }
    }
    return parts;
}

std::string LiveHeads(const LiveState& state)
{
    return R"(<th scope="col">Channel</th><th scope="col">Verdict</th>)" +
           GridHeads(GridRun(state), state.limits != nullptr);
}

std::string LivePlotsPart(const LiveState& state)
{
    std::vector<ChannelResult> awaited;
    awaited.reserve(state.channels.size());
    const ChannelJudgement unjudged{.verdict = Verdict::notMeasured, .findings = {}, .reason = {}};
    std::vector<ReportRow> rows;
    for (const LiveChannel& channel : state.channels) {
        if (const LiveMeasurement* const latest = channel.latest.get()) {
            rows.push_back({latest->result, latest->judgement, latest->step});
        } else {
            rows.push_back({awaited.emplace_back(Awaited(channel)), unjudged, {}, true});
        }
    }
    return "<section id=\"plots\"><h2>Over frequency</h2>\n" +
           (rows.empty() ? "" : FrequencyPlots(rows, state.limits.get())) + "</section>\n";
}

std::string TimeElement(const std::wstring& utc)
{
    constexpr size_t withoutOffset = 19;
    return utc.empty() ? ""
                       : fmt::format(R"(<time datetime="{}">{}</time>)", Escape(utc),
                                     Escape(LocalText(utc).substr(0, withoutOffset)));
}

}  // namespace tvn2x
