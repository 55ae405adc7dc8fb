#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "setup/NameIndex.h"
#include "setup/ProfileText.h"
#include "text/IniLines.h"
#include "util/CodePage.h"

namespace tvn2x {

/// One initialisation file ("[section]" lines, then "key=value" lines) in memory: read once, indexed, changed,
/// rendered.
///
/// The rules are those of the operating system's profile functions: names ignore case and the blanks round them, the
/// first section of a name and the first key of a name win, a line that begins with ";" is a comment, a line that
/// begins with "[" opens a section whether or not its "]" is there, keys before the first section cannot be reached,
/// and a value loses the blanks and then one pair of quotes round it. Bytes that no write touches are rendered as they
/// were; a new line ends like most lines of the file, CR LF in a new file, and follows the section's last key, or its
/// "[" line: the comments and blank lines behind that may belong to the next section.
///
/// The file is in the system code page, or in UTF-16LE where it has that mark; a text that the code page cannot hold
/// makes it a UTF-16LE file, comments and all. Texts are handed in and out as file_text has them (profile::FromCaller
/// and Decode), so that a byte of one character is never taken for another. Work and memory grow with the file's size
/// alone, whatever its lines are: a section's keys are indexed when one of them is first asked for, at no more than
/// three bytes for each byte of the section.
class ProfileFile
{
public:
    ProfileFile() = default;
    /// Takes over the bytes of a file. Raises bad_alloc where their text is above 2 GiB.
    explicit ProfileFile(std::string content, const CodePage& codePage = SystemCodePage());

    bool IsUnicode() const { return utf16_; }
    /// A text as callers get it.
    std::wstring Decode(std::string_view text) const;

    /// The value of a key, nothing where there is no such key or its line has no "=". Valid until the next write.
    std::optional<std::string_view> Find(std::string_view section, std::string_view key) const;
    /// The same, or the default as the system hands it out.
    std::string_view GetString(std::string_view section, std::string_view key, std::string_view defaultValue) const;
    /// The value as a number modulo 2^32; the default where there is no value or an empty one.
    uint32_t GetInt(std::string_view section, std::string_view key, uint32_t defaultValue) const;
    bool HasSection(std::string_view section) const { return FindSection(section) != nowhere; }
    /// The lines of a section without comments and blank lines, "key=value" without the blanks round key and value.
    std::vector<std::string> GetSection(std::string_view section) const;
    /// The names of all sections in the file's order, repeated ones included.
    std::vector<std::string> GetSectionNames() const;
    /// What stands between the brackets of every line that begins with "[" and ends with "]".
    std::vector<std::string> GetBracketedLines() const;

    /// Sets a key, or removes it where there is no value; a missing section is appended. False, and nothing is changed,
    /// where a text is longer than 32,767 characters or holds CR, LF or NUL, or where the code page cannot hold it and
    /// the file has bytes that are no character there. A value that is there already is left untouched.
    bool Write(std::string_view section, std::string_view key, std::optional<std::string_view> value);
    /// Removes a section from its "[" line to the next one. False for a name that cannot be written.
    bool DeleteSection(std::string_view section);

    bool Changed() const { return changed_; }
    size_t TextSize() const { return content_.size(); }  ///< of the file as it was read, in bytes of UTF-8
    /// The bytes of the file with every change in them.
    std::string Render() const;

private:
    static constexpr uint32_t nowhere = profile::NameIndex::nowhere;
    static constexpr uint32_t writtenMark = 0x80000000;  ///< a place is an offset, or the number of a written line
    static constexpr uint32_t openMark = 0x80000000;     ///< likewise of a section's "[" line, or of an open section

    /// From a line to the next one with the same key.
    struct Link
    {
        uint32_t from;
        uint32_t to;
    };
    /// The first section of a name. [head, body) is its "[" line, [body, end) its lines. A new one stands at the end of
    /// the file, and its name is what was written.
    struct Section
    {
        uint32_t head = 0;
        uint32_t body = 0;
        uint32_t end = 0;
        uint32_t insert = 0;  ///< where new lines go: behind the last key line that is left, or behind the "[" line
        uint32_t added = 0;   ///< how many new lines are there
        uint32_t nameAt = nowhere;
        uint32_t nameLength = 0;
        uint32_t repeated = 0;    ///< how many lines have a key that stands above them already
        std::vector<Link> links;  ///< of those keys, by `from`; made when a key of the section is first removed
        profile::NameIndex keys;
    };
    /// A line that a write has made: in place of the line whose key stands at `base`, or new.
    struct Written
    {
        uint32_t section;
        uint32_t textAt;
        uint32_t length;
        uint32_t base;
        bool removed = false;
    };
    /// Where a written line comes into the old content: in place of the line that begins there, or in front of it.
    struct Edit
    {
        uint32_t at;
        uint32_t written;
        bool insertion;
    };

    void IndexSections();
    uint32_t NextHeader(size_t from) const;
    uint32_t OpenSection(uint32_t head) const;
    void IndexKeys(uint32_t section) const;
    void Settle();
    void Reset(std::string content);
    bool Admit(std::initializer_list<std::string_view> texts);
    ProfileFile Rendered() const { return ProfileFile(Render(), *codePage_); }

    uint32_t FindSection(std::string_view name) const;
    std::string_view SectionName(uint32_t place) const;
    profile::NameIndex::Slot* FindKey(uint32_t section, std::string_view key) const;
    bool IsAt(uint32_t place, uint32_t section, std::string_view key) const;
    std::optional<std::string_view> FindLine(uint32_t section, std::string_view key) const;
    bool IsRemoved(const profile::NameIndex::Slot& slot) const
    {
        return (slot.place & writtenMark) != 0 && written_[slot.place & ~writtenMark].removed;
    }
    std::string_view LineAt(uint32_t place) const;
    ini::Line LineAround(uint32_t base) const;
    ini::Line LineBefore(uint32_t next) const;
    std::string_view LineEnd() const;

    uint32_t AppendSection(std::string_view name, bool indexed);
    uint32_t AddText(std::string_view key, std::string_view value);
    uint32_t AddWritten(uint32_t section, std::string_view key, std::string_view value, uint32_t base);
    uint32_t AddNew(uint32_t section, std::string_view key, std::string_view value);
    void LeaveRemovedKeys(uint32_t section);
    bool IsRemovedLine(uint32_t section, std::string_view line) const;
    void SetValue(profile::NameIndex::Slot& slot, uint32_t section, std::string_view newKey, std::string_view value);
    void Remove(profile::NameIndex::Slot& slot, uint32_t section);
    void LinkRepeatedKeys(uint32_t section);
    std::vector<Edit> SortedEdits() const;
    std::string RenderText() const;

    const CodePage* codePage_ = &SystemCodePage();
    std::string content_;
    std::string pool_;  ///< names and lines that were written
    bool utf16_ = false;
    std::string oddByte_;  ///< the last byte of a UTF-16 file with half a unit at its end
    bool changed_ = false;
    std::vector<Written> written_;
    // What is known of the content, found out when it is needed.
    mutable std::string_view lineEnd_;         ///< the one that most lines have, "" while nobody has asked
    mutable std::vector<Section> sections_;    ///< those that were asked for
    mutable profile::NameIndex sectionIndex_;  ///< the first section of each name
    mutable uint32_t nextLine_ = 0;  ///< the line behind the one that was found last: most callers read in file order
};

}  // namespace tvn2x
