#include "host/setup/SetupText.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "text/Blanks.h"
#include "text/TextInput.h"
#include "util/FileText.h"

namespace tvn2x {

SetupEntry SetupSection::First(std::string_view key) const
{
    const auto found = first.find(key);
    return found == first.end() ? SetupEntry{} : entries[found->second];
}

SetupEntry SetupSection::Find(std::string_view key) const
{
    const SetupEntry entry = First(key);
    return entry.hasValue ? entry : SetupEntry{};
}

SetupText::SetupText(std::string content, const CodePage& codePage)
    : codePage_(codePage), content_(ini::ReadContent(std::move(content), codePage))
{
    ini::LineScanner scanner(content_.text);
    int32_t number = 0;
    for (ini::Line line; scanner.Next(line);) {
        if (const auto name = ini::BracketedName(line.Text(content_.text))) {
            listed_.push_back(*name);
        }
        Take(TrimBlanks(line.Text(content_.text)), ++number);
    }
}

void SetupText::Take(std::string_view line, int32_t number)
{
    if (line.empty() || line.starts_with(';')) {
        return;
    }
    if (line.starts_with('[')) {
        const std::string_view name = ini::ParseHeader(line);
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
    const ini::Entry parsed = ini::ParseEntry(line);
    const SetupEntry entry{parsed.key, ini::ReadableValue(parsed.value), number, parsed.hasValue};
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

bool SetupText::Lists(std::string_view section) const
{
    return std::ranges::any_of(listed_, [&](std::string_view name) { return EqualIgnoringCase(name, section); });
}

std::wstring SetupText::Wide(std::string_view text) const
{
    return file_text::ToWide(ini::FirstCharacters(text), codePage_);
}

std::wstring SetupText::Quoted(std::string_view text) const
{
    return Excerpt(Wide(text));
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
    std::from_chars(digits.data(), digits.data() + digits.size(), row);
    // What is no whole number reads as another one, or as none.
    return row > 0 && key == std::string(key.substr(0, prefix.size())) + RowKey("", row) ? std::optional(row)
                                                                                         : std::nullopt;
}

}  // namespace tvn2x
