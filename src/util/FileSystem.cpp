#include "util/FileSystem.h"

#include <cwctype>
#include <vector>

#include "util/FileKit.h"

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
        case FileFault::changed:
            return L"another program keeps changing the file";
        case FileFault::other:
            break;
    }
    return L"the system reports an error";
}

uint64_t TickOf(const FileStamp& stamp)
{
    constexpr uint64_t second = 1'000'000'000;
    // Systems stamp files when their scheduler ticks, however fine their stamps are.
    constexpr uint64_t shortest = second / 50;
    if (stamp.modified % (2 * second) == 0) {
        return 2 * second;
    }
    return stamp.modified % second == 0 ? second : shortest;
}

bool MatchesPattern(std::wstring_view name, std::wstring_view pattern)
{
    if (pattern == L"*.*") {
        return true;
    }
    if (pattern.ends_with(L'.')) {
        pattern.remove_suffix(1);
        if (pattern.find_first_of(L"*?") != std::wstring_view::npos && name.find(L'.') != std::wstring_view::npos) {
            return false;
        }
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
            if (reached[p] && mayBeNothing) {
                reached[p + 1] = true;
            }
        }
        if (end) {
            break;
        }
        std::vector<bool> next(pattern.size() + 1);
        for (size_t p = 0; p < pattern.size(); ++p) {
            if (!reached[p]) {
                continue;
            }
            if (pattern[p] == L'*') {
                next[p] = true;
            } else if (pattern[p] == L'?' ? name[i] != L'.' : std::towupper(pattern[p]) == std::towupper(name[i])) {
                next[p + 1] = true;
            }
        }
        reached = std::move(next);
    }
    return reached[pattern.size()];
}

FileFault Replacement::Open(const std::wstring& path)
{
    Discard();
    path_ = path;
    written_ = 0;
    const FileFault fault = files_.CreateTemporary(path, temporary_, file_);
    if (fault != FileFault::none) {
        temporary_.clear();
    }
    return fault;
}

FileFault Replacement::Write(std::string_view bytes)
{
    written_ += bytes.size();
    return written_ > largestFile ? FileFault::tooLarge : file_->Write(bytes);
}

FileFault Replacement::Finish()
{
    if (!file_) {
        return FileFault::none;
    }
    const FileFault fault = file_->Flush();
    const FileFault closeFault = file_->Close();
    file_.reset();
    return fault != FileFault::none ? fault : closeFault;
}

FileFault Replacement::Commit()
{
    const FileFault fault = Finish();
    return Ended(fault == FileFault::none ? MoveInto(files_, temporary_, path_) : fault);
}

FileFault Replacement::Commit(const FileStamp& state)
{
    const FileFault fault = Finish();
    return Ended(fault == FileFault::none ? files_.Rename(temporary_, path_, &state) : fault);
}

FileFault Replacement::Ended(FileFault fault)
{
    if (fault == FileFault::none) {
        temporary_.clear();
    } else {
        Discard();
    }
    return fault;
}

void Replacement::Discard() noexcept
{
    file_.reset();
    if (temporary_.empty()) {
        return;
    }
    try {
        files_.Remove(temporary_);
    } catch (...) {
        // Out of memory on the way out of a fault: the fault matters more than the file left behind.
    }
    temporary_.clear();
}

FileFault MoveInto(FileSystem& files, const std::wstring& from, const std::wstring& to)
{
    std::unique_ptr<FileLock> alone;
    const FileFault fault = files.Exclude(to, alone);
    return fault == FileFault::none ? files.Rename(from, to, nullptr) : fault;
}

FileFault ReplaceContent(FileSystem& files, const std::wstring& path, std::string_view content)
{
    Replacement replacement(files);
    FileFault fault = replacement.Open(path);
    if (fault == FileFault::none) {
        fault = replacement.Write(content);
    }
    return fault == FileFault::none ? replacement.Commit() : fault;
}

}  // namespace tvn2x
