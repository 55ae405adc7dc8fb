#include "setup/ProfileText.h"

#include <algorithm>
#include <cstring>
#include <random>

#include "util/FileText.h"

namespace tvn2x::profile {
namespace {

constexpr uint64_t everyByte = 0x0101010101010101;

/// Eight bytes with A..Z as a..z.
uint64_t FoldEight(uint64_t bytes)
{
    const uint64_t low = bytes & (0x7F * everyByte);
    const uint64_t fromA = low + (0x80 - 'A') * everyByte;
    const uint64_t aboveZ = low + (0x7F - 'Z') * everyByte;
    const uint64_t upper = (fromA ^ aboveZ) & ~bytes & (0x80 * everyByte);
    return bytes | upper >> 2;
}

uint64_t LoadEight(const char* bytes)
{
    uint64_t value = 0;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

/// The last `count` bytes of a name, fewer than eight.
uint64_t LoadRest(const char* bytes, size_t count)
{
    uint64_t value = 0;
    for (size_t i = 0; i < count; ++i)
        value |= uint64_t{static_cast<unsigned char>(bytes[i])} << (8 * i);
    return value;
}

/// Calls `take` with eight bytes after the other until it says false, the last ones filled up with NULs.
template <class Take>
bool ForEachEight(std::string_view name, Take take)
{
    size_t at = 0;
    for (; at + 8 <= name.size(); at += 8) {
        if (!take(at, LoadEight(name.data() + at)))
            return false;
    }
    return at == name.size() || take(at, LoadRest(name.data() + at, name.size() - at));
}

/// Chosen once per process, so that no file can be made whose keys all meet in one place of an index.
uint64_t HashSecret()
{
    static const uint64_t secret = [] {
        std::random_device device;
        return uint64_t{device()} << 32 | device() | 1;
    }();
    return secret;
}

int DigitValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : 16;
}

uint32_t TakeBase(std::string_view& digits)
{
    if (digits.size() < 2 || digits[0] != '0')
        return 10;
    const uint32_t base = digits[1] == 'x' ? 16 : digits[1] == 'o' ? 8 : digits[1] == 'b' ? 2 : 10;
    if (base != 10)
        digits.remove_prefix(2);
    return base;
}

}  // namespace

size_t LineScanner::NearestOf(char end, size_t& known) const
{
    if (known < at_ || (known == at_ && (at_ == content_.size() || content_[at_] != end))) {
        const size_t found = content_.find(end, at_);
        known = found == std::string_view::npos ? content_.size() : found;
    }
    return known;
}

bool LineScanner::Next(Line& line)
{
    if (at_ >= content_.size())
        return false;
    const size_t lf = NearestOf('\n', nextLf_);
    const size_t cr = NearestOf('\r', nextCr_);
    line.start = at_;
    line.stop = std::min(lf, cr);
    if (line.stop == content_.size()) {
        line.next = line.stop;
    } else if (cr < lf) {
        const bool pair = cr + 1 == lf && lf < content_.size();
        line.next = cr + (pair ? 2 : 1);
        ++(pair ? crLfLines_ : crLines_);
    } else {
        line.next = lf + 1;
        ++lfLines_;
    }
    at_ = line.next;
    return true;
}

std::string_view LineScanner::PrevailingEnd() const
{
    if (lfLines_ > std::max(crLfLines_, crLines_))
        return "\n";
    return crLines_ > std::max(crLfLines_, lfLines_) ? "\r" : "\r\n";
}

std::string_view Trim(std::string_view text)
{
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

std::string_view TrimSpaces(std::string_view text)
{
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

Entry ParseEntry(std::string_view line)
{
    const size_t equals = line.find('=');
    if (equals == std::string_view::npos)
        return {Trim(line), {}, false};
    return {Trim(line.substr(0, equals)), Trim(line.substr(equals + 1)), true};
}

std::string_view ParseHeader(std::string_view line)
{
    line.remove_prefix(line.find('[') + 1);
    return Trim(line.substr(0, line.find(']')));
}

std::string_view ReadableValue(std::string_view value)
{
    value = value.substr(0, value.find('\0'));
    const bool quoted =
        value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front();
    return quoted ? value.substr(1, value.size() - 2) : value;
}

std::string_view ReadableDefault(std::string_view text)
{
    while (text.size() > 1 && text.back() == ' ')
        text.remove_suffix(1);
    return ReadableValue(text);
}

uint32_t ReadInteger(std::string_view value)
{
    while (!value.empty() && static_cast<unsigned char>(value.front()) <= ' ')
        value.remove_prefix(1);
    const bool negative = value.starts_with('-');
    if (negative || value.starts_with('+'))
        value.remove_prefix(1);
    const uint32_t base = TakeBase(value);
    uint32_t number = 0;
    for (const char c : value) {
        const auto digit = static_cast<uint32_t>(DigitValue(c));
        if (digit >= base)
            break;
        number = number * base + digit;
    }
    return negative ? 0U - number : number;
}

bool EqualNames(std::string_view left, std::string_view right)
{
    if (left.size() != right.size())
        return false;
    if (left == right)
        return true;
    return ForEachEight(left, [&](size_t at, uint64_t bytes) {
        const bool whole = right.size() - at >= 8;
        const uint64_t other = whole ? LoadEight(right.data() + at) : LoadRest(right.data() + at, right.size() - at);
        return FoldEight(bytes) == FoldEight(other);
    });
}

uint32_t HashName(std::string_view name)
{
    const uint64_t secret = HashSecret();
    uint64_t hash = (name.size() + 1) * secret;
    ForEachEight(name, [&](size_t, uint64_t bytes) {
        hash ^= hash >> 32;
        hash = (hash ^ FoldEight(bytes)) * secret;
        return true;
    });
    hash ^= hash >> 32;
    hash *= secret;
    return static_cast<uint32_t>(hash >> 32);
}

bool IsWritable(std::string_view text)
{
    return FirstCharacters(text).size() == text.size() &&
           std::none_of(text.begin(), text.end(), [](char c) { return c == '\r' || c == '\n' || c == '\0'; });
}

bool IsPlainKey(std::string_view key)
{
    if (key.empty())
        return true;
    return key.front() != ';' && key.front() != '[' && !IsBlank(key.front()) && !IsBlank(key.back()) &&
           std::none_of(key.begin(), key.end(), [](char c) { return c == '=' || c == '\r' || c == '\n'; });
}

bool IsPlainSection(std::string_view section)
{
    if (section.empty())
        return true;
    return !IsBlank(section.front()) && !IsBlank(section.back()) &&
           std::none_of(section.begin(), section.end(), [](char c) { return c == ']' || c == '\r' || c == '\n'; });
}

std::string FromCaller(std::wstring_view text)
{
    return file_text::FromWide(text.substr(0, text.find(L'\0')));
}

std::string_view FirstCharacters(std::string_view text)
{
    return file_text::FirstUnits(text, longestText);
}

}  // namespace tvn2x::profile
