#include "host/serve/LiveSite.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <string_view>

#include "fmt/format.h"
#include "host/live/LiveData.h"
#include "host/live/LiveEvents.h"
#include "host/live/LiveMetrics.h"
#include "host/live/LivePage.h"
#include "host/report/HtmlReport.h"
#include "host/report/JsonReport.h"

namespace tvn2x {
namespace {

constexpr const char* html = "text/html; charset=utf-8";
constexpr const char* plain = "text/plain; charset=utf-8";
constexpr const char* json = "application/json";
constexpr const char* liveSchema = "/live.schema.json";

Answer Text(unsigned status, const char* type, std::string body)
{
    Answer answer{.status = status, .body = std::make_shared<const std::string>(std::move(body))};
    answer.fields.emplace_back("Content-Type", type);
    return answer;
}

/// The page's own files and nothing else; a report brings its style along and is a page apart.
const char* PolicyFor(std::string_view path)
{
    return path == "/report.html" ? "default-src 'none'; style-src 'unsafe-inline'; base-uri 'none'; form-action "
                                    "'none'; frame-ancestors 'none'; sandbox"
                                  : "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' data:; "
                                    "connect-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'";
}

void Protect(std::string_view path, Answer& answer)
{
    answer.fields.emplace_back("Cache-Control", "no-store");
    answer.fields.emplace_back("Content-Security-Policy", PolicyFor(path));
    answer.fields.emplace_back("Cross-Origin-Resource-Policy", "same-origin");
    answer.fields.emplace_back("Referrer-Policy", "no-referrer");
    answer.fields.emplace_back("X-Content-Type-Options", "nosniff");
}

/// The page that hands out the cookie. It goes on by itself rather than by a redirection: the cookie is not sent where
/// a link of another site began.
Answer Welcome(const Gate& gate)
{
    Answer answer =
        Text(200, html,
             "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><meta http-equiv=\"refresh\" "
             "content=\"0; url=/\"><title>tvnhost</title></head><body><p><a href=\"/\">Go on to the "
             "page</a></p></body></html>\n");
    answer.fields.emplace_back("Set-Cookie", gate.Cookie());
    return answer;
}

struct Route
{
    std::string_view path;
    const char* type;
    std::string (*make)(const LiveState& state, double age);
    const char* schema = "";  ///< what describes the data
};

std::string ReportPage(const LiveState& state, double)
{
    const FinishedRun run = RunOf(state);
    return HtmlReport(run, Judge(run, state.limits.get()), state.limits.get());
}

std::string ResultLines(const LiveState& state, double)
{
    const FinishedRun run = RunOf(state);
    const RunJudgement judgement = Judge(run, state.limits.get());
    return ResultText(run, &judgement);
}

constexpr Route routes[] = {
    {"/", html, LivePage},
    {"/plots", html, [](const LiveState& state, double) { return LivePlotsPart(state); }},
    {"/live.css", "text/css; charset=utf-8", [](const LiveState&, double) { return std::string(LiveStyle()); }},
    {"/live.js", "text/javascript; charset=utf-8", [](const LiveState&, double) { return std::string(LiveScript()); }},
    {"/api/run", json, RunData, liveSchema},
    {"/api/channels", json, [](const LiveState& state, double) { return ChannelsData(state); }, liveSchema},
    {"/report.html", html, ReportPage},
    {"/result.jsonl", "application/x-ndjson", ResultLines, "/result.schema.json"},
    {liveSchema, "application/schema+json", [](const LiveState&, double) { return std::string(LiveSchema()); }},
    {"/result.schema.json", "application/schema+json",
     [](const LiveState&, double) { return std::string(ResultSchema()); }},
};

/// The number behind a path's beginning; nothing where something else is there.
std::optional<int32_t> NumberBehind(std::string_view beginning, std::string_view path)
{
    if (!path.starts_with(beginning)) {
        return std::nullopt;
    }
    int32_t number = 0;
    const char* const first = path.data() + beginning.size();
    const char* const last = path.data() + path.size();
    const auto [end, error] = std::from_chars(first, last, number);
    return error == std::errc() && end == last && number > 0 ? std::optional(number) : std::nullopt;
}

/// Data says what describes it.
void Describe(const char* schema, Answer& answer)
{
    answer.fields.emplace_back("Link", fmt::format("<{}>; rel=\"describedby\"", schema));
}

Answer Missing()
{
    return Text(404, plain,
                "There is no such page. There are /, /report.html, /result.csv, /result.jsonl, /api/run, "
                "/api/channels, /events and /metrics.\n");
}

Answer ResultTable(const LiveState& state)
{
    if (!state.resultFile) {
        Answer answer = Text(503, plain, "The plug-in writes its result file at the end of a pass. Try again then.\n");
        answer.fields.emplace_back("Retry-After", "10");
        return answer;
    }
    Answer answer{.body = state.resultFile};
    answer.fields = {{"Content-Type", "text/csv; charset=utf-8"},
                     {"Content-Disposition", "attachment; filename=\"result.csv\""}};
    return answer;
}

/// What is there for one channel.
Answer OfChannel(std::string_view path, const LiveState& state)
{
    if (const auto number = NumberBehind("/channel/", path)) {
        const std::string page = LiveChannelPage(state, *number);
        return page.empty() ? Missing() : Text(200, html, page);
    }
    const auto number = NumberBehind("/api/channels/", path);
    const std::string data = number ? ChannelData(state, *number) : "";
    if (data.empty()) {
        return Missing();
    }
    Answer answer = Text(200, json, data);
    Describe(liveSchema, answer);
    return answer;
}

}  // namespace

Answer LiveSite::Ask(const Question& question, const LiveStatePtr& state, double age)
{
    Answer answer = Enter(question, state, age);
    Protect(question.Path(), answer);
    return answer;
}

Answer LiveSite::Enter(const Question& question, const LiveStatePtr& state, double age)
{
    if (!gate_.KnowsHost(question)) {
        return Text(421, plain,
                    "This server does not know that name. Ask by its address, or start it with --host-name NAME.\n");
    }
    if (question.method != "GET" && question.method != "HEAD") {
        Answer answer = Text(405, plain, "Here one can only read: GET and HEAD.\n");
        answer.fields.emplace_back("Allow", "GET, HEAD");
        return answer;
    }
    if (gate_.IsLink(question)) {
        return Welcome(gate_);
    }
    if (!gate_.LetsIn(question)) {
        Answer answer = Text(401, plain,
                             "Open the link with the token that tvnhost printed when it began, or send the token as "
                             "Authorization: Bearer.\n");
        answer.fields.emplace_back("WWW-Authenticate", "Bearer");
        return answer;
    }
    return Serve(question, state, age);
}

Answer LiveSite::Serve(const Question& question, const LiveStatePtr& state, double age)
{
    const std::string_view path = question.Path();
    if (path == "/events") {
        const std::string_view after = question.Query("after");
        const std::string_view known = question.lastEventId.empty() ? after : question.lastEventId;
        Answer answer{.eventsSince = VersionOf(*state, known)};
        answer.fields = {{"Content-Type", "text/event-stream"}, {"X-Accel-Buffering", "no"}};
        return answer;
    }
    if (path == "/metrics") {
        const bool isOpen = question.accept.find("application/openmetrics-text") != std::string::npos;
        const MetricsFormat format = isOpen ? MetricsFormat::openMetrics : MetricsFormat::prometheus;
        return Text(200, ContentTypeOf(format), LiveMetrics(*state, format));
    }
    if (path == "/result.csv") {
        return ResultTable(*state);
    }
    if (path == "/favicon.ico") {
        return {.status = 204};
    }
    const auto route = std::ranges::find(routes, path, &Route::path);
    if (route == std::end(routes)) {
        return OfChannel(path, *state);
    }
    constexpr double oldest = 1;  // seconds, by which ages on the page may be wrong
    Made& made = made_[std::string(path)];
    if (made.state != state || age - made.age > oldest) {
        made = {state, age, std::make_shared<const std::string>(route->make(*state, age))};
    }
    Answer answer{.body = made.body};
    answer.fields.emplace_back("Content-Type", route->type);
    if (*route->schema) {
        Describe(route->schema, answer);
    }
    return answer;
}

}  // namespace tvn2x
