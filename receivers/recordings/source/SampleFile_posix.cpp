#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "receivers/recordings/source/RecordingError.h"
#include "receivers/recordings/source/SampleFile.h"
#include "util/Encoding.h"
#include "util/FileKit.h"

namespace tvn2x::recordings {
namespace {

[[noreturn]] void Refuse(const std::wstring& path)
{
    RaiseRecording(path + L" cannot be read: " + std::wstring(FaultText(FaultOf(static_cast<uint32_t>(errno)))));
}

/// A file of the system's.
class SystemFile final : public StoredBytes
{
public:
    explicit SystemFile(const std::wstring& path) : path_(path), file_(open(ToUtf8(path).c_str(), O_RDONLY | O_CLOEXEC))
    {
        if (file_ < 0) {
            Refuse(path);
        }
    }
    SystemFile(const SystemFile&) = delete;
    SystemFile& operator=(const SystemFile&) = delete;
    ~SystemFile() override { close(file_); }

    uint64_t Size() const override
    {
        struct stat state = {};
        return fstat(file_, &state) == 0 ? static_cast<uint64_t>(state.st_size) : 0;
    }

    size_t ReadAt(uint64_t offset, std::span<char> into) override
    {
        size_t got = 0;
        while (got < into.size()) {
            const ssize_t part = pread(file_, into.data() + got, into.size() - got, static_cast<off_t>(offset + got));
            if (part < 0 && errno == EINTR) {
                continue;
            }
            if (part < 0) {
                Refuse(path_);
            }
            if (part == 0) {
                break;
            }
            got += static_cast<size_t>(part);
        }
        return got;
    }

private:
    std::wstring path_;
    int file_;
};

}  // namespace

std::unique_ptr<StoredBytes> OpenStored(const std::wstring& path)
{
    return std::make_unique<SystemFile>(path);
}

}  // namespace tvn2x::recordings
