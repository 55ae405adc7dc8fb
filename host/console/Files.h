#pragma once

#include <string>
#include <string_view>

#include "util/FileSystem.h"

namespace tvn2x {

/// The absolute form of a path, with "\" alone as separator: the plug-in takes a path's folder by that character.
std::wstring AbsolutePath(const std::wstring& path);

/// The content of a file that the user named. Raises unusableInput with what to do about it.
std::string ReadInput(const std::wstring& path);

/// Raises unusableInput, in words, where writing a file has failed; does nothing for FileFault::none.
void RequireWritten(FileFault fault, const std::wstring& path);

/// Whether two absolute paths lead to one file, by whatever case, short name or link.
bool IsSameFile(const std::wstring& path, const std::wstring& other);

/// Raises unusableInput where a result would replace what it is made from.
void RequireDifferent(const std::wstring& source, const std::wstring& target);

/// Raises unusableInput where there is a file already that a result would replace, unless the user said so.
void RequireNew(const std::wstring& target, bool forces);

/// The path of a file in the user's folder for what nobody keeps.
std::wstring TemporaryPath(const std::wstring& name);

/// A file of an unpredictable name beside `target` that takes its place in one step, or vanishes.
class PendingFile
{
public:
    explicit PendingFile(const std::wstring& target);
    PendingFile(const PendingFile&) = delete;
    PendingFile& operator=(const PendingFile&) = delete;
    ~PendingFile();

    const std::wstring& Path() const { return path_; }
    const std::wstring& Target() const { return target_; }
    void TakePlace();

private:
    std::wstring target_;
    std::wstring path_;
};

}  // namespace tvn2x
