#include "host/report/JsonReport.h"

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
    const Finding& finding = *judgement.channels[*judgement.worst].Worst();
    return {{"pass", channel.pass},
            {"number", channel.number},
            {"parameter", FindReadingKind(finding.parameter)->name},
            {"margin", finding.margin ? Json(*finding.margin) : Json()}};
}

/// The members of an object as they stand between its braces.
std::string Members(const Json& json)
{
    const std::string text = json.dump(-1, ' ', false, Json::error_handler_t::replace);
    return text.substr(1, text.size() - 2);
}

std::string VerdictMembers(const FinishedRun& run, const RunJudgement& judgement)
{
    Json json{{"verdict", Text(VerdictName(judgement.verdict))},
              {"limits", {{"name", Text(judgement.limits)}, {"sha256", Text(judgement.limitsSha256)}}}};
    if (judgement.worst) {
        json["worst"] = WorstJson(run, judgement);
    }
    return Members(json);
}

}  // namespace

std::string ResultText(const FinishedRun& run, const RunJudgement* judgement)
{
    const RunJudgement* verdict = judgement && judgement->hasLimits ? judgement : nullptr;
    std::string text = RunLine(run);
    for (const std::wstring& time : run.resumed) {
        text += ResumedLine(time);
    }
    for (size_t i = 0; i < run.channels.size(); ++i) {
        text += ChannelLine(run.channels[i],
                            verdict ? Members({{"verdict", JudgementJson(verdict->channels[i])}}) : std::string());
    }
    return run.ended.empty() ? text : text + EndLine(run, verdict ? VerdictMembers(run, *verdict) : std::string());
}

}  // namespace tvn2x
