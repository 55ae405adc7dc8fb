#include "setup/ProfileText.h"

#include <algorithm>

#include "text/Blanks.h"
#include "text/IniLines.h"
#include "util/FileText.h"

namespace tvn2x::profile {

std::string_view TrimSpaces(std::string_view text)
{
    while (!text.empty() && text.front() == ' ') {
        text.remove_prefix(1);
    }
    while (!text.empty() && text.back() == ' ') {
        text.remove_suffix(1);
    }
    return text;
}

std::string_view ReadableDefault(std::string_view text)
{
    while (text.size() > 1 && text.back() == ' ') {
        text.remove_suffix(1);
    }
    return ini::ReadableValue(text);
}

bool IsWritable(std::string_view text)
{
    return ini::FirstCharacters(text).size() == text.size() &&
           std::none_of(text.begin(), text.end(), [](char c) { return c == '\r' || c == '\n' || c == '\0'; });
}

bool IsPlainKey(std::string_view key)
{
    if (key.empty()) {
        return true;
    }
    return key.front() != ';' && key.front() != '[' && !IsBlank(key.front()) && !IsBlank(key.back()) &&
           std::none_of(key.begin(), key.end(), [](char c) { return c == '=' || c == '\r' || c == '\n'; });
}

bool IsPlainSection(std::string_view section)
{
    if (section.empty()) {
        return true;
    }
    return !IsBlank(section.front()) && !IsBlank(section.back()) &&
           std::none_of(section.begin(), section.end(), [](char c) { return c == ']' || c == '\r' || c == '\n'; });
}

std::string FromCaller(std::wstring_view text)
{
    return file_text::FromWide(text.substr(0, text.find(L'\0')));
}

}  // namespace tvn2x::profile
