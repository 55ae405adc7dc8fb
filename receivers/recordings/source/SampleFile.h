#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace tvn2x::recordings {

/// Bytes to be read from any place: a file of any size, of which no more is in memory than was asked for.
class StoredBytes
{
public:
    virtual ~StoredBytes() = default;

    virtual uint64_t Size() const = 0;
    /// Bytes from an offset on; fewer than asked for at the end alone. Raises where the file can no longer be read.
    virtual size_t ReadAt(uint64_t offset, std::span<char> into) = 0;
};

/// Opens a file. Others may read and write it meanwhile. Raises an error that names it where it cannot be opened.
std::unique_ptr<StoredBytes> OpenStored(const std::wstring& path);

}  // namespace tvn2x::recordings
