#include "host/report/JsonReport.h"

#include "host/judge/VerdictText.h"
#include "host/run/RunRecords.h"
#include "nlohmann/json.hpp"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

/// Keys stay in the order in which they are written.
using Json = nlohmann::ordered_json;

Json Text(std::wstring_view text)
{
    return ToUtf8(text);
}

Json JudgementJson(const ChannelJudgement& judgement)
{
    Json json{{"result", Text(VerdictName(judgement.verdict))}};
    if (!judgement.reason.empty()) {
        json["reason"] = Text(judgement.reason);
    }
    json["margins"] = Json::object();
    for (const Finding& finding : judgement.findings) {
        Json margin{{"result", Text(VerdictName(finding.verdict))}};
        margin["margin"] = finding.margin ? Json(*finding.margin) : Json();
        json["margins"][FindReadingKind(finding.parameter)->name] = std::move(margin);
    }
    return json;
}

Json WorstJson(const FinishedRun& run, const RunJudgement& judgement)
{
    const ChannelResult& channel = run.channels[*judgement.worst];
    Json json{{"pass", channel.pass}, {"number", channel.number}, {"reason", Text(WorstText(run, judgement))}};
    const Finding* const finding = judgement.channels[*judgement.worst].Worst();
    if (finding && channel.outcome == ChannelOutcome::synchronised) {
        json["parameter"] = FindReadingKind(finding->parameter)->name;
        json["margin"] = finding->margin ? Json(*finding->margin) : Json();
    }
    return json;
}

/// The members of an object as they stand between its braces.
std::string Members(const Json& json)
{
    const std::string text = json.dump(-1, ' ', false, Json::error_handler_t::replace);
    return text.substr(1, text.size() - 2);
}

Json VerdictJson(const FinishedRun& run, const RunJudgement& judgement)
{
    Json json{{"record", "verdict"},
              {"result", Text(VerdictName(judgement.verdict))},
              {"complete", judgement.isComplete},
              {"planned", judgement.planned},
              {"measured", run.Measured()}};
    for (size_t i = 0; i < verdicts; ++i) {
        json["counts"][ToUtf8(VerdictName(static_cast<Verdict>(i)))] = judgement.counts[i];
    }
    if (judgement.hasLimits) {
        json["limits"] = {{"name", Text(judgement.limits)}, {"sha256", Text(judgement.limitsSha256)}};
        json["unapplied"] = Json::array();
    }
    for (const UnappliedLimit& limit : judgement.unapplied) {
        json["unapplied"].push_back({{"parameter", FindReadingKind(limit.parameter)->name},
                                     {"reason", Text(limit.reason)},
                                     {"channels", limit.channels}});
    }
    if (judgement.worst) {
        json["worst"] = WorstJson(run, judgement);
    }
    return json;
}

}  // namespace

std::string ChannelRecord(const ChannelResult& channel, const ChannelJudgement& judgement)
{
    std::string line = ChannelLine(channel, Members({{"verdict", JudgementJson(judgement)}}));
    line.pop_back();
    return line;
}

std::string VerdictRecord(const FinishedRun& run, const RunJudgement& judgement)
{
    return VerdictJson(run, judgement).dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string ResultText(const FinishedRun& run, const RunJudgement* judgement)
{
    std::string text = RunLine(run);
    for (const std::wstring& time : run.resumed) {
        text += ResumedLine(time);
    }
    for (size_t i = 0; i < run.channels.size(); ++i) {
        const ChannelResult& channel = run.channels[i];
        text += judgement ? ChannelRecord(channel, judgement->channels[i]) + "\n" : ChannelLine(channel);
    }
    if (!run.ended.empty()) {
        text += EndLine(run);
    }
    return judgement ? text + VerdictRecord(run, *judgement) + "\n" : text;
}

}  // namespace tvn2x
