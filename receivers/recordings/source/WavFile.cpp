#include "receivers/recordings/source/WavFile.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <string_view>

#include "receivers/recordings/source/RecordingError.h"

namespace tvn2x::recordings {
namespace {

constexpr uint16_t wholeNumbers = 1;
constexpr uint16_t floatingPoint = 3;
constexpr uint16_t extensible = 0xFFFE;  // what it is stands in the first two bytes of an identity
constexpr uint32_t unknownLength = 0xFFFFFFFF;
constexpr size_t chunkHead = 8;

/// A chunk's name and length.
struct Chunk
{
    std::array<char, 4> name;
    uint64_t at;  ///< of its content
    uint64_t length;

    bool Is(std::string_view other) const { return std::string_view(name.data(), name.size()) == other; }
};

/// What the chunk "fmt " tells, and where.
struct FormatChunk
{
    uint64_t at;
    uint16_t code;
    uint16_t channels;
    uint32_t rate;
    uint16_t bits;
};

/// What the chunks of a file tell, as far as they were found.
class WavHead
{
public:
    WavHead(const std::wstring& path, StoredBytes& file) : path_(path), file_(file), size_(file.Size())
    {
        std::array<char, 12> riff{};
        file_.ReadAt(0, riff);
        const std::string_view text(riff.data(), riff.size());
        if (!(text.starts_with("RIFF") || text.starts_with("RF64") || text.starts_with("BW64")) ||
            text.substr(8) != "WAVE") {
            Refuse(0, L"this is no WAV file");
        }
        for (uint64_t at = riff.size(); at + chunkHead <= size_;) {
            const Chunk chunk = ChunkAt(at);
            Take(chunk);
            at = chunk.at + chunk.length + chunk.length % 2;
        }
    }

    [[noreturn]] void Refuse(uint64_t offset, const std::wstring& reason) const
    {
        RaiseRecording(path_ + L", byte " + std::to_wstring(offset) + L": " + reason);
    }

    SampleFormat Format() const
    {
        if (!format_) {
            Refuse(size_, L"the file ends before its format (a chunk \"fmt \") was told");
        }
        const auto [at, code, channels, rate, bits] = *format_;
        if (channels != 2) {
            Refuse(at + 2, L"it has " + std::to_wstring(channels) +
                               L" channels, and a recording has two: in phase and in quadrature");
        }
        if (code == floatingPoint && bits == 32) {
            return SampleFormat::float32;
        }
        if (code == wholeNumbers && (bits == 8 || bits == 16)) {
            return bits == 8 ? SampleFormat::unsigned8 : SampleFormat::integer16;
        }
        Refuse(at, L"samples of " + std::to_wstring(bits) + L" bits in format " + std::to_wstring(code) +
                       L" are not read. Record whole numbers of 8 or 16 bits, or floating point of 32");
    }

    /// Of those whose format is told.
    uint32_t Rate() const { return format_->rate; }
    uint64_t RateAt() const { return format_->at + 4; }
    const std::optional<Chunk>& Data() const { return data_; }
    std::optional<double> Frequency() const { return frequency_; }

private:
    template <class Number>
    Number At(uint64_t offset)
    {
        std::array<char, sizeof(Number)> bytes{};
        file_.ReadAt(offset, bytes);
        Number number;
        std::memcpy(&number, bytes.data(), sizeof number);
        return number;
    }

    /// A length beyond the end of the file reaches to the end.
    Chunk ChunkAt(uint64_t at)
    {
        Chunk chunk{{}, at + chunkHead, At<uint32_t>(at + 4)};
        file_.ReadAt(at, chunk.name);
        if (chunk.Is("data") && chunk.length == unknownLength) {
            chunk.length = longData_;
        }
        chunk.length = std::min(chunk.length, size_ - chunk.at);
        // Who records into a pipe cannot come back to tell the length.
        if (chunk.Is("data") && chunk.length == 0) {
            chunk.length = size_ - chunk.at;
        }
        return chunk;
    }

    void Take(const Chunk& chunk)
    {
        if (chunk.Is("ds64") && chunk.length >= 16) {
            longData_ = At<uint64_t>(chunk.at + 8);
        } else if (chunk.Is("fmt ") && chunk.length >= 16) {
            format_ = {chunk.at, At<uint16_t>(chunk.at), At<uint16_t>(chunk.at + 2), At<uint32_t>(chunk.at + 4),
                       At<uint16_t>(chunk.at + 14)};
            if (format_->code == extensible && chunk.length >= 26) {
                format_->code = At<uint16_t>(chunk.at + 24);
            }
        } else if (chunk.Is("auxi") && chunk.length >= 36) {
            // Behind the times of start and stop, of 16 bytes each.
            frequency_ = At<uint32_t>(chunk.at + 32);
        } else if (chunk.Is("data") && !data_) {
            data_ = chunk;
        }
    }

    const std::wstring& path_;
    StoredBytes& file_;
    uint64_t size_;
    std::optional<FormatChunk> format_;
    std::optional<Chunk> data_;
    std::optional<double> frequency_;
    uint64_t longData_ = unknownLength;
};

}  // namespace

std::optional<double> FrequencyInName(const std::wstring& name)
{
    constexpr std::wstring_view digits = L"0123456789.";
    for (const auto& [unit, hertz] : {std::pair(L"MHz", 1e6), std::pair(L"kHz", 1e3), std::pair(L"Hz", 1.0)}) {
        for (size_t at = name.find(unit); at != std::wstring::npos; at = name.find(unit, at + 1)) {
            const size_t end = name.find_last_not_of(L" _", at == 0 ? 0 : at - 1) + 1;
            size_t first = end;
            while (first > 0 && digits.find(name[first - 1]) != std::wstring_view::npos) {
                --first;
            }
            const std::string text(name.begin() + static_cast<std::ptrdiff_t>(first),
                                   name.begin() + static_cast<std::ptrdiff_t>(end));
            double number = 0;
            if (std::from_chars(text.data(), text.data() + text.size(), number).ec == std::errc() && number > 0) {
                return number * hertz;
            }
        }
    }
    return std::nullopt;
}

Recording ReadWav(const std::wstring& path, StoredBytes& file, std::optional<double> fullScale)
{
    const WavHead head(path, file);
    Recording recording{.file = path, .format = head.Format(), .fullScale = fullScale};
    recording.rate = head.Rate();
    if (!(recording.rate >= lowestRate && recording.rate <= highestRate)) {
        head.Refuse(head.RateAt(), L"the rate is " + std::to_wstring(std::llround(recording.rate)) +
                                       L" samples a second, and it must be from 100000 to 1000000000");
    }
    if (!head.Data()) {
        head.Refuse(file.Size(), L"the file ends before its samples (a chunk \"data\") began");
    }
    const std::optional<double> frequency =
        head.Frequency().value_or(0) > 0 ? head.Frequency() : FrequencyInName(recording.FileName());
    if (!frequency) {
        RaiseRecording(
            path +
            L" does not tell its centre frequency. Put it into the file's name, such as cable_306000000Hz.wav, "
            L"or write a SigMF metadata file for it");
    }
    recording.frequency = *frequency;
    recording.firstByte = head.Data()->at;
    recording.samples = head.Data()->length / BytesOf(recording.format);
    return recording;
}

}  // namespace tvn2x::recordings
