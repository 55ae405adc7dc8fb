#include "receivers/recordings/source/SigmfFile.h"

#include <algorithm>

#include "nlohmann/json.hpp"
#include "receivers/recordings/source/RecordingError.h"
#include "util/Encoding.h"

namespace tvn2x::recordings {
namespace {

using Json = nlohmann::json;

constexpr double largestCount = 9007199254740992.0;  // beyond it a floating-point number skips whole ones

/// An object of the metadata, and where it stands, for errors.
class Section
{
public:
    Section(const std::wstring& path, const Json& parent, const char* name, std::optional<size_t> index = {})
        : path_(path), place_(FromUtf8(name))
    {
        if (index) {
            place_ += L"[" + std::to_wstring(*index) + L"]";
            content_ = &parent[*index];
        } else {
            const auto found = parent.find(name);
            content_ = found == parent.end() ? nullptr : &*found;
        }
        if (content_ == nullptr || !content_->is_object()) {
            RaiseRecording(path_ + L": " + place_ + L" is missing, or is no object");
        }
    }

    [[noreturn]] void Refuse(const char* key, const std::wstring& reason) const
    {
        RaiseRecording(path_ + L": " + place_ + L", " + FromUtf8(key) + L" " + reason);
    }

    bool Has(const char* key) const { return content_->contains(key); }

    std::string Text(const char* key) const
    {
        const auto found = content_->find(key);
        if (found == content_->end() || !found->is_string()) {
            Refuse(key, L"is missing, or is no text");
        }
        return found->get<std::string>();
    }

    double Number(const char* key, double lowest, double highest) const
    {
        const auto found = content_->find(key);
        if (found == content_->end() || !found->is_number()) {
            Refuse(key, L"is missing, or is no number");
        }
        const auto number = found->get<double>();
        if (!(number >= lowest && number <= highest)) {
            Refuse(key, L"is " + FromUtf8(found->dump()) + L", and it must be from " + Whole(lowest) + L" to " +
                            Whole(highest));
        }
        return number;
    }

    uint64_t Count(const char* key) const { return Has(key) ? static_cast<uint64_t>(Number(key, 0, largestCount)) : 0; }

    std::optional<double> FullScale() const
    {
        return Has(fullScaleKey) ? std::optional(Number(fullScaleKey, lowestFullScale, highestFullScale))
                                 : std::nullopt;
    }

private:
    static std::wstring Whole(double number) { return std::to_wstring(static_cast<int64_t>(number)); }

    const std::wstring& path_;
    std::wstring place_;
    const Json* content_ = nullptr;
};

Json Parse(const std::wstring& path, std::string_view text)
{
    try {
        return Json::parse(text);
    } catch (const Json::parse_error& error) {
        RaiseRecording(path + L", byte " + std::to_wstring(error.byte) +
                       L": this is no JSON. Have the recording program write it again, or put it right by hand");
    } catch (const Json::exception&) {
        RaiseRecording(path + L": this is no JSON of use: a number in it is too large");
    }
}

std::wstring DataName(const Section& global, const std::wstring& path)
{
    std::wstring name = path.substr(path.find_last_of(L"\\/") + 1);
    if (!global.Has("core:dataset")) {
        return name.substr(0, name.find_last_of(L'.')) + L".sigmf-data";
    }
    name = FromUtf8(global.Text("core:dataset"));
    if (name.empty() || name.find_first_of(L"\\/:") != std::wstring::npos) {
        global.Refuse("core:dataset", L"must be the name of a file in the same folder");
    }
    return name;
}

SampleFormat FormatOf(const Section& global)
{
    const std::string name = global.Text("core:datatype");
    const std::optional<SampleFormat> format = FormatNamed(name);
    if (!format) {
        global.Refuse("core:datatype", L"is \"" + FromUtf8(name) + L"\", and what is read is " + FormatNames());
    }
    if (global.Has("core:num_channels") && global.Number("core:num_channels", 1, largestCount) > 1) {
        global.Refuse("core:num_channels", L"is more than 1. Store each channel in a file of its own");
    }
    return *format;
}

/// A capture that is known by its place alone.
struct CaptureStart
{
    uint64_t firstSample;
    uint64_t headerBytes;  ///< that stand before its samples
};

/// The stretch of samples from one capture to the next, as far as the data file goes.
Recording Stretch(const std::vector<CaptureStart>& starts, size_t index, SampleFormat format, uint64_t length)
{
    const uint64_t bytes = BytesOf(format);
    Recording recording{.format = format};
    uint64_t headers = 0;
    for (size_t i = 0; i <= index; ++i) {
        headers += std::min(starts[i].headerBytes, length);
    }
    recording.firstByte = std::min(starts[index].firstSample, length / bytes) * bytes + headers;
    const uint64_t left = recording.firstByte < length ? (length - recording.firstByte) / bytes : 0;
    recording.samples =
        index + 1 < starts.size() ? std::min(left, starts[index + 1].firstSample - starts[index].firstSample) : left;
    return recording;
}

std::vector<CaptureStart> StartsOf(const std::wstring& path, const Json& captures)
{
    std::vector<CaptureStart> starts;
    for (size_t i = 0; i < captures.size(); ++i) {
        const Section capture(path, captures, "captures", i);
        starts.push_back({capture.Count("core:sample_start"), capture.Count("core:header_bytes")});
        if (i > 0 && starts[i].firstSample < starts[i - 1].firstSample) {
            capture.Refuse("core:sample_start", L"is before that of the capture in front of it");
        }
    }
    return starts;
}

}  // namespace

SigmfRecordings ReadSigmf(const std::wstring& path, std::string_view text, const DataLength& lengthOf,
                          std::optional<double> fullScale)
{
    const Json metadata = Parse(path, text);
    const Section global(path, metadata, "global");
    SigmfRecordings read{.data = DataName(global, path), .recordings = {}};
    const SampleFormat format = FormatOf(global);
    const double rate = global.Number("core:sample_rate", lowestRate, highestRate);
    const auto captures = metadata.find("captures");
    if (captures == metadata.end() || !captures->is_array() || captures->empty()) {
        RaiseRecording(path + L": there are no captures, which tell the centre frequency");
    }
    const std::optional<uint64_t> length = lengthOf(read.data);
    if (!length) {
        RaiseRecording(path + L" describes " + read.data + L", which is not in its folder");
    }
    const std::vector<CaptureStart> starts = StartsOf(path, *captures);
    const uint64_t trailing = global.Count("core:trailing_bytes");
    for (size_t i = 0; i < starts.size(); ++i) {
        const Section capture(path, *captures, "captures", i);
        Recording recording = Stretch(starts, i, format, *length - std::min(trailing, *length));
        recording.rate = rate;
        recording.frequency = capture.Number("core:frequency", 0, highestFrequency);
        recording.fullScale = capture.FullScale();
        for (const std::optional<double>& other : {global.FullScale(), fullScale}) {
            recording.fullScale = recording.fullScale ? recording.fullScale : other;
        }
        recording.file = path.substr(0, path.find_last_of(L"\\/") + 1) + read.data;
        if (recording.samples > 0) {
            read.recordings.push_back(std::move(recording));
        }
    }
    return read;
}

double ReadFolderCalibration(const std::wstring& path, std::string_view text)
{
    Json whole;
    whole["calibration"] = Parse(path, text);
    const Section calibration(path, whole, "calibration");
    const std::optional<double> fullScale = calibration.FullScale();
    if (!fullScale || whole["calibration"].size() != 1) {
        calibration.Refuse(fullScaleKey, L"must be there, and nothing else");
    }
    return *fullScale;
}

}  // namespace tvn2x::recordings
