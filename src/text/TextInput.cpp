#include "text/TextInput.h"

#include <algorithm>

#include "text/InputError.h"
#include "util/Encoding.h"

namespace tvn2x {

namespace {

constexpr std::string_view blanks = " \t\r\v\f";
constexpr size_t largestInput = 4u << 20;
constexpr size_t longestExcerpt = 40;

char Lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

}  // namespace

LineReader::LineReader(std::string_view content) : rest_(content)
{
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (rest_.starts_with(byteOrderMark)) {
        rest_.remove_prefix(byteOrderMark.size());
    }
}

bool LineReader::Next(std::string_view& line)
{
    if (rest_.empty()) {
        return false;
    }
    const size_t end = rest_.find('\n');
    line = TrimBlanks(rest_.substr(0, end));
    rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
    ++number_;
    return true;
}

std::string_view TrimBlanks(std::string_view text)
{
    const size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::wstring TrimBlanks(const std::wstring& text)
{
    const size_t first = text.find_first_not_of(L" \t");
    return first == std::wstring::npos ? std::wstring() : text.substr(first, text.find_last_not_of(L" \t") - first + 1);
}

bool EqualIgnoringCase(std::string_view left, std::string_view right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return Lower(a) == Lower(b); });
}

std::wstring Excerpt(std::string_view text)
{
    return Excerpt(FromUtf8(text.substr(0, 4 * longestExcerpt)));
}

std::wstring Excerpt(std::wstring_view text)
{
    std::wstring wide(text.substr(0, longestExcerpt + 1));
    const bool cut = wide.size() > longestExcerpt;
    wide.resize(std::min(wide.size(), longestExcerpt));
    std::replace_if(
        wide.begin(), wide.end(), [](wchar_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0); }, L'?');
    return L"\"" + wide + (cut ? L"…\"" : L"\"");
}

std::wstring AtLine(const std::wstring& path, int32_t line)
{
    return path + L", line " + std::to_wstring(line) + L": ";
}

void RequireText(std::string_view content, const std::wstring& path, const std::wstring& kind,
                 const std::wstring& remedy)
{
    const auto refuse = [&](const std::wstring& what) { RaiseInput(path + what + L". " + remedy); };
    if (content.find_first_not_of(" \t\r\n") == std::string_view::npos) {
        refuse(L" is empty");
    }
    if (content.size() > largestInput) {
        refuse(L" is larger than 4 MiB: that is no " + kind);
    }
    if (content.starts_with("\xFF\xFE") || content.starts_with("\xFE\xFF")) {
        refuse(L" is UTF-16 text; save it as UTF-8 first");
    }
    const auto binary = std::ranges::find_if(content, [](char c) {
        return static_cast<unsigned char>(c) < 0x20 && c != '\n' && blanks.find(c) == std::string_view::npos;
    });
    if (binary != content.end()) {
        const auto line = static_cast<int32_t>(std::count(content.begin(), binary, '\n')) + 1;
        RaiseInput(AtLine(path, line) + L"binary data: that is no " + kind + L". " + remedy);
    }
}

}  // namespace tvn2x
