#include "host/setup/UnsavableText.h"

namespace tvn2x {

std::wstring UnsavableText(std::wstring_view text, bool mayHaveLines)
{
    constexpr size_t longest = 32767;
    size_t stored = text.size();
    size_t line = 1;
    for (size_t at = 0; at < text.size(); ++at) {
        if (text[at] == L'\0') {
            return L"it holds a NUL character. Take it out";
        }
        if (text[at] != L'\r' && text[at] != L'\n') {
            continue;
        }
        const bool isPair = text.substr(at, 2) == L"\r\n";
        if (!mayHaveLines) {
            return L"it has more than one line. Write it in one";
        }
        if (!isPair) {
            return L"line " + std::to_wstring(line) + L" ends with " + (text[at] == L'\r' ? L"CR" : L"LF") +
                   L" alone. End each line with CR LF";
        }
        ++at;
        ++line;
        stored += 2;  // a line end is stored as four characters
    }
    return stored > longest ? L"it is longer than 32,767 characters (a line end counts as four). Shorten it" : L"";
}

}  // namespace tvn2x
