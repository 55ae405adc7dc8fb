#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "text/Folding.h"
#include "text/IniLines.h"
#include "util/CodePage.h"

namespace tvn2x {

/// A line "key=value" of a setup file; the value is as the plug-in gets it. Texts are as file_text has them.
struct SetupEntry
{
    std::string_view key;
    std::string_view value;
    int32_t line = 0;  ///< 0 for an entry that is not there
    bool hasValue = false;
};

/// All lines of one name's first section, in the file's order.
struct SetupSection
{
    std::string_view name;
    int32_t line = 0;
    std::vector<SetupEntry> entries;
    std::map<std::string_view, size_t, IgnoreCase> first;  ///< the entry of each key that hides the others

    /// That entry; one with line 0 where there is none.
    SetupEntry First(std::string_view key) const;
    /// What is read under a key: First, where it has a value.
    SetupEntry Find(std::string_view key) const;
};

/// A setup file with its line numbers, read by the rules that the plug-in reads it by (text/IniLines.h).
class SetupText
{
public:
    explicit SetupText(std::string content, const CodePage& codePage = SystemCodePage());

    /// The section that is read under a name, null where there is none.
    const SetupSection* Find(std::string_view name) const;
    SetupEntry Find(std::string_view section, std::string_view key) const;
    /// Whether a line is nothing but "[", this name and "]".
    bool Lists(std::string_view section) const;

    const std::vector<SetupSection>& Sections() const { return sections_; }
    /// Lines that stand where nothing is read: before the first section, and in a second one of the same name.
    const std::vector<SetupEntry>& Unread() const { return unread_; }
    /// Section lines whose name an earlier one has.
    const std::vector<SetupEntry>& RepeatedSections() const { return repeated_; }

    bool IsUnicode() const { return content_.isUtf16; }
    std::string_view Text() const { return content_.text; }
    std::wstring Wide(std::string_view text) const;    ///< as the plug-in gets it
    std::wstring Quoted(std::string_view text) const;  ///< as a message may quote it

private:
    void Take(std::string_view line, int32_t number);

    const CodePage& codePage_;
    ini::FileContent content_;
    std::vector<SetupSection> sections_;
    std::map<std::string_view, size_t, IgnoreCase> byName_;
    std::vector<std::string_view> listed_;
    std::vector<SetupEntry> unread_;
    std::vector<SetupEntry> repeated_;
    std::optional<size_t> open_;
};

/// "Frequency   " and 7 give "Frequency   07".
std::string RowKey(std::string_view prefix, int32_t row);
/// The row that a key names behind a prefix; nothing where it is no such key.
std::optional<int32_t> RowOf(std::string_view prefix, std::string_view key);

}  // namespace tvn2x
