#include <windows.h>

#include <algorithm>

#include "receivers/recordings/source/RecordingError.h"
#include "receivers/recordings/source/SampleFile.h"
#include "util/FileKit.h"

namespace tvn2x::recordings {
namespace {

[[noreturn]] void Refuse(const std::wstring& path, DWORD fault)
{
    RaiseRecording(path + L" cannot be read: " + std::wstring(FaultText(FaultOf(fault))));
}

/// A file of the system's.
class SystemFile final : public StoredBytes
{
public:
    explicit SystemFile(const std::wstring& path)
        : path_(path),
          file_(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                            OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr))
    {
        if (file_ == INVALID_HANDLE_VALUE) {
            Refuse(path, GetLastError());
        }
    }
    SystemFile(const SystemFile&) = delete;
    SystemFile& operator=(const SystemFile&) = delete;
    ~SystemFile() override { CloseHandle(file_); }

    uint64_t Size() const override
    {
        LARGE_INTEGER size{};
        return GetFileSizeEx(file_, &size) ? static_cast<uint64_t>(size.QuadPart) : 0;
    }

    size_t ReadAt(uint64_t offset, std::span<char> into) override
    {
        constexpr size_t longestRead = 1 << 24;
        size_t got = 0;
        while (got < into.size()) {
            const uint64_t at = offset + got;
            OVERLAPPED place{};
            place.Offset = static_cast<DWORD>(at);
            place.OffsetHigh = static_cast<DWORD>(at >> 32);
            DWORD part = 0;
            const auto wanted = static_cast<DWORD>(std::min(into.size() - got, longestRead));
            if (!ReadFile(file_, into.data() + got, wanted, &part, &place)) {
                const DWORD fault = GetLastError();
                if (fault != ERROR_HANDLE_EOF) {
                    Refuse(path_, fault);
                }
            }
            if (part == 0) {
                break;
            }
            got += part;
        }
        return got;
    }

private:
    std::wstring path_;
    HANDLE file_;
};

}  // namespace

std::unique_ptr<StoredBytes> OpenStored(const std::wstring& path)
{
    return std::make_unique<SystemFile>(path);
}

}  // namespace tvn2x::recordings
