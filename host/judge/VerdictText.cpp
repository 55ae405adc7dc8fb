#include "host/judge/VerdictText.h"

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/run/UserNumber.h"

namespace tvn2x {
namespace {

std::wstring Counted(int64_t count, const std::wstring& one)
{
    return fmt::format(L"{} {}{}", count, one, count == 1 ? L"" : L"s");
}

std::wstring Head(const RunJudgement& judgement)
{
    constexpr const wchar_t* heads[verdicts] = {L"PASS", L"PASS WITH WARNINGS", L"NOT MEASURED", L"ERROR", L"FAIL"};
    const wchar_t* const head = heads[static_cast<size_t>(judgement.verdict)];
    if (!judgement.isComplete) {
        return judgement.verdict == Verdict::notMeasured ? L"INCOMPLETE" : fmt::format(L"{}, INCOMPLETE", head);
    }
    return judgement.verdict == Verdict::notMeasured && !judgement.IsJudged() ? L"NOT JUDGED" : head;
}

std::wstring CountsText(const FinishedRun& run, const RunJudgement& judgement)
{
    std::wstring text = fmt::format(L"{} of {} {}", judgement.Count(Verdict::pass),
                                    Counted(judgement.planned, run.passes == 1 ? L"channel" : L"measurement"),
                                    judgement.planned == 1 ? L"passes" : L"pass");
    const auto add = [&](Verdict verdict, const wchar_t* one, const wchar_t* several) {
        if (const int64_t count = judgement.Count(verdict)) {
            text += fmt::format(L", {} {}", count, count == 1 ? one : several);
        }
    };
    add(Verdict::warning, L"with a warning", L"with warnings");
    add(Verdict::fail, L"fails", L"fail");
    add(Verdict::error, L"error of the instrument", L"errors of the instrument");
    add(Verdict::notMeasured, L"not measured", L"not measured");
    return text + L".";
}

}  // namespace

const wchar_t* VerdictName(Verdict verdict)
{
    constexpr const wchar_t* names[verdicts] = {L"pass", L"warning", L"not measured", L"error", L"fail"};
    return names[static_cast<size_t>(verdict)];
}

std::wstring VerdictSentence(const FinishedRun& run, const RunJudgement& judgement)
{
    std::wstring text = Head(judgement) + L": " + CountsText(run, judgement);
    if (judgement.worst) {
        const ChannelResult& channel = run.channels[*judgement.worst];
        text += fmt::format(L" {}: {}, {}", judgement.verdict == Verdict::pass ? L"Smallest margin" : L"Worst",
                            run.NameOf(channel), WorstText(run, judgement));
        text += run.passes == 1 ? L"." : fmt::format(L" (pass {}).", channel.pass);
    }
    for (const int32_t order : judgement.unjudged) {
        text += fmt::format(L" None of the limits could be applied to {}-QAM.", order);
    }
    if (!judgement.unapplied.empty()) {
        text += L" " + Counted(static_cast<int64_t>(judgement.unapplied.size()), L"limit") + L" not applied: ";
        const wchar_t* joint = L"";
        for (const UnappliedLimit& limit : judgement.unapplied) {
            text += joint + UnappliedText(limit);
            joint = L"; ";
        }
        text += L".";
    }
    return text;
}

std::wstring WorstText(const FinishedRun& run, const RunJudgement& judgement)
{
    if (!judgement.worst) {
        return {};
    }
    const ChannelJudgement& channel = judgement.channels[*judgement.worst];
    const bool isLocked = run.channels[*judgement.worst].outcome == ChannelOutcome::synchronised;
    return isLocked && channel.Worst() ? channel.Worst()->text : channel.reason;
}

std::wstring UnappliedText(const UnappliedLimit& limit)
{
    return fmt::format(L"{}: {} ({})", FindReadingKind(limit.parameter)->title, limit.reason,
                       Counted(limit.channels, L"channel"));
}

std::wstring MarginText(const Finding& finding)
{
    const ReadingKind& kind = *FindReadingKind(finding.parameter);
    return WithUnit(kind.isRatio ? WithUserMark(fmt::format(L"{:.2f}", *finding.margin)) : NumberText(*finding.margin),
                    UnitOfDifference(kind));
}

std::wstring ReadingText(const Reading& reading)
{
    return reading.value ? WithUnit(reading.text, reading.unit) : reading.text;
}

std::wstring WithUnit(const std::wstring& number, std::wstring_view unit)
{
    return unit.empty() ? number : number + (unit == L"°" ? L"" : L" ") + std::wstring(unit);
}

}  // namespace tvn2x
