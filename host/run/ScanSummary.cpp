#include "host/run/ScanSummary.h"

#include "text/Duration.h"

namespace tvn2x {
namespace {

std::wstring Counted(int32_t count, const wchar_t* one, const wchar_t* several)
{
    return std::to_wstring(count) + (count == 1 ? one : several);
}

}  // namespace

std::wstring OutcomeText(ChannelOutcome outcome)
{
    switch (outcome) {
        case ChannelOutcome::unmeasured:
            return L"not measured";
        case ChannelOutcome::synchronised:
            return L"synchronised";
        case ChannelOutcome::notSynchronised:
            return L"not synchronised";
        case ChannelOutcome::error:
            break;
    }
    return L"error";
}

void ScanSummary::Count(ChannelOutcome outcome)
{
    synchronised += outcome == ChannelOutcome::synchronised;
    notSynchronised += outcome == ChannelOutcome::notSynchronised;
    errors += outcome == ChannelOutcome::error;
}

std::wstring ScanSummary::Text() const
{
    const int32_t unmeasured = channels - synchronised - notSynchronised - errors;
    return (stopped ? L"Stopped: " : L"") + Counted(channels, L" channel, ", L" channels, ") +
           std::to_wstring(synchronised) + L" synchronised, " + std::to_wstring(notSynchronised) +
           L" not synchronised, " + Counted(errors, L" error, ", L" errors, ") +
           (unmeasured > 0 ? std::to_wstring(unmeasured) + L" not measured, " : L"") + DurationText(seconds) + L" min";
}

}  // namespace tvn2x
