#include "host/judge/Limits.h"

#include <array>
#include <cmath>

#include "dvbc/Qam.h"
#include "fmt/format.h"
#include "host/run/ReadingKind.h"
#include "host/run/Sha256.h"
#include "text/Blanks.h"
#include "text/Folding.h"
#include "text/InputError.h"
#include "text/TextInput.h"
#include "util/Encoding.h"
#include "util/modLocaleInfo.h"

namespace tvn2x {
namespace {

constexpr wchar_t outletName[] = L"outlet";
const std::wstring remedy =
    L". Correct it; \"tvnhost limits\" prints limits to begin with, docs/reports.md describes them.";

constexpr struct
{
    const wchar_t* name;
    std::optional<double> Limit::*bound;
} bounds[] = {{L"Fail Below", &Limit::failBelow},
              {L"Warn Below", &Limit::warnBelow},
              {L"Warn Above", &Limit::warnAbove},
              {L"Fail Above", &Limit::failAbove}};

std::wstring KnownNames()
{
    std::wstring names;
    for (const ReadingKind& kind : ReadingKinds()) {
        if (!kind.isLock) {
            AddToList(names, kind.name);
        }
    }
    return names;
}

/// A section as the file has it, while it is being read.
struct Section
{
    std::wstring name;
    int32_t line = 0;
    bool isDrift = false;
    bool isHead = false;  ///< [limits], which names them
    int32_t parameter = 0;
    int32_t orderOfQam = 0;
};

/// Reads a limits file line by line into Limits.
class LimitsReader
{
public:
    LimitsReader(const std::wstring& path, Limits& limits) : path_(path), limits_(limits) {}

    void Read(std::string_view content)
    {
        LineReader reader(content);
        std::string_view line;
        while (reader.Next(line)) {
            line_ = reader.Number();
            if (line.starts_with('[')) {
                CheckBounds();
                Open(FromUtf8(line));
            } else if (!line.empty() && line.front() != ';' && line.front() != '#') {
                Set(FromUtf8(line));
            }
        }
        CheckBounds();
        if (limits_.limits.empty() && limits_.drift.empty()) {
            RaiseInput(path_ + L" has no limits: it has no section like [mer]" + remedy);
        }
    }

private:
    [[noreturn]] void Refuse(int32_t line, const std::wstring& what) const
    {
        RaiseInput(AtLine(path_, line) + what + remedy);
    }

    int32_t Parameter(std::wstring_view name) const
    {
        const ReadingKind* kind = FindReadingKind(name);
        if (!kind || kind->isLock) {
            Refuse(line_, Excerpt(name) + L" is no parameter that can have limits; known are " + KnownNames());
        }
        return kind->parameter;
    }

    void Open(std::wstring_view line)
    {
        if (!line.ends_with(L']')) {
            Refuse(line_, Excerpt(line) + L" lacks its closing bracket");
        }
        const std::wstring_view name = TrimBlanks(line.substr(1, line.size() - 2));
        section_ = Section{.name = std::wstring(name),
                           .line = line_,
                           .isDrift = EqualIgnoringCase(name, "drift"),
                           .isHead = EqualIgnoringCase(name, "limits")};
        if (section_->isDrift || section_->isHead) {
            return;
        }
        const size_t blank = name.find_first_of(L" \t");
        section_->parameter = Parameter(name.substr(0, blank));
        if (blank != std::wstring_view::npos) {
            section_->orderOfQam = OrderOfQam(TrimBlanks(name.substr(blank)));
        }
        if (!limits_.limits.try_emplace({section_->parameter, section_->orderOfQam}).second) {
            Refuse(line_, L"there already is a section " + Excerpt(name));
        }
    }

    int32_t OrderOfQam(std::wstring_view text) const
    {
        for (const int32_t order : dvbc::ordersOfQam) {
            if (EqualIgnoringCase(text, fmt::format("{}-QAM", order))) {
                return order;
            }
        }
        Refuse(line_, Excerpt(text) + L" is no order of QAM; write 4-QAM, 16-QAM, 32-QAM, 64-QAM, 128-QAM or 256-QAM");
    }

    double Number(std::wstring_view text) const
    {
        try {
            return ParseNumber(text, L'.');
        } catch (const RaisedError&) {
            Refuse(line_, Excerpt(text) + L" is no number (with a point as decimal separator)");
        }
    }

    void Set(std::wstring_view line)
    {
        const size_t equals = line.find(L'=');
        if (!section_ || equals == std::wstring_view::npos) {
            Refuse(line_, Excerpt(line) + (section_ ? L" is no \"key=value\" line"
                                                    : L" stands before the first section, like [mer]"));
        }
        const std::wstring_view key = TrimBlanks(line.substr(0, equals));
        if (section_->isHead) {
            SetHead(key, TrimBlanks(line.substr(equals + 1)));
            return;
        }
        const double number = Number(TrimBlanks(line.substr(equals + 1)));
        if (section_->isDrift) {
            const int32_t parameter = Parameter(key);
            if (number < 0 || parameter == levelStep || !limits_.drift.emplace(parameter, number).second) {
                Refuse(line_, Excerpt(line) + L": a drift is 0 or more, of a reading, and given once");
            }
            return;
        }
        Limit& limit = limits_.limits[{section_->parameter, section_->orderOfQam}];
        for (const auto& known : bounds) {
            if (EqualIgnoringCase(key, known.name)) {
                if (limit.*known.bound) {
                    Refuse(line_, Excerpt(key) + L" is given twice");
                }
                RequireRange(number);
                limit.*known.bound = number;
                return;
            }
        }
        Refuse(line_, Excerpt(key) + L" is no bound; known are Fail Below, Warn Below, Warn Above, Fail Above");
    }

    void SetHead(std::wstring_view key, std::wstring_view text)
    {
        const bool isName = EqualIgnoringCase(key, "Name");
        std::wstring& target = isName ? limits_.name : limits_.date;
        if ((!isName && !EqualIgnoringCase(key, "Date")) || !target.empty()) {
            Refuse(line_, Excerpt(key) + L": [limits] has Name and Date, each once");
        }
        target = std::wstring(text);
    }

    void RequireRange(double number) const
    {
        if (FindReadingKind(section_->parameter)->isRatio && number <= 0) {
            Refuse(line_, L"a bound of " + Excerpt(section_->name) + L" has to be above 0");
        }
    }

    /// The bounds of a section stand in their order on the number line.
    void CheckBounds() const
    {
        if (!section_ || section_->isDrift || section_->isHead) {
            return;
        }
        const Limit& limit = limits_.limits[{section_->parameter, section_->orderOfQam}];
        const wchar_t* before = nullptr;
        double least = 0;
        for (const auto& known : bounds) {
            const std::optional<double>& bound = limit.*known.bound;
            if (bound && before && *bound < least) {
                Refuse(section_->line, L"in [" + section_->name + L"] \"" + known.name + L"\" is less than \"" +
                                           before +
                                           L"\"; in the order Fail Below, Warn Below, Warn Above, Fail Above the "
                                           L"bounds may not fall");
            }
            if (bound) {
                before = known.name;
                least = *bound;
            }
        }
        if (!before) {
            Refuse(section_->line, L"[" + section_->name + L"] has no bound");
        }
    }

    const std::wstring& path_;
    Limits& limits_;
    std::optional<Section> section_;
    int32_t line_ = 0;
};

}  // namespace

const Limit* Limits::Find(int32_t parameter, int32_t orderOfQam) const
{
    for (const int32_t order : {orderOfQam, 0}) {
        const auto found = limits.find({parameter, order});
        if (found != limits.end()) {
            return &found->second;
        }
    }
    return nullptr;
}

std::set<int32_t> Limits::Parameters() const
{
    std::set<int32_t> parameters;
    for (const auto& [key, limit] : limits) {
        parameters.insert(key.first);
    }
    return parameters;
}

Limits ReadLimits(std::string_view content, const std::wstring& path)
{
    RequireText(content, path, L"limits file", L"\"tvnhost limits\" prints limits to begin with.");
    Limits limits{.path = path, .name = {}, .date = {}, .sha256 = Sha256(content), .limits = {}, .drift = {}};
    LimitsReader(path, limits).Read(content);
    return limits;
}

Limits OutletLimits()
{
    return ReadLimits(OutletLimitsText(), outletName);
}

}  // namespace tvn2x
