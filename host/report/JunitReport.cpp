#include "host/report/JunitReport.h"

#include <algorithm>
#include <map>

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/judge/VerdictText.h"
#include "host/report/Markup.h"

namespace tvn2x {
namespace {

/// A test suite of the report while it is being written.
struct Suite
{
    int32_t failures = 0;
    int32_t errors = 0;
    double seconds = 0;
    std::wstring began;
    std::vector<size_t> cases;
};

/// Name of a setup's file without folder and extension.
std::wstring Title(const RunSetup& setup)
{
    const std::wstring name = setup.FileName();
    const size_t extension = name.find_last_of(L'.');
    return extension > 0 ? name.substr(0, extension) : name;
}

/// Those of all setups.
std::wstring Title(const FinishedRun& run)
{
    std::wstring text;
    for (const RunSetup& setup : run.setups) {
        text += (text.empty() ? L"" : L", ") + Title(setup);
    }
    return text;
}

/// What a suite or a class is called in a pass.
std::wstring InPass(const FinishedRun& run, const std::wstring& title, int32_t pass)
{
    return run.passes == 1 ? title : fmt::format(L"{} pass {}", title, pass);
}

std::map<int32_t, Suite> Suites(const FinishedRun& run, const RunJudgement& judgement)
{
    std::map<int32_t, Suite> suites;
    for (size_t i = 0; i < run.channels.size(); ++i) {
        const ChannelResult& channel = run.channels[i];
        const Verdict verdict = judgement.channels[i].verdict;
        Suite& suite = suites[channel.pass];
        suite.failures += verdict == Verdict::fail;
        suite.errors += verdict == Verdict::error || verdict == Verdict::notMeasured;
        suite.seconds += channel.seconds;
        if (suite.began.empty()) {
            suite.began = channel.began;
        }
        suite.cases.push_back(i);
    }
    return suites;
}

/// "2026-11-21T13:59:05": local, without zone and fractions, as the format's readers expect it.
std::string PlainTime(const std::wstring& utc)
{
    std::wstring text = LocalText(utc).substr(0, 19);
    std::ranges::replace(text, L' ', L'T');
    return Escape(text);
}

std::string Case(const FinishedRun& run, const ChannelResult& channel, const ChannelJudgement& judgement)
{
    std::string text =
        fmt::format(R"(    <testcase name="{}" classname="{}" time="{:.3f}")", Escape(run.NameOf(channel)),
                    Escape(InPass(run, Title(run.setups[run.SetupOf(channel.number)]), channel.pass)), channel.seconds);
    std::string body;
    const std::string reason = Escape(judgement.reason);
    switch (judgement.verdict) {
        case Verdict::fail:
            body = fmt::format("      <failure message=\"{0}\" type=\"limit\">{0}</failure>\n", reason);
            break;
        case Verdict::error:
            body = fmt::format("      <error message=\"{0}\" type=\"instrument\">{0}</error>\n", reason);
            break;
        case Verdict::notMeasured:
            body = fmt::format("      <error message=\"{0}\" type=\"not measured\">{0}</error>\n", reason);
            break;
        case Verdict::warning:
        case Verdict::pass:
            break;
    }
    std::string readings = judgement.verdict == Verdict::warning ? "warning: " + reason + "\n" : "";
    for (const Reading& reading : channel.readings) {
        readings += Escape(fmt::format(L"{}: {}\n", FindReadingKind(reading.parameter)->title, ReadingText(reading)));
    }
    if (!readings.empty()) {
        body += "      <system-out>" + readings + "</system-out>\n";
    }
    return text + (body.empty() ? "/>\n" : ">\n" + body + "    </testcase>\n");
}

std::string Properties(const FinishedRun& run, const RunJudgement& judgement)
{
    std::vector<std::pair<const char*, std::wstring>> properties{{"program", run.program},
                                                                 {"began", LocalText(run.began)}};
    for (const RunSetup& setup : run.setups) {
        properties.emplace_back("setup", setup.path);
        properties.emplace_back("setup.sha256", setup.sha256);
    }
    properties.insert(properties.end(), {{"receiver.serialNumber", run.receiver.serialNumber},
                                         {"receiver.firmware", run.receiver.firmware},
                                         {"receiver.simulation", OriginText(run.receiver)},
                                         {"limits", judgement.limits},
                                         {"verdict", VerdictSentence(run, judgement)}});
    std::string text = "    <properties>\n";
    for (const auto& [key, value] : properties) {
        text += fmt::format("      <property name=\"{}\" value=\"{}\"/>\n", key, Escape(value));
    }
    return text + "    </properties>\n";
}

/// The errors of all cases: what was never begun has none of its own.
int64_t ErrorsOf(const RunJudgement& judgement)
{
    return std::ranges::count_if(judgement.channels, [](const ChannelJudgement& channel) {
        return channel.verdict == Verdict::error || channel.verdict == Verdict::notMeasured;
    });
}

/// What keeps a run from passing and belongs to none of its channels: "" where nothing does.
std::wstring RunProblem(const FinishedRun& run, const RunJudgement& judgement)
{
    const bool hasPlaces = judgement.planned == static_cast<int64_t>(run.channels.size());
    return hasPlaces && judgement.IsJudged() ? L"" : VerdictSentence(run, judgement);
}

}  // namespace

std::string JunitReport(const FinishedRun& run, const RunJudgement& judgement)
{
    const std::wstring title = Title(run);
    const std::string problem = Escape(RunProblem(run, judgement));
    const int64_t further = problem.empty() ? 0 : 1;
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    text += fmt::format("<testsuites name=\"{}\" tests=\"{}\" failures=\"{}\" errors=\"{}\" time=\"{:.3f}\">\n",
                        Escape(title), static_cast<int64_t>(run.channels.size()) + further,
                        judgement.Count(Verdict::fail), ErrorsOf(judgement) + further, run.Seconds());
    for (const auto& [pass, suite] : Suites(run, judgement)) {
        text += fmt::format(
            "  <testsuite name=\"{}\" tests=\"{}\" failures=\"{}\" errors=\"{}\" skipped=\"0\" time=\"{:.3f}\" "
            "timestamp=\"{}\" hostname=\"localhost\">\n",
            Escape(InPass(run, title, pass)), suite.cases.size(), suite.failures, suite.errors, suite.seconds,
            PlainTime(suite.began.empty() ? run.began : suite.began));
        text += Properties(run, judgement);
        for (const size_t position : suite.cases) {
            text += Case(run, run.channels[position], judgement.channels[position]);
        }
        text += "  </testsuite>\n";
    }
    if (!problem.empty()) {
        text += fmt::format(
            "  <testsuite name=\"{0} run\" tests=\"1\" failures=\"0\" errors=\"1\" skipped=\"0\" time=\"0\" "
            "timestamp=\"{1}\" hostname=\"localhost\">\n    <testcase name=\"verdict\" classname=\"{0} run\" "
            "time=\"0\">\n      <error message=\"{2}\" type=\"verdict\">{2}</error>\n    </testcase>\n"
            "  </testsuite>\n",
            Escape(title), PlainTime(run.began), problem);
    }
    return text + "</testsuites>\n";
}

}  // namespace tvn2x
