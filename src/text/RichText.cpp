#include "text/RichText.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "util/CodePage.h"
#include "util/Encoding.h"
#include "util/Unicode.h"

namespace tvn2x {
namespace {

constexpr std::wstring_view signature = L"{\\rtf";

/// Groups whose text belongs to the format or stands outside the page's own text. "\*" marks all others that a reader
/// may not know.
constexpr std::array<std::wstring_view, 22> hiddenGroups{
    L"colortbl", L"filetbl",    L"footer",    L"footerf",   L"footerl", L"footerr", L"header", L"headerf",
    L"headerl",  L"headerr",    L"info",      L"listtable", L"object",  L"objdata", L"pict",   L"nonshppict",
    L"rxe",      L"stylesheet", L"themedata", L"tc",        L"txe",     L"xe"};

/// A control word that stands for one character.
struct Symbol
{
    std::wstring_view word;
    wchar_t character;
};
constexpr std::array<Symbol, 29> symbols{
    {{L"par", L'\n'},           {L"line", L'\n'},        {L"row", L'\n'},         {L"nestrow", L'\n'},
     {L"page", L'\n'},          {L"column", L'\n'},      {L"sect", L'\n'},        {L"softline", L'\n'},
     {L"tab", L'\t'},           {L"cell", L'\t'},        {L"nestcell", L'\t'},    {L"bullet", L'\u2022'},
     {L"endash", L'\u2013'},    {L"emdash", L'\u2014'},  {L"enspace", L'\u2002'}, {L"emspace", L'\u2003'},
     {L"qmspace", L'\u2005'},   {L"lquote", L'\u2018'},  {L"rquote", L'\u2019'},  {L"ldblquote", L'\u201C'},
     {L"rdblquote", L'\u201D'}, {L"zwbo", L'\u200B'},    {L"zwnj", L'\u200C'},    {L"zwj", L'\u200D'},
     {L"ltrmark", L'\u200E'},   {L"rtlmark", L'\u200F'}, {L"zwnbo", L'\u2060'},   {L"softcol", L'\n'},
     {L"softpage", L'\n'}}};

/// Numbers of code pages as the system knows them; these two mean none of its own.
constexpr int32_t systemPage = 0;
constexpr int32_t symbolPage = 42;

/// The code page that a font's character set stands for.
struct CharacterSet
{
    int32_t number;
    int32_t page;
};
constexpr std::array<CharacterSet, 19> characterSets{{{0, 1252},
                                                      {2, symbolPage},
                                                      {77, 10000},
                                                      {128, 932},
                                                      {129, 949},
                                                      {130, 1361},
                                                      {134, 936},
                                                      {136, 950},
                                                      {161, 1253},
                                                      {162, 1254},
                                                      {163, 1258},
                                                      {177, 1255},
                                                      {178, 1256},
                                                      {186, 1257},
                                                      {204, 1251},
                                                      {222, 874},
                                                      {238, 1250},
                                                      {254, 437},
                                                      {255, 850}}};

constexpr std::wstring_view digits = L"0123456789";

bool IsLetter(wchar_t c)
{
    return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z');
}

int32_t HexDigit(wchar_t c)
{
    constexpr std::wstring_view lower = L"0123456789abcdef";
    const wchar_t folded = c >= L'A' && c <= L'F' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
    const size_t value = lower.find(folded);
    return value == std::wstring_view::npos ? -1 : static_cast<int32_t>(value);
}

/// In a font of symbols the one that editors put before the points of a list is a bullet; most others are where
/// Windows-1252 has them.
std::wstring FromSymbols(std::string_view bytes)
{
    constexpr uint32_t westernEurope = 1252;
    std::string same(bytes);
    std::ranges::replace(same, '\xB7', '\x95');
    return DecodeNumbered(westernEurope, same).value_or(FromCodePage(same));
}

std::wstring Decoded(int32_t page, const std::string& bytes)
{
    if (page == symbolPage) {
        return FromSymbols(bytes);
    }
    std::optional<std::wstring> text;
    if (page != systemPage) {
        text = DecodeNumbered(static_cast<uint32_t>(page), bytes);
    }
    return text ? *text : FromCodePage(bytes);
}

/// Reads rich text from front to back, once.
class Reader
{
public:
    explicit Reader(std::wstring_view text) : rest_(text) {}

    std::wstring Read()
    {
        while (!rest_.empty() && !ended_) {
            ReadNext();
        }
        Flush();
        return std::move(plain_);
    }

private:
    /// What holds inside a pair of braces.
    struct Group
    {
        bool isFormat = false;     ///< its text is none of the page
        bool isFontTable = false;  ///< its words say what the fonts are
        bool isHidden = false;
        bool isDeleted = false;
        int32_t fallback = 1;  ///< how many characters follow a Unicode character for readers that know none
        int32_t font = -1;

        bool IsSilent() const { return isFormat || isHidden || isDeleted; }
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
                Flush();
                outer_.push_back(group_);
                toSkip_ = 0;
                break;
            case L'}':
                Flush();
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
                AppendLiteral(c);
        }
    }

    void ReadControl()
    {
        if (rest_.empty()) {
            return;
        }
        if (IsLetter(rest_.front())) {
            ReadWord();
            return;
        }
        switch (const wchar_t c = Take()) {
            case L'\'':
                ReadByte();
                break;
            case L'*':
                group_.isFormat = true;
                break;
            case L'~':
                Append(L'\u00A0');
                break;
            case L'_':
                Append(L'\u2011');
                break;
            case L'\r':
            case L'\n':
                if (c == L'\r' && rest_.starts_with(L'\n')) {
                    Take();
                }
                Append(L'\n');
                break;
            case L'\t':
                Append(c);
                break;
            case L'\\':
            case L'{':
            case L'}':
                AppendLiteral(c);
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
        const bool isNegative =
            rest_.size() > 1 && rest_[0] == L'-' && digits.find(rest_[1]) != std::wstring_view::npos;
        if (isNegative) {
            Take();
        }
        constexpr int32_t most = 100'000'000;
        std::optional<int32_t> number;
        while (!rest_.empty() && digits.find(rest_.front()) != std::wstring_view::npos) {
            number = std::min(most, number.value_or(0) * 10 + (Take() - L'0'));
        }
        if (rest_.starts_with(L' ')) {
            Take();
        }
        if (number && isNegative) {
            number = -*number;
        }
        if (!ApplyFont(word, number.value_or(0))) {
            Apply(word, number);
        }
    }

    /// False for a word that has nothing to do with fonts and code pages.
    bool ApplyFont(std::wstring_view word, int32_t number)
    {
        if (word == L"f") {
            Flush();
            group_.font = number;
        } else if (word == L"deff") {
            defaultFont_ = number;
        } else if (word == L"ansicpg") {
            page_ = number;
        } else if (word == L"mac" || word == L"pc" || word == L"pca") {
            page_ = word == L"mac" ? 10000 : word == L"pc" ? 437 : 850;
        } else if (word == L"fonttbl") {
            group_.isFormat = group_.isFontTable = true;
        } else if (word == L"fcharset" && group_.isFontTable) {
            const auto* const set = std::ranges::find(characterSets, number, &CharacterSet::number);
            if (set != characterSets.end()) {
                fontPages_.emplace(group_.font, set->page);
            }
        } else if (word == L"cpg" && group_.isFontTable) {
            fontPages_[group_.font] = number;
        } else {
            return false;
        }
        return true;
    }

    void Apply(std::wstring_view word, std::optional<int32_t> number)
    {
        if (word == L"u") {
            AppendUnicode(number.value_or(0));
            toSkip_ = group_.IsSilent() ? 0 : group_.fallback;
        } else if (word == L"uc") {
            group_.fallback = std::clamp(number.value_or(1), 0, 16);
        } else if (word == L"bin") {
            rest_.remove_prefix(std::min(rest_.size(), static_cast<size_t>(std::max(number.value_or(0), 0))));
        } else if (word == L"v") {
            Flush();
            group_.isHidden = number != 0;
        } else if (word == L"deleted") {
            Flush();
            group_.isDeleted = number != 0;
        } else if (word == L"plain") {
            Flush();
            group_.isHidden = group_.isDeleted = false;
            group_.font = -1;
        } else if (std::ranges::find(hiddenGroups, word) != hiddenGroups.end()) {
            group_.isFormat = true;
        } else if (const auto symbol = std::ranges::find(symbols, word, &Symbol::word); symbol != symbols.end()) {
            Append(symbol->character);
        }
    }

    void ReadByte()
    {
        if (rest_.size() < 2) {
            return;
        }
        const int32_t high = HexDigit(rest_[0]);
        const int32_t low = HexDigit(rest_[1]);
        if (high < 0 || low < 0) {
            return;
        }
        rest_.remove_prefix(2);
        if (!Skipped() && high + low != 0) {
            AppendByte(static_cast<char>(high * 16 + low));
        }
    }

    /// Whether the next character stays out: it is not to be read, or stands in for a Unicode character.
    bool Skipped()
    {
        if (toSkip_ == 0) {
            return group_.IsSilent();
        }
        --toSkip_;
        return true;
    }

    void Append(wchar_t c)
    {
        if (Skipped()) {
            return;
        }
        Flush();
        plain_ += c;
    }

    /// A character as it stands in the text. Behind half a character of two bytes it may be the other half.
    void AppendLiteral(wchar_t c)
    {
        if (bytes_.empty() || c >= 0x80) {
            Append(c);
        } else if (!Skipped()) {
            AppendByte(static_cast<char>(c));
        }
    }

    void AppendByte(char byte)
    {
        EndPair();
        bytes_ += byte;
    }

    void AppendUnicode(int32_t number)
    {
        const auto unit = static_cast<uint32_t>(number < 0 ? number + static_cast<int32_t>(firstPair) : number);
        FlushBytes();
        if (group_.IsSilent()) {
            return;
        }
        const uint32_t high = std::exchange(highSurrogate_, 0);
        const bool isPair = high != 0 && IsLowSurrogate(unit);
        if (high != 0 && !isPair) {
            AppendCharacter(plain_, replacementCharacter);
        }
        if (IsHighSurrogate(unit)) {
            highSurrogate_ = unit;
        } else if (isPair) {
            AppendCharacter(plain_, JoinedSurrogates(high, unit));
        } else if (unit != 0) {
            AppendCharacter(plain_, IsLowSurrogate(unit) || unit > lastCharacter ? replacementCharacter : unit);
        }
    }

    void Flush()
    {
        EndPair();
        FlushBytes();
    }

    /// Half a surrogate pair whose other half does not come.
    void EndPair()
    {
        if (std::exchange(highSurrogate_, 0) != 0) {
            AppendCharacter(plain_, replacementCharacter);
        }
    }

    /// A character may take several bytes, so they are converted together.
    void FlushBytes()
    {
        if (bytes_.empty()) {
            return;
        }
        const auto font = fontPages_.find(group_.font < 0 ? defaultFont_ : group_.font);
        plain_ += Decoded(font == fontPages_.end() ? page_ : font->second, std::exchange(bytes_, {}));
    }

    std::wstring_view rest_;
    std::wstring plain_;
    std::string bytes_;  ///< in a code page, not yet converted
    std::vector<Group> outer_;
    Group group_;
    int32_t page_ = systemPage;
    int32_t defaultFont_ = 0;
    std::map<int32_t, int32_t> fontPages_;  ///< of the fonts that have one of their own
    int32_t toSkip_ = 0;
    uint32_t highSurrogate_ = 0;
    bool ended_ = false;
};

/// The same text with "\n" for each line end.
std::wstring WithPlainLineEnds(std::wstring_view text)
{
    std::wstring plain;
    plain.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        const bool isPair = text.substr(i, 2) == L"\r\n";
        if (!isPair) {
            plain += text[i] == L'\r' ? L'\n' : text[i];
        }
    }
    return plain;
}

}  // namespace

std::wstring PlainText(std::wstring_view notes)
{
    std::wstring plain = notes.starts_with(signature) ? Reader(notes).Read() : WithPlainLineEnds(notes);
    plain.erase(plain.find_last_not_of(L'\n') + 1);
    return plain;
}

}  // namespace tvn2x
