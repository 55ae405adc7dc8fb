#include "host/run/Journal.h"

#include <algorithm>
#include <set>

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "text/InputError.h"
#include "text/TextInput.h"
#include "util/modLocaleInfo.h"

namespace tvn2x {

void Journal::Add(std::string_view lines)
{
    const bool wasWhole = kept_.empty();
    kept_ += lines;
    const FileFault fault = file_.Append(kept_);
    if (fault == FileFault::none) {
        kept_.clear();
    }
    if (wasWhole != kept_.empty()) {
        tell_(fault);
    }
}

void RequireSameSetups(const FinishedRun& run, const std::wstring& journal, const std::vector<RunSetup>& given,
                       int32_t channels, const std::wstring& remedy)
{
    if (given.size() != run.setups.size()) {
        RaiseInput(fmt::format(L"{} belongs to as many setups as {}, and {} given{}", journal, SetupNames(run),
                               given.size() == 1 ? L"1 is" : fmt::format(L"{} are", given.size()), remedy));
    }
    bool hasChannels = !run.selection.empty() && run.selection.back().number <= channels;
    for (size_t i = 0; i < given.size(); ++i) {
        const RunSetup& then = run.setups[i];
        if (then.sha256 != given[i].sha256) {
            RaiseInput(fmt::format(L"{} belongs to the setup {} as it was on {}, and {} differs from that{}", journal,
                                   then.path, run.began.substr(0, 10), given[i].path, remedy));
        }
        hasChannels = hasChannels && then.firstChannel == given[i].firstChannel;
    }
    if (!hasChannels) {
        RaiseInput(journal + L" names channels that " + SetupNames(run) + L" does not have" + remedy);
    }
}

std::vector<ChannelTurn> TurnsLeft(const FinishedRun& run)
{
    int32_t pass = 1;
    std::set<int32_t> done;
    for (const ChannelResult& channel : run.channels) {
        if (channel.pass > pass) {
            pass = channel.pass;
            done.clear();
        }
        if (channel.pass == pass && channel.outcome != ChannelOutcome::unmeasured) {
            done.insert(channel.number);
        }
    }
    const bool isDone = std::ranges::all_of(
        run.selection, [&](const PlannedChannel& channel) { return done.contains(channel.number); });
    if (isDone) {
        done.clear();
        ++pass;
    }
    std::vector<ChannelTurn> turns;
    if (run.passes == 0 || pass <= run.passes) {
        for (const PlannedChannel& channel : run.selection) {
            if (!done.contains(channel.number)) {
                turns.push_back({pass, channel.number});
            }
        }
    }
    return turns;
}

double ReadInterval(std::wstring_view text)
{
    constexpr struct
    {
        wchar_t unit;
        double seconds;
    } units[] = {{L's', 1}, {L'm', 60}, {L'h', 3600}, {L'd', 24 * 3600}};
    constexpr double longest = 7 * 24 * 3600;
    double factor = 1;
    std::wstring_view number = text;
    for (const auto& known : units) {
        if (text.ends_with(known.unit)) {
            factor = known.seconds;
            number.remove_suffix(1);
        }
    }
    double seconds = 0;
    try {
        seconds = factor * ParseNumber(number, L'.');
    } catch (const RaisedError&) {
        seconds = 0;
    }
    if (!(seconds >= 1 && seconds <= longest)) {
        RaiseInput(L"--every: " + Excerpt(text) + L" is no time from 1 second to 7 days. Write 90s, 15m, 2h or 1d.");
    }
    return seconds;
}

}  // namespace tvn2x
