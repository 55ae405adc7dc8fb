#include "host/report/Markup.h"

#include <algorithm>

#include "host/terminal/Words.h"
#include "text/Blanks.h"
#include "util/Encoding.h"
#include "util/Unicode.h"

namespace tvn2x {
namespace {

/// UTF-8 without the control characters and noncharacters that XML excludes.
std::string Allowed(std::wstring text)
{
    std::ranges::replace_if(
        text,
        [](wchar_t c) {
            const auto code = static_cast<char32_t>(c);
            return (code < 0x20 && c != L'\t' && c != L'\n' && c != L'\r') || code == 0xFFFE || code == 0xFFFF;
        },
        L'\xFFFD');
    return ToUtf8(text);
}

}  // namespace

std::string Escape(std::wstring_view text)
{
    std::string escaped;
    for (const char c : Allowed(std::wstring(text))) {
        switch (c) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            case '"':
                escaped += "&quot;";
                break;
            case '\'':
                escaped += "&#39;";
                break;
            default:
                escaped += c;
        }
    }
    return escaped;
}

std::wstring Shortened(std::wstring_view text, int32_t columns)
{
    if (DisplayWidth(text) <= columns) {
        return std::wstring(text);
    }
    size_t end = text.size();
    while (end > 0 && DisplayWidth(text.substr(0, end)) >= columns) {
        --end;
    }
    // A character of two units stays whole: the second one has no width.
    const bool isSplit = end > 0 && IsHighSurrogate(static_cast<uint32_t>(text[end - 1]));
    return std::wstring(TrimBlanks(text.substr(0, isSplit ? end - 1 : end))) + L"…";
}

}  // namespace tvn2x
