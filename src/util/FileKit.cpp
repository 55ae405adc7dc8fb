#include "util/FileKit.h"

#include <mutex>
#include <random>

namespace tvn2x {
namespace {

constexpr std::wstring_view hexadecimal = L"0123456789abcdef";
constexpr std::wstring_view nameBegin = L"~tvn";
constexpr std::wstring_view nameEnd = L".tmp";
constexpr int nameDigits = 32;

/// The content from the present position on, `expected` bytes if the stamp is true. `content` ends up longer or shorter
/// where it is not.
FileFault ReadRest(InputFile& file, size_t expected, std::string& content)
{
    content.resize(expected + 1);  // the byte too many finds the end of the file without another round
    size_t size = 0;
    for (size_t got = 1; got != 0 && size < content.size(); size += got) {
        if (const FileFault fault = file.Read(content.data() + size, content.size() - size, got);
            fault != FileFault::none) {
            return fault;
        }
    }
    content.resize(size);
    return FileFault::none;
}

}  // namespace

FileFault FaultOf(uint32_t error)
{
    for (const SystemError& known : SystemErrors()) {
        if (known.number == error) {
            return known.fault;
        }
    }
    return FileFault::other;
}

FileFault ReadOneState(InputFile& file, std::string& content, FileStamp& stamp)
{
    constexpr int attempts = 5;
    FileStamp before;
    if (const FileFault fault = file.Stamp(before); fault != FileFault::none) {
        return fault;
    }
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (before.size > largestFile) {
            return FileFault::tooLarge;
        }
        FileStamp after;
        FileFault fault = file.Rewind();
        if (fault == FileFault::none) {
            fault = ReadRest(file, static_cast<size_t>(before.size), content);
        }
        if (fault == FileFault::none) {
            fault = file.Stamp(after);
        }
        if (fault != FileFault::none) {
            return fault;
        }
        if (before == after && content.size() == after.size) {
            stamp = after;
            return FileFault::none;
        }
        before = after;
    }
    return FileFault::inUse;
}

std::wstring UnpredictableName()
{
    // One source for all: to open one anew takes longer than everything else in saving a small file.
    static std::mutex guard;
    static std::random_device random;
    const std::lock_guard alone(guard);
    std::wstring name(nameBegin);
    uint32_t bits = 0;
    for (int i = 0; i < nameDigits; ++i, bits >>= 4) {
        if (i % 8 == 0) {
            bits = random();  // the system takes its time for each number
        }
        name += hexadecimal[bits & 15];
    }
    return name.append(nameEnd);
}

bool IsUnpredictableName(std::wstring_view name)
{
    if (name.size() != nameBegin.size() + nameDigits + nameEnd.size() || !name.starts_with(nameBegin) ||
        !name.ends_with(nameEnd)) {
        return false;
    }
    return name.substr(nameBegin.size(), nameDigits).find_first_not_of(hexadecimal) == std::wstring_view::npos;
}

}  // namespace tvn2x
