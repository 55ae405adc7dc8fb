#pragma once

#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "util/FileSystem.h"

namespace tvn2x {

/// Files above this size are refused: nothing the product reads comes near it.
constexpr uint64_t largestFile = uint64_t{1} << 30;

/// A file open for reading, as either system offers it.
class InputFile
{
public:
    virtual ~InputFile() = default;
    virtual FileFault Stamp(FileStamp& stamp) = 0;
    /// Back to the first byte.
    virtual FileFault Rewind() = 0;
    /// Up to `size` bytes; `got` is 0 at the end of the file only.
    virtual FileFault Read(char* bytes, size_t size, size_t& got) = 0;
};

/// Owns an open file of the system's. `Kind` has the `Value` that names one, `None()`, which names none, and `Close`,
/// which tells whether closing went well.
template <class Kind>
class OpenFile
{
public:
    using Value = typename Kind::Value;

    explicit OpenFile(Value value = Kind::None()) : value_(value) {}
    ~OpenFile() { Close(); }
    OpenFile(OpenFile&& other) noexcept : value_(std::exchange(other.value_, Kind::None())) {}
    OpenFile& operator=(OpenFile&& other) noexcept
    {
        std::swap(value_, other.value_);
        return *this;
    }

    explicit operator bool() const { return value_ != Kind::None(); }
    Value Get() const { return value_; }
    /// True, too, where there is none.
    bool Close() { return !*this || Kind::Close(std::exchange(value_, Kind::None())); }

private:
    Value value_;
};

/// One of the system's errors, and what it means for a file.
struct SystemError
{
    uint32_t number;
    FileFault fault;
};

/// Those that mean anything but FileFault::other.
std::span<const SystemError> SystemErrors();

/// What went wrong, by the system's number of an error (GetLastError, errno) of one of its file functions.
FileFault FaultOf(uint32_t error);

/// Reads one state of a file: a file that changes meanwhile is read again, and is in use if it keeps changing.
FileFault ReadOneState(InputFile& file, std::string& content, FileStamp& stamp);

/// A file name that nobody can foresee, and no pattern of the product's own files matches.
std::wstring UnpredictableName();

/// Whether a file's name is one that UnpredictableName makes.
bool IsUnpredictableName(std::wstring_view name);

/// A process that is killed while it saves leaves its temporary behind. The next one that saves in the same folder
/// removes those that nobody has written to for so many seconds: a day, so that neither a slow disk nor a file server's
/// clock makes one look left behind.
constexpr int64_t staleAge = 24 * 60 * 60;

}  // namespace tvn2x
