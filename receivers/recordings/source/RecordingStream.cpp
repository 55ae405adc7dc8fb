#include "receivers/recordings/source/RecordingStream.h"

#include <algorithm>

#include "receivers/recordings/source/RecordingError.h"

namespace tvn2x::recordings {

RecordingStream::RecordingStream(Recording recording, std::unique_ptr<StoredBytes> file)
    : recording_(std::move(recording)), file_(std::move(file))
{
}

size_t RecordingStream::Read(std::span<std::complex<float>> into)
{
    const size_t bytes = BytesOf(recording_.format);
    const uint64_t offset = recording_.firstByte + position_ * bytes;
    const auto wanted = static_cast<size_t>(std::min<uint64_t>(into.size(), recording_.samples - position_));
    stored_.resize(wanted * bytes);
    const std::span<std::complex<float>> samples = into.first(file_->ReadAt(offset, stored_) / bytes);
    if (const std::optional<size_t> unusable = Decode(recording_.format, stored_.data(), samples)) {
        RaiseRecording(
            recording_.file + L", byte " + std::to_wstring(offset + *unusable * bytes) +
            L": the sample there is no number that a converter gives. Record again, or cut the file before it");
    }
    position_ += samples.size();
    return samples.size();
}

}  // namespace tvn2x::recordings
