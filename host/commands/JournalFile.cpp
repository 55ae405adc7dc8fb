#include "host/commands/JournalFile.h"

#include <utility>

#include "host/console/Files.h"
#include "text/InputError.h"
#include "util/FileKit.h"

namespace tvn2x {

JournalFile JournalFile::Create(const std::wstring& path)
{
    const HANDLE handle =
        CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        const DWORD error = GetLastError();
        if (error == ERROR_FILE_EXISTS) {
            RaiseInput(path + L" exists already. Go on with it (scan SETUP --resume " + path +
                       L"), delete it, or give --journal another name.");
        }
        RequireWritten(FaultOf(error), path);
    }
    return {handle, 0, path};
}

JournalFile JournalFile::Open(const std::wstring& path, size_t keep)
{
    const HANDLE handle = CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        RequireWritten(FaultOf(GetLastError()), path);
    }
    return {handle, static_cast<LONGLONG>(keep), path};
}

JournalFile::JournalFile(JournalFile&& other) noexcept
    : handle_(std::exchange(other.handle_, INVALID_HANDLE_VALUE)), end_(other.end_), path_(std::move(other.path_))
{
}

JournalFile::~JournalFile()
{
    if (handle_ != INVALID_HANDLE_VALUE) {
        CloseHandle(handle_);
        if (end_ == 0) {
            DeleteFileW(path_.c_str());
        }
    }
}

bool JournalFile::CutAtEnd()
{
    LARGE_INTEGER end;
    end.QuadPart = end_;
    return SetFilePointerEx(handle_, end, nullptr, FILE_BEGIN) && SetEndOfFile(handle_);
}

FileFault JournalFile::Append(std::string_view bytes)
{
    if (!CutAtEnd()) {
        return FaultOf(GetLastError());
    }
    for (std::string_view rest = bytes; !rest.empty();) {
        DWORD written = 0;
        const bool isDone = WriteFile(handle_, rest.data(), static_cast<DWORD>(rest.size()), &written, nullptr) != 0;
        const DWORD error = isDone ? ERROR_DISK_FULL : GetLastError();
        if (!isDone || written == 0) {
            CutAtEnd();
            return FaultOf(error);
        }
        rest.remove_prefix(written);
    }
    if (!FlushFileBuffers(handle_)) {
        const DWORD error = GetLastError();
        CutAtEnd();
        return FaultOf(error);
    }
    end_ += static_cast<LONGLONG>(bytes.size());
    return FileFault::none;
}

}  // namespace tvn2x
