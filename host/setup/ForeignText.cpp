#include "host/setup/ForeignText.h"

#include <algorithm>

namespace tvn2x {
namespace {

const std::wstring remedy = L"Save it in a text editor as UTF-16 LE (\"Unicode\")";

/// The line in which a place of a file stands, from 1.
int32_t LineOf(std::string_view content, size_t at)
{
    int32_t line = 1;
    for (size_t i = 0; i < at; ++i) {
        const bool isPair = content[i] == '\r' && content.substr(i + 1).starts_with('\n');
        line += content[i] == '\n' || (content[i] == '\r' && !isPair) ? 1 : 0;
    }
    return line;
}

/// A NUL ends the value that it stands in. Whatever else has one is hardly a setup.
std::optional<SetupRemark> BinaryRemark(const SetupText& setup)
{
    const size_t nul = setup.Text().find('\0');
    if (nul == std::string_view::npos) {
        return std::nullopt;
    }
    const bool isSetup = setup.Find("Application", "Name").line != 0;
    return SetupRemark{
        LineOf(setup.Text(), nul),
        isSetup ? L"a NUL character, which ends what is read of its line" : L"binary data: this is no setup", !isSetup};
}

}  // namespace

std::optional<SetupRemark> ForeignTextRemark(std::string_view bytes, const SetupText& setup, const CodePage& codePage)
{
    if (auto binary = BinaryRemark(setup)) {
        return binary;
    }
    const auto other = std::ranges::find_if(bytes, [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
    if (setup.IsUnicode() || other == bytes.end()) {
        return std::nullopt;
    }
    if (bytes.starts_with("\xEF\xBB\xBF")) {
        return SetupRemark{
            1, L"the file begins with the mark of UTF-8, which is read as the beginning of its first line. " + remedy,
            setup.Find("Application", "Name").line == 0};
    }
    const int32_t line = LineOf(bytes, static_cast<size_t>(other - bytes.begin()));
    const bool isSystemUtf8 = codePage.Encode(L"µ") == Utf8CodePage().Encode(L"µ");
    if (!isSystemUtf8 && Utf8CodePage().DecodeStrictly(bytes)) {
        return SetupRemark{line,
                           L"the file looks like UTF-8, but is read in the system's code page: \"µ\" is read as \"" +
                               codePage.Decode(Utf8CodePage().Encode(L"µ")) + L"\". " + remedy};
    }
    if (!codePage.DecodeStrictly(bytes)) {
        return SetupRemark{
            line,
            L"the file has bytes that are no characters of the system's code page: another one has written it, "
            L"and no text beyond the code page can be saved into it. Open it in a text editor in the code page "
            L"that it was written in. " +
                remedy};
    }
    return std::nullopt;
}

std::wstring UnitBefore(std::wstring_view text)
{
    constexpr size_t longest = 6;  // two bytes of the sign, each read as a character, and one to spare
    const bool isFramed = text.size() > 3 && text.size() <= longest && text.starts_with(L"dB") &&
                          (text.back() == L'V' || text.back() == L'W');
    const auto isOther = [](wchar_t c) { return c == L'?' || c >= 0x80; };
    return isFramed && std::ranges::all_of(text.substr(2, text.size() - 3), isOther)
               ? std::wstring(L"dBµ") + text.back()
               : L"";
}

}  // namespace tvn2x
