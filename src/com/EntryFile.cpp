#include "com/EntryFile.h"

#include <windows.h>

#include <optional>
#include <tuple>

namespace tvn2x::com {
namespace {

bool EqualNames(const std::wstring& a, const std::wstring& b)
{
    return CompareStringOrdinal(a.c_str(), static_cast<int>(a.size()), b.c_str(), static_cast<int>(b.size()), TRUE) ==
           CSTR_EQUAL;
}

bool IsInSystemFolder(const std::wstring& name)
{
    wchar_t folder[MAX_PATH];
    const UINT length = GetSystemDirectoryW(folder, MAX_PATH);
    return length > 0 && length < MAX_PATH && name.size() > length && name[length] == L'\\' &&
           EqualNames(name.substr(0, length), folder);
}

/// What tells a file from all others of the machine, as long as it is open.
using Identity = std::tuple<DWORD, DWORD, DWORD>;

/// A file held open to ask who it is, not to read it.
class OpenFile
{
public:
    explicit OpenFile(const std::wstring& name)
        : handle_(CreateFileW(name.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                              OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr))
    {
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile()
    {
        if (handle_ != INVALID_HANDLE_VALUE) {
            CloseHandle(handle_);
        }
    }

    std::optional<Identity> Id() const
    {
        BY_HANDLE_FILE_INFORMATION information;
        if (handle_ == INVALID_HANDLE_VALUE || !GetFileInformationByHandle(handle_, &information)) {
            return std::nullopt;
        }
        return Identity(information.dwVolumeSerialNumber, information.nFileIndexHigh, information.nFileIndexLow);
    }

private:
    HANDLE handle_;
};

}  // namespace

EntryFile::EntryFile(std::wstring path) : name_(std::move(path))
{
    if (name_.size() > 1 && name_.front() == L'"' && name_.back() == L'"') {
        name_ = name_.substr(1, name_.size() - 2);
    }
    const size_t end = name_.find_last_not_of(L"0123456789");
    if (end != std::wstring::npos && end > 0 && end + 1 < name_.size() && name_[end] == L'\\') {
        name_.resize(end);
    }
}

bool EntryFile::IsGone() const
{
    if (name_.find(L'\\') == std::wstring::npos || IsInSystemFolder(name_)) {
        return false;
    }
    if (GetFileAttributesW(name_.c_str()) != INVALID_FILE_ATTRIBUTES) {
        return false;
    }
    const DWORD error = GetLastError();
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

bool EntryFile::Is(const EntryFile& other) const
{
    if (EqualNames(name_, other.name_)) {
        return true;
    }
    const OpenFile one(name_), two(other.name_);
    const auto id = one.Id();
    return id && id == two.Id();
}

std::wstring EntryFile::Folder() const
{
    const size_t end = name_.find_last_of(L'\\');
    return end == std::wstring::npos ? std::wstring() : name_.substr(0, end == 2 ? 3 : end);
}

}  // namespace tvn2x::com
