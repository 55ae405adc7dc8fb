#include "host/receiver/ReceiverCheck.h"

#include <algorithm>

#include "host/receiver/ReceiverOptions.h"
#include "setup/catalogue/Settings.h"

namespace tvn2x {
namespace {

/// What a need is called, and the setting that asks for it.
struct Subject
{
    Capability need;
    const wchar_t* name;
    const wchar_t* setting;
    const Setting& values;  ///< whose values have words
};
const Subject subjects[] = {
    {Capability::mode, L"operating mode", L"", setting::mode},
    {Capability::reference, L"10 MHz reference", L"10 MHz reference", setting::referenceSource},
    {Capability::route, L"input port", L"input route", setting::inputRoute},
    {Capability::filter, L"SAW filter", L"SAW filter bandwidth", setting::sawBandwidth},
};

const Subject& SubjectOf(Capability need)
{
    return *std::ranges::find(subjects, need, &Subject::need);
}

std::wstring ValueText(const Subject& subject, int32_t value)
{
    return subject.need == Capability::mode ? ModeText(value) : ChoiceWords(subject.values, value);
}

/// A spelling without what people differ in.
std::wstring Plain(std::wstring_view code)
{
    std::wstring plain;
    for (const wchar_t character : code) {
        if (character != L' ' && character != L'\t' && character != L'\u00A0') {
            plain += character >= L'a' && character <= L'z' ? static_cast<wchar_t>(character - L'a' + L'A') : character;
        }
    }
    return plain;
}

/// How the receiver lists an option that it is searched for in vain: in other letter case, with other blanks, or by a
/// part of its name, "KTR-H8" by itself. "" where it does not.
std::wstring ListedAs(std::wstring_view option, std::wstring_view installed)
{
    const std::wstring wanted = Plain(option);
    for (const ReceiverOption& entry : ReadOptions(installed)) {
        if (const std::wstring code = Plain(entry.code); !code.empty() && wanted.find(code) != wanted.npos) {
            return entry.code;
        }
    }
    return {};
}

std::wstring MissingText(const Subject& subject, int32_t asked, std::wstring_view installed)
{
    const OptionNeed* const found = FindNeed(subject.need, asked);
    if (!found) {
        return std::wstring(L"no receiver has this ") + subject.name;
    }
    const std::wstring option(found->option);
    std::wstring text = L"option " + option + L" (" + OptionWords(option) + L") is not installed";
    if (const std::wstring listed = ListedAs(option, installed); !listed.empty()) {
        text += L" by this name (the receiver lists \"" + listed + L"\"" +
                (Plain(listed) == Plain(option) ? L", other in blanks or letter case only" : L"") +
                L"; where it is fitted, scan --force measures with it)";
    }
    return text;
}

std::wstring Remedy(const Subject& subject, const ReceiverAnswer& answer)
{
    const OptionNeed* const needed = FindNeed(subject.need, answer.asked);
    std::wstring text = needed ? L"order " + std::wstring(needed->option) : std::wstring();
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
