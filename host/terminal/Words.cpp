#include "host/terminal/Words.h"

#include <algorithm>
#include <numeric>

namespace tvn2x {
namespace {

bool IsWithoutWidth(wchar_t c)
{
    return (c >= 0x300 && c < 0x370) || (c >= 0xDC00 && c < 0xE000) || (c >= 0x200B && c < 0x2010) ||
           (c >= 0xFE00 && c < 0xFE10);
}

/// Controls of the terminal, line and paragraph separators, and the marks that turn the direction of a text.
bool IsControl(wchar_t c)
{
    return c < 0x20 || (c >= 0x7F && c < 0xA0) || (c >= 0x2028 && c < 0x202F) || (c >= 0x2066 && c < 0x206A);
}

/// Cuts off the front of a word what fits into width columns, one character at least.
std::wstring TakeFront(std::wstring& word, int32_t width)
{
    size_t end = 1;
    while (end < word.size() &&
           (IsWithoutWidth(word[end]) || DisplayWidth(std::wstring_view(word).substr(0, end + 1)) <= width)) {
        ++end;
    }
    std::wstring front = word.substr(0, end);
    word.erase(0, end);
    return front;
}

/// How many letters have to be added, taken out or changed to make one word of the other.
size_t Distance(std::string_view left, std::string_view right)
{
    std::vector<size_t> row(right.size() + 1);
    std::iota(row.begin(), row.end(), size_t{0});
    for (const char letter : left) {
        size_t diagonal = row[0]++;
        for (size_t j = 0; j < right.size(); ++j) {
            const size_t changed = diagonal + (letter != right[j]);
            diagonal = row[j + 1];
            row[j + 1] = std::min({changed, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

}  // namespace

int32_t DisplayWidth(std::wstring_view text)
{
    int32_t width = 0;
    for (const wchar_t unit : text) {
        const auto c = static_cast<char32_t>(unit);
        const bool isWide = (c >= 0x1100 && c < 0x1160) || (c >= 0x2E80 && c < 0xA4D0) || (c >= 0xAC00 && c < 0xDC00) ||
                            (c >= 0xF900 && c < 0xFB00) || (c >= 0xFE30 && c < 0xFE70) || (c >= 0xFF00 && c < 0xFF61) ||
                            c > 0xFFFF;
        width += IsWithoutWidth(unit) ? 0 : isWide ? 2 : 1;
    }
    return width;
}

std::wstring Printable(std::wstring_view text)
{
    std::wstring printable;
    for (size_t at = 0; at < text.size(); ++at) {
        const bool isLineEnd = text[at] == L'\n';
        if (text.substr(at, 2) != L"\r\n") {
            printable += IsControl(text[at]) && !isLineEnd ? L' ' : text[at];
        }
    }
    return printable;
}

std::vector<std::wstring> WrappedLines(std::wstring_view line, int32_t width, bool breaksWords)
{
    if (DisplayWidth(line) <= width) {
        return {std::wstring(line)};
    }
    std::vector<std::wstring> lines;
    size_t begin = 0;
    while (begin < line.size()) {
        const size_t end = std::min(line.find(L' ', std::max(begin, line.find_first_not_of(L' ', begin))), line.size());
        std::wstring word(line.substr(begin, end - begin));
        begin = end + 1;
        if (!lines.empty() && DisplayWidth(lines.back()) + 1 + DisplayWidth(word) <= width) {
            lines.back() += L" " + word;
            continue;
        }
        word.erase(0, lines.empty() ? 0 : std::min(word.find_first_not_of(L' '), word.size()));
        while (breaksWords && DisplayWidth(word) > width) {
            lines.push_back(TakeFront(word, width));
        }
        if (!word.empty()) {
            lines.push_back(std::move(word));
        }
    }
    return lines;
}

std::wstring WrapWords(std::wstring_view text, int32_t width)
{
    if (width <= 0) {
        return std::wstring(text);
    }
    std::wstring wrapped;
    while (!text.empty()) {
        const size_t end = text.find(L'\n');
        bool isFirst = true;
        for (const std::wstring& line : WrappedLines(text.substr(0, end), width, false)) {
            wrapped += (isFirst ? L"" : L"\n") + line;
            isFirst = false;
        }
        wrapped += end == std::wstring_view::npos ? L"" : L"\n";
        text.remove_prefix(end == std::wstring_view::npos ? text.size() : end + 1);
    }
    return wrapped;
}

std::string NearestWord(std::string_view typed, const std::vector<std::string>& known)
{
    std::string nearest;
    size_t least = std::max<size_t>(2, typed.size() / 3) + 1;
    for (const std::string& word : known) {
        if (const size_t distance = Distance(typed, word); distance < least) {
            least = distance;
            nearest = word;
        }
    }
    return nearest;
}

}  // namespace tvn2x
