#include <algorithm>
#include <optional>
#include <utility>

#include "setup/ProfileFile.h"
#include "text/Blanks.h"
#include "text/Folding.h"
#include "util/FileText.h"

namespace tvn2x {

using ini::Line;
using ini::LineScanner;
using profile::NameIndex;

namespace {

constexpr size_t largestPool = 0x7FFFFFFF;

bool EndsLine(const std::string& text)
{
    return text.empty() || text.back() == '\n' || text.back() == '\r';
}

}  // namespace

uint32_t ProfileFile::AppendSection(std::string_view name, bool indexed)
{
    const auto section = static_cast<uint32_t>(sections_.size());
    const auto end = static_cast<uint32_t>(content_.size());
    Section& added = sections_.emplace_back();
    added.head = added.body = added.end = added.insert = end;
    added.nameAt = static_cast<uint32_t>(pool_.size());
    added.nameLength = static_cast<uint32_t>(name.size());
    pool_.append(name);
    if (indexed) {
        sectionIndex_.Add(HashIgnoringCase(name), section | openMark);
    }
    return section;
}

/// Where in the pool the line now stands.
uint32_t ProfileFile::AddText(std::string_view key, std::string_view value)
{
    const auto at = static_cast<uint32_t>(pool_.size());
    pool_.append(key).append("=").append(value);
    return at;
}

uint32_t ProfileFile::AddWritten(uint32_t section, std::string_view key, std::string_view value, uint32_t base)
{
    const auto place = static_cast<uint32_t>(written_.size());
    const uint32_t at = AddText(key, value);
    written_.push_back({section, at, static_cast<uint32_t>(pool_.size()) - at, base});
    changed_ = true;
    return place | writtenMark;
}

/// A line that stands in no other's place.
uint32_t ProfileFile::AddNew(uint32_t section, std::string_view key, std::string_view value)
{
    if (sections_[section].added == 0) {
        LeaveRemovedKeys(section);
    }
    ++sections_[section].added;
    return AddWritten(section, key, value, nowhere);
}

/// Moves the place for new lines up to the last key line that is left: the lines behind that one may be comments on the
/// next section. What is removed stays so, hence no line is passed twice.
void ProfileFile::LeaveRemovedKeys(uint32_t section)
{
    Section& found = sections_[section];
    while (found.insert > found.body) {
        const Line line = LineBefore(found.insert);
        const std::string_view text = TrimBlanks(line.Text(content_));
        if (!text.empty() && text.front() != ';' && !IsRemovedLine(section, text)) {
            return;
        }
        found.insert = static_cast<uint32_t>(line.start);
    }
}

/// Whether a key line of the file, from its key on, is removed. Of lines with one key the upper ones are removed first.
bool ProfileFile::IsRemovedLine(uint32_t section, std::string_view line) const
{
    const auto at = static_cast<uint32_t>(line.data() - content_.data());
    const NameIndex::Slot* const slot = FindKey(section, ini::ParseEntry(line).key);
    const bool isWritten = (slot->place & writtenMark) != 0;
    const uint32_t first = isWritten ? written_[slot->place & ~writtenMark].base : slot->place;
    return at < first || (at == first && IsRemoved(*slot));
}

/// Replaces the line of a slot; the key keeps the spelling that the file has.
void ProfileFile::SetValue(NameIndex::Slot& slot, uint32_t section, std::string_view newKey, std::string_view value)
{
    const ini::Entry entry = ini::ParseEntry(LineAt(slot.place));
    const bool isWritten = (slot.place & writtenMark) != 0;
    const bool removed = IsRemoved(slot);
    if (!removed && entry.hasValue && entry.value == value) {
        return;
    }
    const std::string key(entry.key);
    if (!isWritten) {
        slot.place = AddWritten(section, key, value, slot.place);
    } else if (removed) {
        // A key that was removed and comes back is a new line, as it would be had the file been written in between.
        slot.place = AddNew(section, newKey, value);
    } else {
        Written& written = written_[slot.place & ~writtenMark];
        written.textAt = AddText(key, value);
        written.length = static_cast<uint32_t>(pool_.size()) - written.textAt;
        changed_ = true;
    }
}

/// Removes the line of a slot; the next line with the same key takes its place.
void ProfileFile::Remove(NameIndex::Slot& slot, uint32_t section)
{
    if (IsRemoved(slot)) {
        return;
    }
    if (sections_[section].repeated != 0 && sections_[section].links.empty()) {
        LinkRepeatedKeys(section);
    }
    if ((slot.place & writtenMark) == 0) {
        const std::string key(ini::ParseEntry(LineAt(slot.place)).key);
        slot.place = AddWritten(section, key, {}, slot.place);
    }
    Written& written = written_[slot.place & ~writtenMark];
    written.removed = true;
    if (written.base == nowhere) {
        --sections_[section].added;
    }
    changed_ = true;
    const std::vector<Link>& links = sections_[section].links;
    const auto next = std::lower_bound(links.begin(), links.end(), written.base,
                                       [](const Link& link, uint32_t place) { return link.from < place; });
    if (next != links.end() && next->from == written.base) {
        slot.place = next->to;
    }
}

/// Links each line of a section to the next one with the same key. Nothing has been removed in it yet.
void ProfileFile::LinkRepeatedKeys(uint32_t section)
{
    Section& found = sections_[section];
    found.links.reserve(found.repeated);
    LineScanner scanner(std::string_view(content_).substr(0, found.end), found.body);
    Line line;
    while (scanner.Next(line)) {
        const std::string_view text = TrimBlanks(line.Text(content_));
        if (text.empty() || text.front() == ';') {
            continue;
        }
        const auto place = static_cast<uint32_t>(text.data() - content_.data());
        const std::string_view key = ini::ParseEntry(text).key;
        const NameIndex::Slot* const slot =
            found.keys.Find(HashIgnoringCase(key), [&](uint32_t other) { return IsAt(other, section, key); });
        const bool isWritten = (slot->place & writtenMark) != 0;
        const uint32_t first = isWritten ? written_[slot->place & ~writtenMark].base : slot->place;
        if (first != place) {
            found.links.push_back({first, place});
        }
    }
    // From the first line to each of its repetitions, in their order; then from each line to the next one.
    const auto before = [](const Link& left, const Link& right) {
        return left.from != right.from ? left.from < right.from : left.to < right.to;
    };
    std::sort(found.links.begin(), found.links.end(), before);
    uint32_t first = nowhere;
    uint32_t previous = nowhere;
    for (Link& link : found.links) {
        const bool goesOn = link.from == first;
        first = link.from;
        if (goesOn) {
            link.from = previous;
        }
        previous = link.to;
    }
    std::sort(found.links.begin(), found.links.end(), before);
}

/// Makes sure that the file can hold these texts as they are: one that its code page lacks makes it a file in UTF-16.
/// False for a file that cannot become one, because not all of its bytes have a meaning.
bool ProfileFile::Admit(std::initializer_list<std::string_view> texts)
{
    const auto fits = [this](std::string_view text) { return file_text::Fits(text, *codePage_); };
    if (utf16_ || std::all_of(texts.begin(), texts.end(), fits)) {
        return true;
    }
    // What a change has taken out of the file is in the way no longer.
    std::optional<std::string> characters = file_text::InCharacters(RenderText(), *codePage_);
    if (!characters) {
        return false;
    }
    // What stood for bytes is found by its characters from now on, as it will be in the file that is written.
    Reset(std::move(*characters));
    utf16_ = true;
    return true;
}

bool ProfileFile::Write(std::string_view section, std::string_view key, std::optional<std::string_view> value)
{
    section = profile::TrimSpaces(section);
    key = profile::TrimSpaces(key);
    if (!profile::IsWritable(section) || !profile::IsWritable(key) || !profile::IsWritable(value.value_or(""))) {
        return false;
    }
    if (value && !Admit({section, key, *value})) {
        return false;
    }
    if (pool_.size() > largestPool - 4 * ini::longestText) {
        Settle();
    }

    const uint32_t found = FindSection(section);
    const bool plainSection = profile::IsPlainSection(section);
    const bool plainKey = profile::IsPlainKey(key);
    if (found == nowhere) {
        if (!value) {
            return true;
        }
        const uint32_t added = AppendSection(section, plainSection);
        const uint32_t place = AddNew(added, key, *value);
        if (plainSection && plainKey) {
            sections_[added].keys.Add(HashIgnoringCase(key), place);
        }
    } else {
        NameIndex::Slot* const slot = FindKey(found, key);
        if (slot != nullptr && value) {
            SetValue(*slot, found, key, *value);
        } else if (slot != nullptr) {
            Remove(*slot, found);
        } else if (value) {
            const uint32_t place = AddNew(found, key, *value);
            if (plainKey) {
                sections_[found].keys.Add(HashIgnoringCase(key), place);
            }
        }
    }
    // What is not read back as it was written (a comment, a "]" in a name) means what the written file says it means.
    if (value && !(plainSection && plainKey)) {
        Settle();
    }
    return true;
}

bool ProfileFile::DeleteSection(std::string_view section)
{
    section = profile::TrimSpaces(section);
    if (!profile::IsWritable(section)) {
        return false;
    }
    Settle();
    if (const uint32_t number = FindSection(section); number != nowhere) {
        const Section found = sections_[number];
        std::string content = std::move(content_);
        content.erase(found.head, found.end - found.head);
        Reset(std::move(content));
        changed_ = true;
    }
    return true;
}

/// The changes in the order in which they stand in the file: a new line before a changed line at the same offset, the
/// lines of one new section together. A new line that was removed again has left its section behind, if that was new.
std::vector<ProfileFile::Edit> ProfileFile::SortedEdits() const
{
    std::vector<Edit> edits;
    edits.reserve(written_.size());
    for (size_t i = 0; i < written_.size(); ++i) {
        const Written& written = written_[i];
        const auto number = static_cast<uint32_t>(i);
        if (written.base != nowhere) {
            edits.push_back({static_cast<uint32_t>(LineAround(written.base).start), number, false});
        } else {
            edits.push_back({sections_[written.section].insert, number, true});
        }
    }
    // What joins the file's last section comes before the new sections, and those in the order of their making.
    const auto rank = [this](const Edit& edit) {
        const uint32_t section = written_[edit.written].section;
        return sections_[section].nameAt == nowhere ? 0 : section + 1;
    };
    const auto before = [&rank](const Edit& left, const Edit& right) {
        if (left.at != right.at || left.insertion != right.insertion) {
            return left.at != right.at ? left.at < right.at : left.insertion;
        }
        return rank(left) < rank(right);
    };
    if (!std::is_sorted(edits.begin(), edits.end(), before)) {
        std::stable_sort(edits.begin(), edits.end(), before);
    }
    return edits;
}

std::string ProfileFile::RenderText() const
{
    std::string text;
    text.reserve(content_.size() + pool_.size() + LineEnd().size() * (written_.size() + 2 * sections_.size() + 1));
    size_t copied = 0;
    uint32_t opened = nowhere;
    for (const Edit& edit : SortedEdits()) {
        const Written& written = written_[edit.written];
        const std::string_view line = std::string_view(pool_).substr(written.textAt, written.length);
        text.append(content_, copied, edit.at - copied);
        copied = edit.at;
        if (edit.insertion) {
            if (!EndsLine(text)) {
                text += LineEnd();
            }
            const Section& section = sections_[written.section];
            if (section.nameAt != nowhere && opened != written.section) {
                text.append("[").append(pool_, section.nameAt, section.nameLength).append("]").append(LineEnd());
                opened = written.section;
            }
            if (!written.removed) {
                text.append(line).append(LineEnd());
            }
            continue;
        }
        const Line old = LineAround(written.base);
        if (!written.removed) {
            text.append(line);
            if (old.next > old.stop) {
                text.append(content_, old.stop, old.next - old.stop);
            } else {
                text.append(LineEnd());
            }
        }
        copied = old.next;
    }
    return text.append(content_, copied);
}

std::string ProfileFile::Render() const
{
    std::string text = written_.empty() ? content_ : RenderText();
    return utf16_ ? "\xFF\xFE" + file_text::ToUtf16(text, *codePage_) + oddByte_
                  : file_text::ToBytes(std::move(text), *codePage_);
}

}  // namespace tvn2x
