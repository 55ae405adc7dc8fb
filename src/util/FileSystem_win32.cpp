#include <windows.h>

#include <sddl.h>
#include <winternl.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "util/FileKit.h"
#include "util/FileSystem.h"

namespace tvn2x {
namespace {

constexpr DWORD diskQuotaExceeded = 1295;  // missing from the compiler's headers
constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

constexpr SystemError systemErrors[] = {
    {ERROR_FILE_NOT_FOUND, FileFault::missing},
    {ERROR_PATH_NOT_FOUND, FileFault::pathMissing},
    {ERROR_INVALID_NAME, FileFault::pathMissing},
    {ERROR_BAD_PATHNAME, FileFault::pathMissing},
    {ERROR_INVALID_DRIVE, FileFault::pathMissing},
    {ERROR_NOT_READY, FileFault::pathMissing},
    {ERROR_BAD_NETPATH, FileFault::pathMissing},
    {ERROR_BAD_NET_NAME, FileFault::pathMissing},
    {ERROR_FILENAME_EXCED_RANGE, FileFault::pathMissing},
    {ERROR_DIRECTORY, FileFault::pathMissing},
    {ERROR_ACCESS_DENIED, FileFault::accessDenied},
    {ERROR_PRIVILEGE_NOT_HELD, FileFault::accessDenied},
    {ERROR_WRITE_PROTECT, FileFault::readOnly},
    {ERROR_SHARING_VIOLATION, FileFault::inUse},
    {ERROR_LOCK_VIOLATION, FileFault::inUse},
    {ERROR_USER_MAPPED_FILE, FileFault::inUse},
    {ERROR_DISK_FULL, FileFault::diskFull},
    {ERROR_HANDLE_DISK_FULL, FileFault::diskFull},
    {diskQuotaExceeded, FileFault::diskFull},
};

FileFault LastFault()
{
    return FaultOf(GetLastError());
}

struct HandleKind
{
    using Value = HANDLE;
    static Value None() { return INVALID_HANDLE_VALUE; }
    static bool Close(Value value) { return CloseHandle(value) != 0; }
};

/// A file handle that closes itself.
using Handle = OpenFile<HandleKind>;

Handle Open(const std::wstring& path, DWORD access, DWORD flags)
{
    return Handle(CreateFileW(path.c_str(), access, shareAll, nullptr, OPEN_EXISTING, flags, nullptr));
}

/// A path as the system takes it: one that is too long for the usual rules in the form that has none. Empty for a path
/// with a NUL, which the system would cut short.
std::wstring NativePath(const std::wstring& path)
{
    constexpr size_t longestPlain = MAX_PATH - 13;  // as far as folders go, which leave room for an 8.3 name
    if (path.find(L'\0') != std::wstring::npos) {
        return {};
    }
    if (path.starts_with(L"\\\\?\\") || path.starts_with(L"\\\\.\\")) {
        return path;
    }
    const std::wstring full = FullPath(path);
    if (full.size() < longestPlain) {
        return path;
    }
    return full.starts_with(L"\\\\") ? L"\\\\?\\UNC" + full.substr(1) : L"\\\\?\\" + full;
}

/// The file that a path leads to through any links, so that the link itself stays.
std::wstring FollowLinks(const std::wstring& path)
{
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
        return path;
    }
    const Handle file = Open(path, FILE_READ_ATTRIBUTES, FILE_FLAG_BACKUP_SEMANTICS);
    if (!file) {
        return path;
    }
    std::wstring real(GetFinalPathNameByHandleW(file.Get(), nullptr, 0, 0), L'\0');
    const DWORD length = GetFinalPathNameByHandleW(file.Get(), real.data(), static_cast<DWORD>(real.size()), 0);
    return length == 0 || length >= real.size() ? path : real.substr(0, length);
}

std::wstring FolderOf(const std::wstring& path)
{
    return path.substr(0, path.find_last_of(L"\\/:") + 1);
}

uint64_t Join(DWORD high, DWORD low)
{
    return static_cast<uint64_t>(high) << 32 | low;
}

constexpr uint64_t nanosecondsPerTick = 100;
constexpr uint64_t ticksPerSecond = 10'000'000;

/// Of the system's file times, in ticks.
uint64_t CurrentTicks()
{
    FILETIME now{};
    GetSystemTimeAsFileTime(&now);
    return Join(now.dwHighDateTime, now.dwLowDateTime);
}

/// The number that tells a file from others on its volume, 0 where there is none. It is asked for on its own:
/// GetFileInformationByHandle asks for the volume too, which can take longer than reading the file.
uint64_t IdentityOf(const Handle& file)
{
    using Query = NTSTATUS(NTAPI*)(HANDLE, IO_STATUS_BLOCK*, void*, ULONG, int);
    static const auto query = reinterpret_cast<Query>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQueryInformationFile")));
    constexpr int internalInformation = 6;
    IO_STATUS_BLOCK status{};
    uint64_t index = 0;
    return query(file.Get(), &status, &index, sizeof index, internalInformation) >= 0 ? index : 0;
}

FileFault StampOf(const Handle& file, FileStamp& stamp)
{
    FILE_BASIC_INFO basic{};
    FILE_STANDARD_INFO standard{};
    if (GetFileType(file.Get()) != FILE_TYPE_DISK) {
        return FileFault::other;
    }
    if (!GetFileInformationByHandleEx(file.Get(), FileBasicInfo, &basic, sizeof basic) ||
        !GetFileInformationByHandleEx(file.Get(), FileStandardInfo, &standard, sizeof standard)) {
        return LastFault();
    }
    if (standard.Directory) {
        return FileFault::isDirectory;
    }
    stamp = {true, static_cast<uint64_t>(standard.EndOfFile.QuadPart),
             static_cast<uint64_t>(basic.LastWriteTime.QuadPart) * nanosecondsPerTick, IdentityOf(file)};
    return FileFault::none;
}

/// The stamp of a file, which does not exist where nobody can see it.
FileStamp StampAt(const std::wstring& path)
{
    FileStamp stamp;
    if (const Handle file = Open(path, FILE_READ_ATTRIBUTES, FILE_FLAG_BACKUP_SEMANTICS); file) {
        if (StampOf(file, stamp) != FileFault::none) {
            stamp = {};
        }
        return stamp;
    }
    // Who may not open the file may still see it in its folder.
    WIN32_FILE_ATTRIBUTE_DATA state{};
    if (GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &state) &&
        (state.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
        stamp = {true, Join(state.nFileSizeHigh, state.nFileSizeLow),
                 Join(state.ftLastWriteTime.dwHighDateTime, state.ftLastWriteTime.dwLowDateTime) * nanosecondsPerTick,
                 0};
    }
    return stamp;
}

/// Whether a file may be replaced: whoever may not write to it shall not get round that by a rename.
FileFault CheckTarget(const std::wstring& path, DWORD& attributes)
{
    if (path.empty()) {
        return FileFault::pathMissing;
    }
    attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        const FileFault fault = LastFault();
        return fault == FileFault::missing ? FileFault::none : fault;
    }
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        return FileFault::isDirectory;
    }
    if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        return FileFault::readOnly;
    }
    if (Open(path, GENERIC_WRITE, 0)) {
        return FileFault::none;
    }
    const FileFault fault = LastFault();
    return fault == FileFault::inUse ? FileFault::none : fault;
}

/// Gives a new file the access rights of the one it will replace, where the file system has any.
FileFault TakeRights(const Handle& file, const std::wstring& target)
{
    const auto none = [](DWORD error) {
        return error == ERROR_NOT_SUPPORTED || error == ERROR_INVALID_FUNCTION || error == ERROR_CALL_NOT_IMPLEMENTED;
    };
    DWORD size = 0;
    GetFileSecurityW(target.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    if (size == 0) {
        return none(GetLastError()) ? FileFault::none : LastFault();
    }
    std::vector<unsigned char> descriptor(size);
    if (!GetFileSecurityW(target.c_str(), DACL_SECURITY_INFORMATION, descriptor.data(), size, &size)) {
        return LastFault();
    }
    SECURITY_DESCRIPTOR_CONTROL control = 0;
    DWORD revision = 0;
    GetSecurityDescriptorControl(descriptor.data(), &control, &revision);
    const SECURITY_INFORMATION inheritance = (control & SE_DACL_PROTECTED) != 0 ? PROTECTED_DACL_SECURITY_INFORMATION
                                                                                : UNPROTECTED_DACL_SECURITY_INFORMATION;
    if (SetKernelObjectSecurity(file.Get(), DACL_SECURITY_INFORMATION | inheritance, descriptor.data())) {
        return FileFault::none;
    }
    return none(GetLastError()) ? FileFault::none : LastFault();
}

/// Whether waiting may help. A holder that shares no deleting makes the system answer a rename with a denial, as does
/// one who has just let go; a denial for want of rights stays one.
bool MayPass(const std::wstring& path, FileFault& fault)
{
    if (fault == FileFault::accessDenied) {
        if (Open(path, DELETE, 0)) {
            return true;
        }
        if (LastFault() == FileFault::inUse) {
            fault = FileFault::inUse;
        }
    }
    return fault == FileFault::inUse;
}

/// Calls until it succeeds, for half a second at most as long as somebody holds the file: a scanner or an indexer lets
/// it go soon.
template <typename Call>
FileFault WhileInUse(const std::wstring& path, Call&& call)
{
    constexpr int attempts = 20;
    constexpr DWORD pause = 25;
    for (int attempt = 1;; ++attempt) {
        if (call()) {
            return FileFault::none;
        }
        FileFault fault = LastFault();
        if (!MayPass(path, fault) || attempt == attempts) {
            return fault;
        }
        Sleep(pause);
    }
}

/// Removes what processes that were killed have left in a folder. What cannot be removed stays.
void RemoveStaleTemporaries(const std::wstring& folder)
{
    const uint64_t oldest = CurrentTicks() - staleAge * ticksPerSecond;
    WIN32_FIND_DATAW found{};
    const HANDLE search = FindFirstFileW(NativePath(folder + L"~tvn*.tmp").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return;
    }
    const std::unique_ptr<void, BOOL(WINAPI*)(HANDLE)> closed(search, FindClose);
    constexpr DWORD noPlainFile = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    do {
        const uint64_t written = Join(found.ftLastWriteTime.dwHighDateTime, found.ftLastWriteTime.dwLowDateTime);
        if (IsUnpredictableName(found.cFileName) && (found.dwFileAttributes & noPlainFile) == 0 && written < oldest) {
            DeleteFileW(NativePath(folder + found.cFileName).c_str());
        }
    } while (FindNextFileW(search, &found));
}

/// A mutex, released by the thread that has got it. The system hands it on where its process ends.
class FolderLock : public FileLock
{
public:
    explicit FolderLock(Handle mutex) : mutex_(std::move(mutex)) {}
    ~FolderLock() override { ReleaseMutex(mutex_.Get()); }

    DWORD Wait(DWORD milliseconds) { return mutex_ ? WaitForSingleObject(mutex_.Get(), milliseconds) : WAIT_FAILED; }

private:
    Handle mutex_;
};

/// The mutex of a folder, the same one for every program of the machine, whoever runs it. It is named after the
/// folder's number on its volume, which all paths to it have in common; folders of two volumes that share a number
/// share the mutex. No handle where the folder or the system has none.
Handle MutexOf(const std::wstring& folder)
{
    static const std::unique_ptr<void, HLOCAL(WINAPI*)(HLOCAL)> rights = [] {
        PSECURITY_DESCRIPTOR everyoneMayWait = nullptr;  // SYNCHRONIZE and MUTEX_MODIFY_STATE for Everyone
        ConvertStringSecurityDescriptorToSecurityDescriptorW(L"D:(A;;0x100001;;;WD)", SDDL_REVISION_1, &everyoneMayWait,
                                                             nullptr);
        return std::unique_ptr<void, HLOCAL(WINAPI*)(HLOCAL)>(everyoneMayWait, LocalFree);
    }();
    const bool named = !folder.empty() && folder.back() != L':';
    const Handle opened = Open(named ? folder : folder + L".", FILE_READ_ATTRIBUTES, FILE_FLAG_BACKUP_SEMANTICS);
    if (!opened) {
        return Handle();
    }
    const std::wstring name = L"Global\\TVN2x.folder." + std::to_wstring(IdentityOf(opened));
    SECURITY_ATTRIBUTES attributes{sizeof attributes, rights.get(), FALSE};
    const HANDLE mutex = CreateMutexExW(&attributes, name.c_str(), 0, SYNCHRONIZE | MUTEX_MODIFY_STATE);
    return Handle(mutex == nullptr ? INVALID_HANDLE_VALUE : mutex);
}

/// A file that is being read.
class WindowsInput : public InputFile
{
public:
    explicit WindowsInput(Handle file) : file_(std::move(file)) {}

    FileFault Stamp(FileStamp& stamp) override { return StampOf(file_, stamp); }

    FileFault Rewind() override
    {
        return SetFilePointerEx(file_.Get(), LARGE_INTEGER{}, nullptr, FILE_BEGIN) ? FileFault::none : LastFault();
    }

    FileFault Read(char* bytes, size_t size, size_t& got) override
    {
        DWORD length = 0;
        const auto wanted = static_cast<DWORD>(std::min<size_t>(size, 1U << 30));
        const bool done = ReadFile(file_.Get(), bytes, wanted, &length, nullptr) != 0;
        got = length;
        return done ? FileFault::none : LastFault();
    }

private:
    Handle file_;
};

/// A file that is being written.
class WindowsOutput : public OutputFile
{
public:
    Handle file;

    FileFault Write(std::string_view bytes) override
    {
        while (!bytes.empty()) {
            DWORD length = 0;
            const auto wanted = static_cast<DWORD>(std::min<size_t>(bytes.size(), 1U << 30));
            if (!WriteFile(file.Get(), bytes.data(), wanted, &length, nullptr)) {
                return LastFault();
            }
            if (length == 0) {
                return FileFault::diskFull;
            }
            bytes.remove_prefix(length);
        }
        return FileFault::none;
    }
    FileFault Flush() override { return FlushFileBuffers(file.Get()) ? FileFault::none : LastFault(); }
    FileFault Close() override { return file.Close() ? FileFault::none : LastFault(); }
};

/// The files of the machine.
class MachineFiles : public FileSystem
{
public:
    FileStamp Stamp(const std::wstring& path) override { return StampAt(NativePath(path)); }
    uint64_t Now() override { return CurrentTicks() * nanosecondsPerTick; }

    FileFault Read(const std::wstring& path, std::string& content, FileStamp& stamp) override
    {
        const std::wstring native = NativePath(path);
        Handle file = Open(native, GENERIC_READ, FILE_FLAG_SEQUENTIAL_SCAN);
        if (!file) {
            const FileFault fault = LastFault();
            const DWORD attributes = GetFileAttributesW(native.c_str());
            const bool folder = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
            return folder ? FileFault::isDirectory : fault;
        }
        WindowsInput input(std::move(file));
        return ReadOneState(input, content, stamp);
    }

    FileFault CreateTemporary(const std::wstring& target, std::wstring& path,
                              std::unique_ptr<OutputFile>& file) override
    {
        constexpr DWORD kept = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE |
                               FILE_ATTRIBUTE_NOT_CONTENT_INDEXED | FILE_ATTRIBUTE_ENCRYPTED;
        const std::wstring native = FollowLinks(NativePath(target));
        DWORD attributes = 0;
        if (const FileFault fault = CheckTarget(native, attributes); fault != FileFault::none) {
            return fault;
        }
        const bool exists = attributes != INVALID_FILE_ATTRIBUTES;
        const DWORD taken = exists && (attributes & kept) != 0 ? attributes & kept : FILE_ATTRIBUTE_NORMAL;

        RemoveStaleTemporaries(FolderOf(native));
        // Whatever may fail for want of memory comes before the file is made.
        auto output = std::make_unique<WindowsOutput>();
        std::wstring name = FolderOf(native) + UnpredictableName();
        const std::wstring nativeName = NativePath(name);
        output->file = Handle(CreateFileW(nativeName.c_str(), GENERIC_WRITE | DELETE | WRITE_DAC, 0, nullptr,
                                          CREATE_NEW, taken | FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
        if (!output->file) {
            const FileFault fault = LastFault();
            return fault == FileFault::missing ? FileFault::pathMissing : fault;  // nothing but a drive can be missing
        }
        if (exists) {
            if (const FileFault fault = TakeRights(output->file, native); fault != FileFault::none) {
                output->file.Close();
                DeleteFileW(nativeName.c_str());
                return fault;
            }
        }
        path = std::move(name);
        file = std::move(output);
        return FileFault::none;
    }

    FileFault Exclude(const std::wstring& path, std::unique_ptr<FileLock>& lock) override
    {
        constexpr DWORD longestWait = 500;
        auto folder = std::make_unique<FolderLock>(MutexOf(FolderOf(FollowLinks(NativePath(path)))));
        const DWORD result = folder->Wait(longestWait);
        // One whose process has ended in the middle of its work has left the old file or the new one, as ever.
        if (result == WAIT_OBJECT_0 || result == WAIT_ABANDONED) {
            lock = std::move(folder);
        }
        return result == WAIT_TIMEOUT ? FileFault::inUse : FileFault::none;
    }

    FileFault Rename(const std::wstring& from, const std::wstring& to, const FileStamp* expected) override
    {
        const std::wstring nativeFrom = NativePath(from);
        const std::wstring native = FollowLinks(NativePath(to));
        DWORD attributes = 0;
        if (const FileFault fault = CheckTarget(native, attributes); fault != FileFault::none) {
            return fault;
        }
        bool changed = false;
        const FileFault fault = WhileInUse(native, [&] {
            changed = expected != nullptr && !(StampAt(native) == *expected);
            return changed ||
                   MoveFileExW(nativeFrom.c_str(), native.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
        });
        return changed ? FileFault::changed : fault;
    }

    FileFault Remove(const std::wstring& path) override
    {
        const std::wstring native = NativePath(path);
        return WhileInUse(native, [&] { return DeleteFileW(native.c_str()); });
    }

    std::optional<std::wstring> FindFirst(const std::wstring& pattern) override
    {
        WIN32_FIND_DATAW found{};
        const HANDLE search = FindFirstFileW(NativePath(pattern).c_str(), &found);
        if (search == INVALID_HANDLE_VALUE) {
            return std::nullopt;
        }
        const std::wstring_view name = std::wstring_view(pattern).substr(pattern.find_last_of(L"\\/:") + 1);
        bool match = false;
        do {
            // the system's own match also counts short names, which nobody sees
            match = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0 && MatchesPattern(found.cFileName, name);
        } while (!match && FindNextFileW(search, &found));
        FindClose(search);
        return match ? std::optional<std::wstring>(found.cFileName) : std::nullopt;
    }

    std::wstring CurrentFolder() override
    {
        std::wstring folder(GetCurrentDirectoryW(0, nullptr), L'\0');
        folder.resize(GetCurrentDirectoryW(static_cast<DWORD>(folder.size()), folder.data()));
        return folder;
    }
};

}  // namespace

std::span<const SystemError> SystemErrors()
{
    return systemErrors;
}

std::wstring FullPath(const std::wstring& path)
{
    std::wstring full(MAX_PATH, L'\0');
    DWORD length = GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    // Another thread may have changed the current folder in between.
    while (length > full.size()) {
        full.resize(length);
        length = GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    }
    return length == 0 ? path : full.substr(0, length);
}

FileSystem& SystemFiles()
{
    static MachineFiles files;
    return files;
}

}  // namespace tvn2x
