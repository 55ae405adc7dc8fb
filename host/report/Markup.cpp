#include "host/report/Markup.h"

#include <algorithm>

#include "util/Encoding.h"

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

}  // namespace tvn2x
