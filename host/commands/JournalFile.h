#pragma once

#include <windows.h>

#include <string>

#include "host/run/Journal.h"

namespace tvn2x {

/// A journal on the disk. While it is open others may read it, but not write to it.
class JournalFile final : public GrowingFile
{
public:
    /// A new file, which vanishes again where it never gets a line. Raises unusableInput where one is there already, or
    /// where it cannot be created.
    static JournalFile Create(const std::wstring& path);
    /// A file to go on with: what follows its first `keep` bytes is cut off before the next line. Raises unusableInput
    /// where it cannot be written to.
    static JournalFile Open(const std::wstring& path, size_t keep);

    JournalFile(JournalFile&& other) noexcept;
    JournalFile& operator=(JournalFile&&) = delete;
    ~JournalFile() override;

    FileFault Append(std::string_view bytes) override;

private:
    JournalFile(HANDLE handle, LONGLONG end, std::wstring path) : handle_(handle), end_(end), path_(std::move(path)) {}
    bool CutAtEnd();

    HANDLE handle_;
    LONGLONG end_;  ///< of the last whole line
    std::wstring path_;
};

}  // namespace tvn2x
