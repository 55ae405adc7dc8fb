#pragma once

#include <memory>
#include <vector>

#include "receivers/recordings/demodulator/SampleSource.h"
#include "receivers/recordings/source/Recording.h"
#include "receivers/recordings/source/SampleFile.h"

namespace tvn2x::recordings {

/// The samples of a recording, from its first to its last: a little of the file at a time, whatever its size. A file
/// that has become shorter meanwhile ends there.
class RecordingStream final : public SampleSource
{
public:
    RecordingStream(Recording recording, std::unique_ptr<StoredBytes> file);

    double Rate() const override { return recording_.rate; }
    /// Raises an error that names file and offset where a sample is no number, or larger than any converter's.
    size_t Read(std::span<std::complex<float>> into) override;

private:
    Recording recording_;
    std::unique_ptr<StoredBytes> file_;
    uint64_t position_ = 0;  ///< of the next sample
    std::vector<char> stored_;
};

}  // namespace tvn2x::recordings
