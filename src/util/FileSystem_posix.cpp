#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <ctime>
#include <cwctype>
#include <thread>
#include <utility>

#include "util/Encoding.h"
#include "util/FileKit.h"
#include "util/FileSystem.h"

namespace tvn2x {
namespace {

constexpr SystemError systemErrors[] = {
    {ENOENT, FileFault::missing},    {ENOTDIR, FileFault::pathMissing}, {ENAMETOOLONG, FileFault::pathMissing},
    {ELOOP, FileFault::pathMissing}, {EACCES, FileFault::accessDenied}, {EPERM, FileFault::accessDenied},
    {EROFS, FileFault::readOnly},    {ENOSPC, FileFault::diskFull},     {EDQUOT, FileFault::diskFull},
    {EFBIG, FileFault::diskFull},    {EISDIR, FileFault::isDirectory},  {EBUSY, FileFault::inUse},
    {ETXTBSY, FileFault::inUse},
};

struct DescriptorKind
{
    using Value = int;
    static Value None() { return -1; }
    static bool Close(Value value) { return close(value) == 0; }
};

/// A file descriptor that closes itself.
using Descriptor = OpenFile<DescriptorKind>;

uint64_t Nanoseconds(const timespec& time)
{
    return static_cast<uint64_t>(time.tv_sec) * 1'000'000'000 + static_cast<uint64_t>(time.tv_nsec);
}

FileStamp StampOf(const struct stat& state)
{
    return {true, static_cast<uint64_t>(state.st_size), Nanoseconds(state.st_mtim), state.st_ino};
}

FileStamp StampAt(const std::string& path)
{
    struct stat state
    {
    };
    return stat(path.c_str(), &state) == 0 && S_ISREG(state.st_mode) ? StampOf(state) : FileStamp();
}

std::string FolderOf(const std::string& path)
{
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? "./" : path.substr(0, slash + 1);
}

/// A path as the system takes it, empty for one that it would cut short.
std::string NativePath(const std::wstring& path)
{
    return path.find(L'\0') == std::wstring::npos ? ToUtf8(path) : std::string();
}

/// The file that a path leads to through any symbolic links, which need not exist.
std::string FollowLinks(std::string path)
{
    constexpr int mostLinks = 40;
    std::array<char, 4096> text;
    for (int i = 0; i < mostLinks; ++i) {
        const ssize_t length = readlink(path.c_str(), text.data(), text.size());
        if (length <= 0) {
            break;
        }
        std::string next(text.data(), static_cast<size_t>(length));
        if (next.front() != '/') {
            next.insert(0, FolderOf(path));
        }
        path = std::move(next);
    }
    return path;
}

bool FolderExists(const std::string& path)
{
    struct stat state
    {
    };
    return stat(FolderOf(path).c_str(), &state) == 0 && S_ISDIR(state.st_mode);
}

/// Whether a file may be replaced: nothing forbids the renaming itself.
FileFault CheckTarget(const std::string& path, struct stat& state, bool& exists)
{
    if (path.empty()) {
        return FileFault::pathMissing;
    }
    exists = stat(path.c_str(), &state) == 0;
    if (!exists) {
        return errno == ENOENT ? (FolderExists(path) ? FileFault::none : FileFault::pathMissing) : FaultOf(errno);
    }
    if (S_ISDIR(state.st_mode)) {
        return FileFault::isDirectory;
    }
    if (!S_ISREG(state.st_mode)) {
        return FileFault::other;
    }
    if ((state.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) {
        return FileFault::readOnly;
    }
    return faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0 ? FileFault::none : FaultOf(errno);
}

/// Gives a new file the owner, group and permissions of the one it will replace. A group that cannot be kept loses its
/// permissions rather than hand them to another group.
bool TakeRights(const Descriptor& file, const struct stat& target)
{
    mode_t mode = target.st_mode & 07777;
    if (fchown(file.Get(), target.st_uid, target.st_gid) != 0 &&
        fchown(file.Get(), static_cast<uid_t>(-1), target.st_gid) != 0) {
        mode &= ~static_cast<mode_t>(S_IRWXG);
    }
    return fchmod(file.Get(), mode) == 0;
}

/// Removes what processes that were killed have left in a folder. What cannot be removed stays.
void RemoveStaleTemporaries(const std::string& folder)
{
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(opendir(folder.c_str()), closedir);
    const auto now = static_cast<int64_t>(time(nullptr));
    while (const dirent* const entry = entries ? readdir(entries.get()) : nullptr) {
        struct stat state
        {
        };
        const int at = dirfd(entries.get());
        if (entry->d_name[0] == '~' && IsUnpredictableName(FromUtf8(entry->d_name)) &&
            fstatat(at, entry->d_name, &state, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(state.st_mode) &&
            state.st_mtim.tv_sec < now - staleAge) {
            unlinkat(at, entry->d_name, 0);
        }
    }
}

/// The system lets go of the folder when its descriptor is closed, by whomever.
class FolderLock : public FileLock
{
public:
    explicit FolderLock(Descriptor folder) : folder_(std::move(folder)) {}

private:
    Descriptor folder_;
};

/// Locks a folder: a file's own lock would stay with the old file when another takes its place. There is no call that
/// waits for a limited time, so it is asked again and again, often enough to get in between two saves of a busy writer.
FileFault LockFolder(Descriptor folder, std::unique_ptr<FileLock>& lock)
{
    constexpr std::chrono::milliseconds longestWait(500);
    constexpr std::chrono::microseconds pause(200);
    const auto begin = std::chrono::steady_clock::now();
    while (folder && flock(folder.Get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR) {
            return FileFault::none;
        }
        if (std::chrono::steady_clock::now() - begin > longestWait) {
            return FileFault::inUse;
        }
        std::this_thread::sleep_for(pause);
    }
    if (folder) {
        lock = std::make_unique<FolderLock>(std::move(folder));
    }
    return FileFault::none;
}

/// A file that is being read.
class PosixInput : public InputFile
{
public:
    explicit PosixInput(Descriptor file) : file_(std::move(file)) {}

    FileFault Stamp(FileStamp& stamp) override
    {
        struct stat state
        {
        };
        if (fstat(file_.Get(), &state) != 0) {
            return FaultOf(errno);
        }
        stamp = StampOf(state);
        // A folder says so itself when it is read.
        return S_ISREG(state.st_mode) || S_ISDIR(state.st_mode) ? FileFault::none : FileFault::other;
    }

    FileFault Rewind() override { return lseek(file_.Get(), 0, SEEK_SET) == 0 ? FileFault::none : FaultOf(errno); }

    FileFault Read(char* bytes, size_t size, size_t& got) override
    {
        ssize_t length = 0;
        do {
            length = read(file_.Get(), bytes, size);
        } while (length < 0 && errno == EINTR);
        got = length < 0 ? 0 : static_cast<size_t>(length);
        return length < 0 ? FaultOf(errno) : FileFault::none;
    }

private:
    Descriptor file_;
};

/// A file that is being written.
class PosixOutput : public OutputFile
{
public:
    Descriptor file;

    FileFault Write(std::string_view bytes) override
    {
        while (!bytes.empty()) {
            const ssize_t length = write(file.Get(), bytes.data(), bytes.size());
            if (length < 0 && errno != EINTR) {
                return FaultOf(errno);
            }
            bytes.remove_prefix(length < 0 ? 0 : static_cast<size_t>(length));
        }
        return FileFault::none;
    }
    FileFault Flush() override { return fsync(file.Get()) == 0 ? FileFault::none : FaultOf(errno); }
    FileFault Close() override { return file.Close() ? FileFault::none : FaultOf(errno); }
};

/// The files of the machine.
class MachineFiles : public FileSystem
{
public:
    FileStamp Stamp(const std::wstring& path) override { return StampAt(NativePath(path)); }

    uint64_t Now() override
    {
        timespec time{};
        clock_gettime(CLOCK_REALTIME, &time);
        return Nanoseconds(time);
    }

    FileFault Read(const std::wstring& path, std::string& content, FileStamp& stamp) override
    {
        const std::string native = NativePath(path);
        Descriptor file(open(native.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));  // no waiting for a pipe's other end
        if (!file) {
            return errno == ENOENT && !FolderExists(native) ? FileFault::pathMissing : FaultOf(errno);
        }
        PosixInput input(std::move(file));
        return ReadOneState(input, content, stamp);
    }

    FileFault CreateTemporary(const std::wstring& target, std::wstring& path,
                              std::unique_ptr<OutputFile>& file) override
    {
        const std::string native = FollowLinks(NativePath(target));
        struct stat state
        {
        };
        bool exists = false;
        if (const FileFault fault = CheckTarget(native, state, exists); fault != FileFault::none) {
            return fault;
        }

        RemoveStaleTemporaries(FolderOf(native));
        // Whatever may fail for want of memory comes before the file is made.
        auto output = std::make_unique<PosixOutput>();
        std::wstring name = FromUtf8(FolderOf(native)) + UnpredictableName();
        const std::string nativeName = ToUtf8(name);
        output->file = Descriptor(
            open(nativeName.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, exists ? 0600 : 0666));
        if (!output->file) {
            return FaultOf(errno);
        }
        if (exists && !TakeRights(output->file, state)) {
            const int error = errno;
            unlink(nativeName.c_str());
            return FaultOf(error);
        }
        path = std::move(name);
        file = std::move(output);
        return FileFault::none;
    }

    FileFault Exclude(const std::wstring& path, std::unique_ptr<FileLock>& lock) override
    {
        const std::string folder = FolderOf(FollowLinks(NativePath(path)));
        return LockFolder(Descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)), lock);
    }

    FileFault Rename(const std::wstring& from, const std::wstring& to, const FileStamp* expected) override
    {
        const std::string native = FollowLinks(NativePath(to));
        struct stat state
        {
        };
        bool exists = false;
        if (const FileFault fault = CheckTarget(native, state, exists); fault != FileFault::none) {
            return fault;
        }
        if (expected != nullptr && !(StampAt(native) == *expected)) {
            return FileFault::changed;
        }
        if (rename(NativePath(from).c_str(), native.c_str()) != 0) {
            return FaultOf(errno);
        }
        // The file is in place; a folder that cannot be flushed only delays how soon the disk knows.
        if (const Descriptor folder(open(FolderOf(native).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)); folder) {
            fsync(folder.Get());
        }
        return FileFault::none;
    }

    FileFault Remove(const std::wstring& path) override
    {
        return unlink(NativePath(path).c_str()) == 0 ? FileFault::none : FaultOf(errno);
    }

    std::optional<std::wstring> FindFirst(const std::wstring& pattern) override
    {
        const size_t nameAt = pattern.rfind(L'/') + 1;
        const std::string folder = FolderOf(NativePath(pattern));
        const std::unique_ptr<DIR, int (*)(DIR*)> entries(opendir(folder.c_str()), closedir);
        if (!entries) {
            return std::nullopt;
        }
        // The system lists in no order: the first is the first of the alphabet.
        std::optional<std::wstring> first;
        while (const dirent* const entry = readdir(entries.get())) {
            const std::wstring name = FromUtf8(entry->d_name);
            if ((!first || Before(name, *first)) && MatchesPattern(name, std::wstring_view(pattern).substr(nameAt)) &&
                Stamp(FromUtf8(folder) + name).exists) {
                first = name;
            }
        }
        return first;
    }

    std::wstring CurrentFolder() override
    {
        std::array<char, 4096> folder;
        return getcwd(folder.data(), folder.size()) != nullptr ? FromUtf8(folder.data()) : std::wstring();
    }

private:
    static bool Before(const std::wstring& left, const std::wstring& right)
    {
        const auto before = [](wchar_t a, wchar_t b) { return std::towupper(a) < std::towupper(b); };
        return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(), before);
    }
};

}  // namespace

std::span<const SystemError> SystemErrors()
{
    return systemErrors;
}

std::wstring FullPath(const std::wstring& path)
{
    const std::wstring folder = path.starts_with(L'/') ? L"" : SystemFiles().CurrentFolder();
    return folder.empty() ? path : folder + L"/" + path;
}

FileSystem& SystemFiles()
{
    static MachineFiles files;
    return files;
}

}  // namespace tvn2x
