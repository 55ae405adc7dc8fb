#include "host/receiver/ReceiverCheck.h"

#include <algorithm>
#include <span>

#include "host/receiver/ReceiverOptions.h"
#include "host/setup/SetupVocabulary.h"

namespace tvn2x {

namespace {

/// What a need is called, the setting that asks for it, and the option to order for each of its values. The filters of
/// 6 and 7 MHz are listed as one option.
struct Needed
{
    int32_t value;
    const wchar_t* option;
};
constexpr Needed modes[] = {{4, L"KTR-H2"},  {6, L"KTR-S31"}, {7, L"KTR-S33"},
                            {8, L"KTR-S31"}, {13, L"KTR-H7"}, {14, L"KTR-S32"}};
constexpr Needed references[] = {{1, L"EXTREF"}};
constexpr Needed routes[] = {{2, L"EAMOD"}, {4, L"RB"}, {50, L"KTR-H5"}, {75, L"KTR-H5"}};
constexpr Needed filters[] = {{2, L"KTR-H6"}, {6, L"KTR-H8 (or KTR-H9)"}, {7, L"KTR-H8 (or KTR-H9)"}, {8, L"KTR-H4"}};

struct Subject
{
    ReceiverNeed need;
    const wchar_t* name;
    const wchar_t* setting;
    const char* key;  ///< of the setup file, whose values have names
    std::span<const Needed> options;
};
constexpr Subject subjects[] = {
    {ReceiverNeed::mode, L"operating mode", L"", "Mode", modes},
    {ReceiverNeed::reference, L"10 MHz reference", L"10 MHz reference", "10MHz Reference Source", references},
    {ReceiverNeed::route, L"input port", L"input route", "Input Impedance (ohm)", routes},
    {ReceiverNeed::filter, L"SAW filter", L"SAW filter bandwidth", "SAW Filter Bandwidth (MHz)", filters},
};

const Subject& SubjectOf(ReceiverNeed need)
{
    return *std::ranges::find(subjects, need, &Subject::need);
}

std::wstring ValueText(const Subject& subject, int32_t value)
{
    return subject.need == ReceiverNeed::mode ? ModeText(value) : SetupChoiceName(subject.key, value);
}

/// The receiver lists a part of the option's name, as an entry that nobody searches for: "KTR-H8" by itself.
bool IsListedOtherwise(std::wstring_view option, std::wstring_view installed)
{
    return std::ranges::any_of(ReadOptions(installed), [&](const ReceiverOption& entry) {
        return entry.code.size() < option.size() && option.find(entry.code) != option.npos;
    });
}

std::wstring MissingText(const Subject& subject, int32_t asked, std::wstring_view installed)
{
    const auto found = std::ranges::find(subject.options, asked, &Needed::value);
    if (found == subject.options.end()) {
        return std::wstring(L"no receiver has this ") + subject.name;
    }
    const std::wstring option = found->option;
    std::wstring text = L"option " + option + L" (" + OptionWords(option) + L") is not installed";
    if (IsListedOtherwise(option, installed)) {
        text += L" (the receiver lists it by another name than \"" + option +
                L"\"; where it is fitted, scan --force goes on)";
    }
    return text;
}

std::wstring Remedy(const Subject& subject, const ReceiverAnswer& answer)
{
    const auto needed = std::ranges::find(subject.options, answer.asked, &Needed::value);
    std::wstring text = needed == subject.options.end() ? std::wstring() : std::wstring(L"order ") + needed->option;
    if (!answer.possible.empty()) {
        text += (text.empty() ? L"set " : L", or set ") + (L"the setup's " + std::wstring(subject.setting)) + L" to ";
        for (size_t i = 0; i < answer.possible.size(); ++i) {
            text += (i == 0                            ? L""
                     : i + 1 == answer.possible.size() ? L" or "
                                                       : L", ") +
                    ValueText(subject, answer.possible[i]);
        }
    }
    return text.empty() ? L"Use another receiver" : static_cast<wchar_t>(text[0] - L'a' + L'A') + text.substr(1);
}

}  // namespace

bool CanDo(const std::vector<ReceiverAnswer>& answers)
{
    return std::ranges::all_of(answers, &ReceiverAnswer::isMet);
}

std::wstring AnswerText(const ReceiverAnswer& answer, std::wstring_view installedOptions)
{
    const Subject& subject = SubjectOf(answer.need);
    std::wstring text = subject.name + std::wstring(L": ") + ValueText(subject, answer.asked);
    if (!answer.isMet) {
        text += L": " + MissingText(subject, answer.asked, installedOptions) + L". " + Remedy(subject, answer);
    } else if (!answer.isActive) {
        text += L", but the receiver is in another one; a scan changes that";
    }
    return text;
}

std::wstring AnswerList(const std::vector<ReceiverAnswer>& answers, std::wstring_view installedOptions)
{
    std::wstring text;
    for (const ReceiverAnswer& answer : answers) {
        text += (answer.isMet ? L"  yes  " : L"  no   ") + AnswerText(answer, installedOptions) + L"\n";
    }
    return text;
}

}  // namespace tvn2x
