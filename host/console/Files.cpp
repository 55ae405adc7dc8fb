#include "host/console/Files.h"

#include <windows.h>

#include <algorithm>

#include "text/InputError.h"

namespace tvn2x {
namespace {

const wchar_t* ReasonOf(FileFault fault)
{
    switch (fault) {
        case FileFault::missing:
            return L"there is no such file. Check the name.";
        case FileFault::pathMissing:
            return L"the folder does not exist. Create it, or choose another one.";
        case FileFault::accessDenied:
            return L"access is denied. Check the rights of the file and its folder.";
        case FileFault::inUse:
            return L"it is in use by another program. Close it there.";
        case FileFault::diskFull:
            return L"the disk is full. Make room, or choose another one.";
        case FileFault::readOnly:
            return L"it is read-only. Clear the attribute, or choose another name.";
        case FileFault::isDirectory:
            return L"it is a folder. Give a file in it.";
        case FileFault::tooLarge:
            return L"it is too large. Check the name.";
        default:
            return L"the system gives no reason. Check the path and the medium.";
    }
}

}  // namespace

std::wstring AbsolutePath(const std::wstring& path)
{
    if (path.find_first_not_of(L" \t") == std::wstring::npos) {
        RaiseInput(L"an empty file name was given. Give a file");
    }
    std::wstring full = FullPath(path);
    std::ranges::replace(full, L'/', L'\\');
    return full;
}

std::string ReadInput(const std::wstring& path)
{
    std::string content;
    FileStamp stamp;
    const FileFault fault = SystemFiles().Read(path, content, stamp);
    if (fault != FileFault::none) {
        RaiseInput(L"cannot read " + path + L": " + ReasonOf(fault));
    }
    return content;
}

void RequireWritten(FileFault fault, const std::wstring& path)
{
    if (fault != FileFault::none) {
        // A file that does not exist yet is what is written; it is its folder that is missing.
        const FileFault reason = fault == FileFault::missing ? FileFault::pathMissing : fault;
        RaiseInput(L"cannot write " + path + L": " + ReasonOf(reason));
    }
}

bool IsSameFile(const std::wstring& path, const std::wstring& other)
{
    if (CompareStringOrdinal(path.c_str(), -1, other.c_str(), -1, TRUE) == CSTR_EQUAL) {
        return true;
    }
    const FileStamp stamp = SystemFiles().Stamp(path);
    return stamp.exists && stamp == SystemFiles().Stamp(other);
}

void RequireDifferent(const std::wstring& source, const std::wstring& target)
{
    if (IsSameFile(source, target)) {
        RaiseInput(target + L" would replace the file that it is made from. Give another name to -o.");
    }
}

void RequireNew(const std::wstring& target, bool forces)
{
    if (!forces && SystemFiles().Stamp(target).exists) {
        RaiseInput(target + L" exists already. Give another name, or replace it with --force.");
    }
}

std::wstring TemporaryPath(const std::wstring& name)
{
    wchar_t folder[MAX_PATH + 1] = {};
    return GetTempPathW(MAX_PATH + 1, folder) == 0 ? AbsolutePath(name) : folder + name;
}

PendingFile::PendingFile(const std::wstring& target) : target_(target)
{
    std::unique_ptr<OutputFile> file;
    RequireWritten(SystemFiles().CreateTemporary(target, path_, file), target);
    file->Close();
}

PendingFile::~PendingFile()
{
    if (!path_.empty()) {
        SystemFiles().Remove(path_);
    }
}

void PendingFile::TakePlace()
{
    RequireWritten(MoveInto(SystemFiles(), path_, target_), target_);
    path_.clear();
}

}  // namespace tvn2x
