// Any bytes as what describes a recording, SigMF metadata, a folder's calibration or the head of a WAV file: refused by
// an error that names the file, or recordings that lie within their file.

#include <cstdint>
#include <string>

#include "Fuzz.h"
#include "receivers/recordings/source/RecordingError.h"
#include "receivers/recordings/source/SigmfFile.h"
#include "receivers/recordings/source/WavFile.h"

namespace {

using namespace tvn2x;
using namespace tvn2x::recordings;
using fuzz::Require;

const std::wstring path = L"/signals/cable_306MHz.wav";

class MemoryBytes final : public StoredBytes
{
public:
    explicit MemoryBytes(const std::string& bytes) : bytes_(bytes) {}
    uint64_t Size() const override { return bytes_.size(); }
    size_t ReadAt(uint64_t offset, std::span<char> into) override
    {
        return offset < bytes_.size() ? bytes_.copy(into.data(), into.size(), static_cast<size_t>(offset)) : 0;
    }

private:
    const std::string& bytes_;
};

void RequireWithin(const Recording& recording, uint64_t length)
{
    Require(recording.firstByte <= length, "the first sample is in the file");
    Require(recording.samples <= (length - recording.firstByte) / BytesOf(recording.format), "so is the last");
    Require(recording.rate >= lowestRate && recording.rate <= highestRate, "a rate");
    Require(recording.frequency >= 0 && recording.frequency <= highestFrequency, "a frequency");
}

template <class Read>
void Try(Read read)
{
    try {
        read();
    } catch (const RaisedError& raised) {
        Require(raised.number == unusableRecording, "the error");
        Require(raised.description.find(path) != std::wstring::npos, "names the file");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    Try([&] {
        const uint64_t length = size * size;
        for (const Recording& recording :
             ReadSigmf(path, bytes, [&](const std::wstring&) { return std::optional(length); }, {}).recordings) {
            RequireWithin(recording, length);
        }
    });
    Try([&] { ReadFolderCalibration(path, bytes); });
    Try([&] {
        MemoryBytes file(bytes);
        const Recording recording = ReadWav(path, file, {});
        if (recording.samples > 0) {
            RequireWithin(recording, size);
        }
    });
    return 0;
}
