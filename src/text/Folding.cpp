#include "text/Folding.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <random>

namespace tvn2x {
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
    for (size_t i = 0; i < count; ++i) {
        value |= uint64_t{static_cast<unsigned char>(bytes[i])} << (8 * i);
    }
    return value;
}

/// Calls `take` with eight bytes after the other until it says false, the last ones filled up with NULs.
template <class Take>
bool ForEachEight(std::string_view name, Take take)
{
    size_t at = 0;
    for (; at + 8 <= name.size(); at += 8) {
        if (!take(at, LoadEight(name.data() + at))) {
            return false;
        }
    }
    return at == name.size() || take(at, LoadRest(name.data() + at, name.size() - at));
}

wchar_t Lower(wchar_t c)
{
    return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c + (L'a' - L'A')) : c;
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

}  // namespace

bool EqualIgnoringCase(std::string_view left, std::string_view right)
{
    if (left.size() != right.size()) {
        return false;
    }
    if (left == right) {
        return true;
    }
    return ForEachEight(left, [&](size_t at, uint64_t bytes) {
        const bool whole = right.size() - at >= 8;
        const uint64_t other = whole ? LoadEight(right.data() + at) : LoadRest(right.data() + at, right.size() - at);
        return FoldEight(bytes) == FoldEight(other);
    });
}

bool EqualIgnoringCase(std::wstring_view left, std::wstring_view right)
{
    return std::ranges::equal(left, right, {}, Lower, Lower);
}

bool EqualIgnoringCase(std::wstring_view text, std::string_view plainName)
{
    return std::ranges::equal(text, plainName, {}, Lower, [](char c) { return Lower(static_cast<wchar_t>(c)); });
}

uint32_t HashIgnoringCase(std::string_view name)
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

bool IgnoreCase::operator()(std::string_view left, std::string_view right) const
{
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c + 0; };
    return std::ranges::lexicographical_compare(left, right, {}, lower, lower);
}

}  // namespace tvn2x
