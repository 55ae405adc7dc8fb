#include "host/run/ChannelSelection.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>
#include <set>
#include <string>

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "text/Blanks.h"
#include "text/InputError.h"
#include "text/TextInput.h"
#include "util/modLocaleInfo.h"

namespace tvn2x {
namespace {

using Channels = std::vector<Setup::Channel>;

/// A text between two separators. A protected one is nothing but a label.
struct Word
{
    std::wstring text;
    bool isProtected = false;
};

/// What stands between two commas: words with a dash between each two.
using Part = std::vector<Word>;

/// What a word names: a channel, a frequency (of a channel, where it has one), or nothing.
struct Place
{
    std::optional<int32_t> channel{};
    std::optional<double> frequency{};

    bool IsFound() const { return channel || frequency; }
};

[[noreturn]] void Refuse(const std::wstring& text, const std::wstring& why)
{
    RaiseInput(L"--channels: " + Excerpt(text) + L" " + why +
               L". Write labels, numbers or MHz like K45-K63,12,474; quotation marks protect a label.");
}

std::vector<Part> PartsOf(std::wstring_view selection)
{
    std::vector<Part> parts(1, Part(1));
    bool isOpen = false;
    for (const wchar_t c : selection) {
        if (c == L'"') {
            isOpen = !isOpen;
            parts.back().back().isProtected = true;
        } else if (isOpen || (c != L',' && c != L'-')) {
            parts.back().back().text += c;
        } else if (c == L'-') {
            parts.back().emplace_back();
        } else {
            parts.emplace_back(1);
        }
    }
    if (isOpen) {
        Refuse(std::wstring(selection), L"lacks a closing quotation mark");
    }
    return parts;
}

/// Some words of a part as one, with the dashes that stood between them.
Word Joined(Part::const_iterator begin, Part::const_iterator end)
{
    Word word = *begin;
    for (auto next = begin + 1; next != end; ++next) {
        word.text += L"-" + next->text;
        word.isProtected = false;
    }
    word.text = std::wstring(TrimBlanks(std::wstring_view(word.text)));
    return word;
}

/// A number without sign and exponent, nothing for any other text.
std::optional<double> NumberIn(std::wstring_view text)
{
    constexpr size_t mostDigits = 12;
    if (text.empty() || text.size() > mostDigits || text.find_first_not_of(L"0123456789.") != std::wstring_view::npos) {
        return std::nullopt;
    }
    try {
        return ParseNumber(text, L'.');
    } catch (const RaisedError&) {
        return std::nullopt;
    }
}

/// The only channel that something holds for, nothing where there is none; more than one is refused.
template <class Holds>
std::optional<int32_t> Only(const Channels& channels, const std::wstring& text, Holds holds)
{
    std::optional<int32_t> found;
    for (size_t i = 0; i < channels.size(); ++i) {
        const auto number = static_cast<int32_t>(i + 1);
        if (holds(channels[i]) && found) {
            Refuse(text, fmt::format(L"means channel {} and channel {}; give the number", *found, number));
        } else if (holds(channels[i])) {
            found = number;
        }
    }
    return found;
}

Place Find(const Word& word, const Channels& channels)
{
    constexpr double halfKilohertz = 0.0005;  // MHz
    const std::wstring& text = word.text;
    if (text.empty()) {
        return {};
    }
    if (const auto labelled = Only(channels, text, [&](const auto& channel) { return channel.userField == text; });
        labelled || word.isProtected) {
        return {.channel = labelled};
    }
    const bool hasUnit = text.ends_with(L"MHz");
    const auto number = NumberIn(TrimBlanks(std::wstring_view(text).substr(0, text.size() - (hasUnit ? 3 : 0))));
    if (!number) {
        return {};
    }
    const bool isWhole = !hasUnit && text.find(L'.') == std::wstring::npos;
    if (isWhole && *number >= 1 && *number <= static_cast<double>(channels.size())) {
        return {.channel = static_cast<int32_t>(*number)};
    }
    const auto tuned = Only(channels, text,
                            [&](const auto& channel) { return std::abs(channel.frequency - *number) < halfKilohertz; });
    return {.channel = tuned, .frequency = number};
}

std::vector<int32_t> Between(double low, double high, const Channels& channels)
{
    std::vector<int32_t> found;
    for (size_t i = 0; i < channels.size(); ++i) {
        if (channels[i].frequency >= low && channels[i].frequency <= high) {
            found.push_back(static_cast<int32_t>(i + 1));
        }
    }
    return found;
}

/// The channels of a range, none where its ends name none or stand the wrong way round. Without a second word it is
/// open.
std::vector<int32_t> Range(const Word& from, const Word& to, const Channels& channels)
{
    const Place first = Find(from, channels);
    const Place last = to.text.empty() ? Place{.channel = static_cast<int32_t>(channels.size()), .frequency = HUGE_VAL}
                                       : Find(to, channels);
    if (!first.IsFound() || !last.IsFound()) {
        return {};
    }
    const bool isOfFrequencies = first.frequency && last.frequency;
    if (!isOfFrequencies && (!first.channel || !last.channel)) {
        return {};
    }
    if (isOfFrequencies) {
        return Between(*first.frequency, *last.frequency, channels);
    }
    std::vector<int32_t> numbers(static_cast<size_t>(std::max(0, *last.channel - *first.channel + 1)));
    std::iota(numbers.begin(), numbers.end(), *first.channel);
    return numbers;
}

std::vector<int32_t> SelectPart(const Part& part, const Channels& channels)
{
    const Word whole = Joined(part.begin(), part.end());
    std::vector<int32_t> chosen;
    bool endsFirst = false;
    const auto take = [&](std::vector<int32_t> found) {
        if (!found.empty() && !chosen.empty()) {
            Refuse(whole.text, L"means two things; protect the labels with quotation marks");
        }
        chosen = chosen.empty() ? std::move(found) : chosen;
    };
    if (const auto channel = Find(whole, channels).channel) {
        take({*channel});
    }
    for (auto next = part.begin() + 1; next < part.end(); ++next) {
        const Word from = Joined(part.begin(), next);
        const Word to = Joined(next, part.end());
        take(Range(from, to, channels));
        endsFirst = endsFirst || (!from.text.empty() && !to.text.empty() && !Range(to, from, channels).empty());
    }
    if (chosen.empty() && endsFirst) {
        Refuse(whole.text, L"ends before it begins");
    }
    if (chosen.empty()) {
        Refuse(whole.text,
               fmt::format(L"is no channel and no range of channels: it is no label, no number from 1 to {} "
                           L"and no channel's frequency",
                           channels.size()));
    }
    return chosen;
}

}  // namespace

std::vector<int32_t> SelectChannels(std::wstring_view selection, const std::vector<Setup::Channel>& channels)
{
    std::set<int32_t> chosen;
    for (const Part& part : PartsOf(selection)) {
        const std::vector<int32_t> numbers = SelectPart(part, channels);
        chosen.insert(numbers.begin(), numbers.end());
    }
    return {chosen.begin(), chosen.end()};
}

std::vector<int32_t> AllChannels(const std::vector<Setup::Channel>& channels)
{
    std::vector<int32_t> all(channels.size());
    std::iota(all.begin(), all.end(), 1);
    return all;
}

}  // namespace tvn2x
