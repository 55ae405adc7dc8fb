#include "util/FileSystem.h"

#include <cwctype>
#include <vector>

namespace tvn2x {
std::wstring_view FaultText(FileFault fault)
{
    switch (fault) {
        case FileFault::none:
            return L"there is no fault";
        case FileFault::missing:
            return L"the file does not exist";
        case FileFault::accessDenied:
            return L"access to the file is denied";
        case FileFault::inUse:
            return L"the file is in use by another program";
        case FileFault::diskFull:
            return L"the disk is full";
        case FileFault::pathMissing:
            return L"the folder does not exist";
        case FileFault::readOnly:
            return L"the file is read-only";
        case FileFault::isDirectory:
            return L"the path names a folder";
        case FileFault::tooLarge:
            return L"the file is larger than 1 GiB";
        case FileFault::other:
            break;
    }
    return L"the system reports an error";
}

bool MatchesPattern(std::wstring_view name, std::wstring_view pattern)
{
    if (pattern == L"*.*")
        return true;
    if (pattern.ends_with(L'.')) {
        pattern.remove_suffix(1);
        if (pattern.find_first_of(L"*?") != std::wstring_view::npos && name.find(L'.') != std::wstring_view::npos)
            return false;
    }

    // The places of the pattern that may be reached with the name read so far, so that no pattern takes long.
    std::vector<bool> reached(pattern.size() + 1);
    reached[0] = true;
    for (size_t i = 0; i <= name.size(); ++i) {
        const bool end = i == name.size();
        for (size_t p = 0; p < pattern.size(); ++p) {
            const bool dotBeforeWildcard =
                pattern[p] == L'.' && p + 1 < pattern.size() && (pattern[p + 1] == L'*' || pattern[p + 1] == L'?');
            const bool mayBeNothing =
                pattern[p] == L'*' || (pattern[p] == L'?' && (end || name[i] == L'.')) || (dotBeforeWildcard && end);
            if (reached[p] && mayBeNothing)
                reached[p + 1] = true;
        }
        if (end)
            break;
        std::vector<bool> next(pattern.size() + 1);
        for (size_t p = 0; p < pattern.size(); ++p) {
            if (!reached[p])
                continue;
            if (pattern[p] == L'*')
                next[p] = true;
            else if (pattern[p] == L'?' ? name[i] != L'.' : std::towupper(pattern[p]) == std::towupper(name[i]))
                next[p + 1] = true;
        }
        reached = std::move(next);
    }
    return reached[pattern.size()];
}

FileFault Replacement::Open(const std::wstring& path)
{
    Discard();
    path_ = path;
    const FileFault fault = files_.CreateTemporary(path, temporary_, file_);
    if (fault != FileFault::none)
        temporary_.clear();
    return fault;
}

FileFault Replacement::Commit()
{
    FileFault fault = file_->Flush();
    const FileFault closeFault = file_->Close();
    file_.reset();
    if (fault == FileFault::none)
        fault = closeFault;
    if (fault == FileFault::none)
        fault = files_.Rename(temporary_, path_);
    if (fault == FileFault::none)
        temporary_.clear();
    else
        Discard();
    return fault;
}

void Replacement::Discard() noexcept
{
    file_.reset();
    if (temporary_.empty())
        return;
    try {
        files_.Remove(temporary_);
    } catch (...) {
        // Out of memory on the way out of a fault: the fault matters more than the file left behind.
    }
    temporary_.clear();
}

FileFault ReplaceContent(FileSystem& files, const std::wstring& path, std::string_view content)
{
    Replacement replacement(files);
    FileFault fault = replacement.Open(path);
    if (fault == FileFault::none)
        fault = replacement.Write(content);
    return fault == FileFault::none ? replacement.Commit() : fault;
}

}  // namespace tvn2x
