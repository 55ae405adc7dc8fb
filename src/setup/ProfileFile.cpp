#include "setup/ProfileFile.h"

#include <algorithm>
#include <new>
#include <optional>
#include <utility>

#include "text/Blanks.h"
#include "text/Folding.h"
#include "util/FileText.h"

namespace tvn2x {

using ini::Line;
using ini::LineScanner;
using profile::NameIndex;

namespace {

constexpr size_t largestContent = 0x7FFFFFFF;

bool IsLineEnd(char c)
{
    return c == '\r' || c == '\n';
}

/// No fewer lines than a text has; where all of them end alike, exactly as many.
size_t MostLines(std::string_view text)
{
    const auto count = [text](char end) {
        size_t ends = 0;
        for (size_t at = 0; (at = text.find(end, at)) != std::string_view::npos; ++at) {
            ++ends;
        }
        return ends;
    };
    const size_t lineFeeds = count('\n');
    const size_t returns = count('\r');
    return 1 + (lineFeeds == returns ? lineFeeds : lineFeeds + returns);
}

/// How many different names `lines` lines can have at most: those that are shorter than `shortestLine` characters soon
/// come again, in any alphabet but the largest.
size_t MostNames(size_t lines, std::string_view text, size_t shortestLine)
{
    constexpr size_t shortNames = 0x10100;
    const auto characters = static_cast<size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
    return std::min(lines, characters / shortestLine + shortNames);
}

/// The names that the lines of a content have, as `nameIn` finds them.
template <class NameIn>
std::vector<std::string> NamesIn(std::string_view content, NameIn nameIn)
{
    std::vector<std::string> names;
    LineScanner scanner(content);
    Line line;
    while (scanner.Next(line)) {
        if (const std::optional<std::string_view> name = nameIn(line.Text(content))) {
            names.emplace_back(*name);
        }
    }
    return names;
}

}  // namespace

ProfileFile::ProfileFile(std::string content, const CodePage& codePage) : codePage_(&codePage)
{
    ini::FileContent read = ini::ReadContent(std::move(content), codePage);
    utf16_ = read.isUtf16;
    oddByte_ = std::move(read.oddByte);
    Reset(std::move(read.text));
}

std::wstring ProfileFile::Decode(std::string_view text) const
{
    return file_text::ToWide(text, *codePage_);
}

void ProfileFile::Reset(std::string content)
{
    if (content.size() > largestContent) {
        throw std::bad_alloc();
    }
    content_ = std::move(content);
    pool_.clear();
    sections_.clear();
    written_.clear();
    lineEnd_ = {};
    nextLine_ = 0;
    sectionIndex_.Clear();
    IndexSections();
}

/// The first line from the line start `from` on that opens a section, the content's size where none does.
uint32_t ProfileFile::NextHeader(size_t from) const
{
    size_t at = from;
    while ((at = content_.find('[', at)) != std::string::npos) {
        size_t start = at;
        while (start > from && IsBlank(content_[start - 1])) {
            --start;
        }
        if (start == from || IsLineEnd(content_[start - 1])) {
            return static_cast<uint32_t>(start);
        }
        ++at;
    }
    return static_cast<uint32_t>(content_.size());
}

void ProfileFile::IndexSections()
{
    size_t headers = 0;
    for (uint32_t head = NextHeader(0); head < content_.size(); head = NextHeader(LineAround(head).next)) {
        ++headers;
    }
    constexpr size_t shortestLine = 5;
    sectionIndex_.Reserve(MostNames(headers, content_, shortestLine));
    for (uint32_t head = NextHeader(0); head < content_.size(); head = NextHeader(LineAround(head).next)) {
        const std::string_view name = SectionName(head);
        const uint32_t hash = HashIgnoringCase(name);
        const auto same = [&](uint32_t other) { return EqualIgnoringCase(SectionName(other), name); };
        if (sectionIndex_.Find(hash, same) == nullptr) {
            sectionIndex_.Add(hash, head);
        }
    }
}

/// The number of a section whose "[" line is at `head`, with its keys indexed.
uint32_t ProfileFile::OpenSection(uint32_t head) const
{
    const auto section = static_cast<uint32_t>(sections_.size());
    const size_t body = LineAround(head).next;
    Section& opened = sections_.emplace_back();
    opened.head = head;
    opened.body = static_cast<uint32_t>(body);
    opened.end = NextHeader(body);
    opened.insert = opened.body;
    IndexKeys(section);
    return section;
}

void ProfileFile::IndexKeys(uint32_t section) const
{
    Section& opened = sections_[section];
    const std::string_view lines = std::string_view(content_).substr(0, opened.end);
    const std::string_view own = lines.substr(opened.body);
    constexpr size_t shortestLine = 4;
    opened.keys.Reserve(MostNames(MostLines(own), own, shortestLine));
    LineScanner scanner(lines, opened.body);
    Line line;
    while (scanner.Next(line)) {
        size_t first = line.start;
        while (first < line.stop && IsBlank(content_[first])) {
            ++first;
        }
        if (first == line.stop) {
            continue;
        }
        if (content_[first] == ';') {
            continue;
        }
        opened.insert = static_cast<uint32_t>(line.next);
        const std::string_view text = lines.substr(first, line.stop - first);
        const std::string_view key = TrimBlanks(text.substr(0, text.find('=')));
        const uint32_t hash = HashIgnoringCase(key);
        if (opened.keys.Find(hash, [&](uint32_t other) { return IsAt(other, section, key); }) == nullptr) {
            opened.keys.Add(hash, static_cast<uint32_t>(first));
        } else {
            ++opened.repeated;
        }
    }
}

std::string_view ProfileFile::LineEnd() const
{
    if (lineEnd_.empty()) {
        LineScanner scanner(content_);
        for (Line line; scanner.Next(line);) {
        }
        lineEnd_ = scanner.PrevailingEnd();
    }
    return lineEnd_;
}

/// Makes the changes so far the file's content.
void ProfileFile::Settle()
{
    if (!written_.empty()) {
        Reset(RenderText());
    }
}

/// The number of the first section of a name, nowhere if there is none.
uint32_t ProfileFile::FindSection(std::string_view name) const
{
    const auto same = [&](uint32_t place) { return EqualIgnoringCase(SectionName(place), name); };
    NameIndex::Slot* const slot = sectionIndex_.Find(HashIgnoringCase(name), same);
    if (slot == nullptr) {
        return nowhere;
    }
    if ((slot->place & openMark) == 0) {
        slot->place = OpenSection(slot->place) | openMark;
    }
    return slot->place & ~openMark;
}

std::string_view ProfileFile::SectionName(uint32_t place) const
{
    if ((place & openMark) != 0) {
        const Section& section = sections_[place & ~openMark];
        if (section.nameAt != nowhere) {
            return std::string_view(pool_).substr(section.nameAt, section.nameLength);
        }
        place = section.head;
    }
    return ini::ParseHeader(LineAt(place));
}

NameIndex::Slot* ProfileFile::FindKey(uint32_t section, std::string_view key) const
{
    if (!profile::IsPlainKey(key)) {
        return nullptr;
    }
    return sections_[section].keys.Find(HashIgnoringCase(key),
                                        [&](uint32_t place) { return IsAt(place, section, key); });
}

/// Whether the line of a place has this key (which is plain) and belongs to this section.
bool ProfileFile::IsAt(uint32_t place, uint32_t section, std::string_view key) const
{
    std::string_view text = content_;
    if ((place & writtenMark) != 0) {
        const Written& written = written_[place & ~writtenMark];
        if (written.section != section) {
            return false;
        }
        text = std::string_view(pool_).substr(written.textAt, written.length);
    } else {
        if (place < sections_[section].body || place >= sections_[section].end) {
            return false;
        }
        text.remove_prefix(place);
    }
    if (text.size() < key.size() || !EqualIgnoringCase(text.substr(0, key.size()), key)) {
        return false;
    }
    text.remove_prefix(key.size());
    while (!text.empty() && IsBlank(text.front())) {
        text.remove_prefix(1);
    }
    return text.empty() || text.front() == '=' || IsLineEnd(text.front());
}

/// The text of a line from its key on.
std::string_view ProfileFile::LineAt(uint32_t place) const
{
    if ((place & writtenMark) != 0) {
        const Written& written = written_[place & ~writtenMark];
        return std::string_view(pool_).substr(written.textAt, written.length);
    }
    size_t stop = place;
    while (stop < content_.size() && !IsLineEnd(content_[stop])) {
        ++stop;
    }
    return std::string_view(content_).substr(place, stop - place);
}

/// The whole line whose key stands at `base`.
Line ProfileFile::LineAround(uint32_t base) const
{
    Line line;
    line.start = base;
    while (line.start > 0 && IsBlank(content_[line.start - 1])) {
        --line.start;
    }
    line.stop = base + LineAt(base).size();
    const bool pair = content_.compare(line.stop, 2, "\r\n") == 0;
    line.next = std::min(line.stop + (pair ? 2 : 1), content_.size());
    return line;
}

/// The line that ends where another begins.
Line ProfileFile::LineBefore(uint32_t next) const
{
    Line line;
    line.next = line.stop = next;
    while (line.stop > 0 && IsLineEnd(content_[line.stop - 1]) && line.next - line.stop < 2) {
        --line.stop;
    }
    if (line.next - line.stop == 2 && content_.compare(line.stop, 2, "\r\n") != 0) {
        ++line.stop;
    }
    line.start = line.stop;
    while (line.start > 0 && !IsLineEnd(content_[line.start - 1])) {
        --line.start;
    }
    return line;
}

/// The line with a key, from its key on.
std::optional<std::string_view> ProfileFile::FindLine(uint32_t section, std::string_view key) const
{
    uint32_t place = nextLine_;
    // Where no key stands twice, a line that has the key is the line to find. A blank line has an empty key.
    const bool unique = sections_[section].repeated == 0 && written_.empty() && !key.empty();
    const bool expected = unique && profile::IsPlainKey(key) && IsAt(place, section, key);
    if (!expected) {
        const NameIndex::Slot* const slot = FindKey(section, key);
        if (slot == nullptr || IsRemoved(*slot)) {
            return std::nullopt;
        }
        place = slot->place;
    }
    const std::string_view line = LineAt(place);
    if ((place & writtenMark) == 0) {
        nextLine_ = place + static_cast<uint32_t>(line.size());
        while (nextLine_ < content_.size() && IsLineEnd(content_[nextLine_]) && nextLine_ - place < line.size() + 2) {
            ++nextLine_;
        }
    }
    return line;
}

std::optional<std::string_view> ProfileFile::Find(std::string_view section, std::string_view key) const
{
    const uint32_t found = FindSection(profile::TrimSpaces(section));
    if (found == nowhere) {
        return std::nullopt;
    }
    const std::optional<std::string_view> line = FindLine(found, profile::TrimSpaces(key));
    if (!line) {
        return std::nullopt;
    }
    const ini::Entry entry = ini::ParseEntry(*line);
    return entry.hasValue ? std::optional(ini::ReadableValue(entry.value)) : std::nullopt;
}

std::string_view ProfileFile::GetString(std::string_view section, std::string_view key,
                                        std::string_view defaultValue) const
{
    const std::optional<std::string_view> value = Find(section, key);
    return value ? *value : profile::ReadableDefault(defaultValue);
}

uint32_t ProfileFile::GetInt(std::string_view section, std::string_view key, uint32_t defaultValue) const
{
    const std::optional<std::string_view> value = Find(section, key);
    return value && !value->empty() ? ini::ReadInteger(*value) : defaultValue;
}

std::vector<std::string> ProfileFile::GetSection(std::string_view section) const
{
    if (!written_.empty()) {
        return Rendered().GetSection(section);
    }
    std::vector<std::string> lines;
    const uint32_t number = FindSection(profile::TrimSpaces(section));
    if (number == nowhere) {
        return lines;
    }
    const Section& found = sections_[number];
    LineScanner scanner(std::string_view(content_).substr(0, found.end), found.body);
    Line line;
    while (scanner.Next(line)) {
        const ini::Entry entry = ini::ParseEntry(line.Text(content_));
        if (TrimBlanks(line.Text(content_)).empty() || entry.key.starts_with(';')) {
            continue;
        }
        lines.emplace_back(entry.key);
        if (entry.hasValue) {
            lines.back().append("=").append(entry.value);
        }
    }
    return lines;
}

std::vector<std::string> ProfileFile::GetSectionNames() const
{
    if (!written_.empty()) {
        return Rendered().GetSectionNames();
    }
    return NamesIn(content_, [](std::string_view line) {
        const std::string_view text = TrimBlanks(line);
        return text.starts_with('[') ? std::optional(ini::ParseHeader(text)) : std::nullopt;
    });
}

std::vector<std::string> ProfileFile::GetBracketedLines() const
{
    if (!written_.empty()) {
        return Rendered().GetBracketedLines();
    }
    return NamesIn(content_, ini::BracketedName);
}

}  // namespace tvn2x
