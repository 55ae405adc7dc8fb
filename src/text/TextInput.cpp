#include "text/TextInput.h"

#include <algorithm>

#include "text/Blanks.h"
#include "text/InputError.h"
#include "util/Encoding.h"
#include "util/Unicode.h"

namespace tvn2x {
namespace {

constexpr size_t largestInput = 4u << 20;
constexpr size_t longestExcerpt = 40;

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
    line = TrimLine(rest_.substr(0, end));
    rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
    ++number_;
    return true;
}

std::string_view TrimLine(std::string_view line)
{
    return TrimBlanks(line.substr(0, line.find_last_not_of('\r') + 1));
}

std::wstring Excerpt(std::string_view text)
{
    return Excerpt(FromUtf8(text.substr(0, 4 * (longestExcerpt + 1))));
}

std::wstring Excerpt(std::wstring_view text)
{
    std::wstring wide(text.substr(0, longestExcerpt + 1));
    const bool cut = wide.size() > longestExcerpt;
    wide.resize(std::min(wide.size(), longestExcerpt));
    if (cut && IsHighSurrogate(static_cast<uint32_t>(wide.back()))) {
        wide.pop_back();
    }
    std::replace_if(
        wide.begin(), wide.end(), [](wchar_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0); }, L'?');
    return L"\"" + wide + (cut ? L"…\"" : L"\"");
}

void AddToList(std::wstring& list, std::string_view plainWord)
{
    list += list.empty() ? L"" : L", ";
    list.append(plainWord.begin(), plainWord.end());
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
    const auto binary = std::ranges::find_if(
        content, [](char c) { return static_cast<unsigned char>(c) < 0x20 && c != '\r' && c != '\n' && !IsBlank(c); });
    if (binary != content.end()) {
        const auto line = static_cast<int32_t>(std::count(content.begin(), binary, '\n')) + 1;
        RaiseInput(AtLine(path, line) + L"binary data: that is no " + kind + L". " + remedy);
    }
}

}  // namespace tvn2x
