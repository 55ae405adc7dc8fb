#include "host/setup/SetupText.h"

#include <algorithm>
#include <charconv>

#include "text/Blanks.h"
#include "text/TextInput.h"
#include "util/Encoding.h"
#include "util/FileText.h"

namespace tvn2x {

namespace {

constexpr std::string_view utf16Mark = "\xFF\xFE";

std::string_view WithoutQuotes(std::string_view value)
{
    const bool isQuoted =
        value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.front() == value.back();
    return isQuoted ? value.substr(1, value.size() - 2) : value;
}

}  // namespace

SetupEntry SetupSection::Find(std::string_view key) const
{
    const auto found = first.find(key);
    return found == first.end() ? SetupEntry{} : entries[found->second];
}

std::optional<NoSetupText> WhyNoSetupText(std::string_view content)
{
    if (content.find_first_not_of(" \t\r\n") == std::string_view::npos) {
        return NoSetupText{0, L"the file is empty"};
    }
    const size_t nul = content.find('\0');
    if (nul == std::string_view::npos || content.starts_with(utf16Mark)) {
        return std::nullopt;
    }
    const auto lineEnds = std::count(content.begin(), content.begin() + static_cast<ptrdiff_t>(nul), '\n');
    return NoSetupText{static_cast<int32_t>(lineEnds) + 1, L"binary data: this is no setup"};
}

SetupText::SetupText(std::string_view content, const CodePage& codePage)
    : codePage_(codePage), isUnicode_(content.starts_with(utf16Mark))
{
    // Half a unit at the end is no text.
    content_ = isUnicode_ ? file_text::FromUtf16(content.substr(utf16Mark.size(), (content.size() - 2) / 2 * 2))
                          : file_text::FromBytes(std::string(content), codePage);
    const std::string_view text = content_;
    int32_t number = 0;
    for (size_t at = 0; at < text.size();) {
        const size_t stop = std::min(text.find_first_of("\r\n", at), text.size());
        Take(TrimBlanks(text.substr(at, stop - at)), ++number);
        at = stop + (text.substr(stop, 2) == "\r\n" ? 2 : 1);
    }
}

void SetupText::Take(std::string_view line, int32_t number)
{
    if (line.empty() || line.starts_with(';')) {
        return;
    }
    if (line.starts_with('[')) {
        const std::string_view name = TrimBlanks(line.substr(1, line.find(']') - 1));
        const bool isNew = byName_.emplace(name, sections_.size()).second;
        if (isNew) {
            open_ = sections_.size();
            sections_.push_back({name, number, {}, {}});
        } else {
            open_.reset();
            repeated_.push_back({name, {}, number, false});
        }
        return;
    }
    const size_t equals = line.find('=');
    const bool hasValue = equals != std::string_view::npos;
    const SetupEntry entry{TrimBlanks(line.substr(0, equals)),
                           hasValue ? WithoutQuotes(TrimBlanks(line.substr(equals + 1))) : std::string_view(), number,
                           hasValue};
    if (!open_) {
        unread_.push_back(entry);
        return;
    }
    SetupSection& section = sections_[*open_];
    section.first.emplace(entry.key, section.entries.size());
    section.entries.push_back(entry);
}

const SetupSection* SetupText::Find(std::string_view name) const
{
    const auto found = byName_.find(name);
    return found == byName_.end() ? nullptr : &sections_[found->second];
}

SetupEntry SetupText::Find(std::string_view section, std::string_view key) const
{
    const SetupSection* const found = Find(section);
    return found ? found->Find(key) : SetupEntry{};
}

std::wstring SetupText::Wide(std::string_view text) const
{
    return file_text::ToWide(text, codePage_);
}

std::wstring SetupText::Quoted(std::string_view text) const
{
    return Excerpt(ToUtf8(Wide(text)));
}

std::string RowKey(std::string_view prefix, int32_t row)
{
    return std::string(prefix) + (row >= 0 && row < 10 ? "0" : "") + std::to_string(row);
}

std::optional<int32_t> RowOf(std::string_view prefix, std::string_view key)
{
    if (!EqualIgnoringCase(key.substr(0, prefix.size()), prefix)) {
        return std::nullopt;
    }
    const std::string_view digits = key.substr(std::min(prefix.size(), key.size()));
    int32_t row = 0;
    const auto [end, fault] = std::from_chars(digits.data(), digits.data() + digits.size(), row);
    const bool isWhole = fault == std::errc() && end == digits.data() + digits.size();
    return isWhole && row > 0 && key == std::string(key.substr(0, prefix.size())) + RowKey("", row) ? std::optional(row)
                                                                                                    : std::nullopt;
}

}  // namespace tvn2x
