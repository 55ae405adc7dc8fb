#include "measure/RichText.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>
#include <vector>

#include "util/Encoding.h"

namespace tvn2x {
namespace {

constexpr std::wstring_view signature = L"{\\rtf";

/// Groups whose text belongs to the format. "\*" marks all others that a reader may not know.
constexpr std::array<std::wstring_view, 12> hiddenGroups{L"colortbl", L"fonttbl", L"footer", L"footerf",
                                                         L"footerl",  L"footerr", L"header", L"headerf",
                                                         L"headerl",  L"headerr", L"info",   L"stylesheet"};
constexpr std::array<std::wstring_view, 3> hiddenObjects{L"object", L"pict", L"themedata"};

struct Symbol
{
    std::wstring_view word;
    wchar_t character;
};
constexpr std::array<Symbol, 14> symbols{{{L"par", L'\n'},
                                          {L"line", L'\n'},
                                          {L"row", L'\n'},
                                          {L"page", L'\n'},
                                          {L"sect", L'\n'},
                                          {L"tab", L'\t'},
                                          {L"cell", L'\t'},
                                          {L"bullet", L'\u2022'},
                                          {L"endash", L'\u2013'},
                                          {L"emdash", L'\u2014'},
                                          {L"lquote", L'\u2018'},
                                          {L"rquote", L'\u2019'},
                                          {L"ldblquote", L'\u201C'},
                                          {L"rdblquote", L'\u201D'}}};

constexpr std::wstring_view digits = L"0123456789";

bool IsLetter(wchar_t c)
{
    return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z');
}

int32_t HexDigit(wchar_t c)
{
    constexpr std::wstring_view lower = L"0123456789abcdef";
    const wchar_t folded = c >= L'A' && c <= L'F' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
    const std::size_t value = lower.find(folded);
    return value == std::wstring_view::npos ? -1 : static_cast<int32_t>(value);
}

/// Reads rich text from front to back, once.
class Reader
{
public:
    explicit Reader(std::wstring_view text) : rest_(text) {}

    std::wstring Read()
    {
        while (!rest_.empty() && !ended_)
            ReadNext();
        FlushBytes();
        return std::move(plain_);
    }

private:
    struct Group
    {
        bool hidden = false;
        int32_t fallback = 1;  ///< how many characters follow a Unicode character for readers that know none
    };

    wchar_t Take()
    {
        const wchar_t c = rest_.front();
        rest_.remove_prefix(1);
        return c;
    }

    void ReadNext()
    {
        const wchar_t c = Take();
        switch (c) {
            case L'{':
                FlushBytes();
                outer_.push_back(group_);
                toSkip_ = 0;
                break;
            case L'}':
                FlushBytes();
                ended_ = outer_.size() <= 1;
                if (!outer_.empty()) {
                    group_ = outer_.back();
                    outer_.pop_back();
                }
                toSkip_ = 0;
                break;
            case L'\\':
                ReadControl();
                break;
            case L'\r':
            case L'\n':
            case L'\0':
                break;
            default:
                Append(c);
        }
    }

    void ReadControl()
    {
        if (rest_.empty())
            return;
        if (IsLetter(rest_.front())) {
            ReadWord();
            return;
        }
        switch (const wchar_t c = Take()) {
            case L'\'':
                ReadByte();
                break;
            case L'*':
                group_.hidden = true;
                break;
            case L'~':
                Append(L'\u00A0');
                break;
            case L'_':
                Append(L'\u2011');
                break;
            case L'\r':
            case L'\n':
                if (c == L'\r' && rest_.starts_with(L'\n'))
                    Take();
                Append(L'\n');
                break;
            case L'\\':
            case L'{':
            case L'}':
                Append(c);
                break;
            default:  // marks for the typesetter, such as a place to hyphenate
                break;
        }
    }

    void ReadWord()
    {
        const auto end = std::ranges::find_if_not(rest_, IsLetter);
        const std::wstring_view word(rest_.begin(), end);
        rest_.remove_prefix(word.size());
        const bool negative = rest_.size() > 1 && rest_[0] == L'-' && digits.find(rest_[1]) != std::wstring_view::npos;
        if (negative)
            Take();
        constexpr int32_t most = 100'000'000;
        int32_t value = 0;
        while (!rest_.empty() && digits.find(rest_.front()) != std::wstring_view::npos)
            value = std::min(most, value * 10 + (Take() - L'0'));
        if (rest_.starts_with(L' '))
            Take();
        Apply(word, negative ? -value : value);
    }

    void Apply(std::wstring_view word, int32_t value)
    {
        if (word == L"u") {
            AppendUnicode(static_cast<uint16_t>(value));
            toSkip_ = group_.hidden ? 0 : group_.fallback;
        } else if (word == L"uc") {
            group_.fallback = std::clamp(value, 0, 16);
        } else if (word == L"bin") {
            rest_.remove_prefix(std::min(rest_.size(), static_cast<std::size_t>(std::max(value, 0))));
        } else if (std::ranges::find(hiddenGroups, word) != hiddenGroups.end() ||
                   std::ranges::find(hiddenObjects, word) != hiddenObjects.end()) {
            group_.hidden = true;
        } else if (const auto symbol = std::ranges::find(symbols, word, &Symbol::word); symbol != symbols.end()) {
            Append(symbol->character);
        }
    }

    void ReadByte()
    {
        if (rest_.size() < 2)
            return;
        const int32_t high = HexDigit(rest_[0]);
        const int32_t low = HexDigit(rest_[1]);
        if (high < 0 || low < 0)
            return;
        rest_.remove_prefix(2);
        if (!Skipped())
            bytes_ += static_cast<char>(high * 16 + low);
    }

    /// Whether the next character stays out: it belongs to the format, or stands in for a Unicode character.
    bool Skipped()
    {
        if (toSkip_ == 0)
            return group_.hidden;
        --toSkip_;
        return true;
    }

    void Append(wchar_t c)
    {
        if (Skipped())
            return;
        FlushBytes();
        plain_ += c;
    }

    void AppendUnicode(char32_t unit)
    {
        FlushBytes();
        const char32_t high = std::exchange(highSurrogate_, 0);
        if (group_.hidden)
            return;
        const bool second = unit >= 0xDC00 && unit < 0xE000;
        if (sizeof(wchar_t) > 2 && unit >= 0xD800 && unit < 0xDC00)
            highSurrogate_ = unit;
        else if (sizeof(wchar_t) > 2 && second && high != 0)
            plain_ += static_cast<wchar_t>(0x10000 + ((high - 0xD800) << 10) + (unit - 0xDC00));
        else
            plain_ += static_cast<wchar_t>(unit);
    }

    /// A character may take several bytes, so they are converted together.
    void FlushBytes()
    {
        if (!bytes_.empty())
            plain_ += FromCodePage(std::exchange(bytes_, {}));
    }

    std::wstring_view rest_;
    std::wstring plain_;
    std::string bytes_;  ///< in the code page, not yet converted
    std::vector<Group> outer_;
    Group group_;
    int32_t toSkip_ = 0;
    char32_t highSurrogate_ = 0;
    bool ended_ = false;
};

}  // namespace

std::wstring PlainText(std::wstring_view notes)
{
    return notes.starts_with(signature) ? Reader(notes).Read() : std::wstring(notes);
}

}  // namespace tvn2x
