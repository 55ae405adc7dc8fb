#include "receivers/recordings/source/RecordingFolder.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <set>

#include "receivers/recordings/source/RecordingError.h"
#include "receivers/recordings/source/SampleFile.h"
#include "receivers/recordings/source/SigmfFile.h"
#include "receivers/recordings/source/WavFile.h"
#include "text/Folding.h"

namespace tvn2x::recordings {
namespace {

constexpr const wchar_t* calibrationFile = L"recordings.json";

/// The names of the files in a folder, in one order on every system.
std::vector<std::wstring> NamesIn(const std::wstring& folder)
{
    std::vector<std::wstring> names;
    std::error_code fault;
    for (std::filesystem::directory_iterator entry(folder, fault), end; !fault && entry != end;
         entry.increment(fault)) {
        std::error_code isNone;
        if (entry->is_regular_file(isNone)) {
            names.push_back(entry->path().filename().wstring());
        }
    }
    if (fault) {
        RaiseRecording(L"The folder " + folder +
                       L" cannot be read. Choose the folder that holds the recordings: --signals FOLDER");
    }
    std::ranges::sort(names);
    return names;
}

/// All of a file that people write, or programs for people.
std::string ReadText(const std::wstring& path)
{
    constexpr uint64_t longest = 1 << 24;
    const std::unique_ptr<StoredBytes> file = OpenStored(path);
    if (file->Size() > longest) {
        RaiseRecording(path + L" is longer than 16 MB, which no description of a recording is");
    }
    std::string text(static_cast<size_t>(file->Size()), '\0');
    text.resize(file->ReadAt(0, text));
    return text;
}

bool EndsWith(const std::wstring& name, std::wstring_view ending)
{
    return name.size() > ending.size() &&
           EqualIgnoringCase(std::wstring_view(name).substr(name.size() - ending.size()), ending);
}

std::wstring Megahertz(double hertz)
{
    std::wstring text = std::to_wstring(std::round(hertz / 1e3) / 1e3);
    text.erase(text.find_last_not_of(L'0') + 1);
    return text.ends_with(L'.') ? text.substr(0, text.size() - 1) : text;
}

}  // namespace

RecordingFolder::RecordingFolder(const std::wstring& path) : path_(path)
{
    const std::wstring folder = path.ends_with(L'/') || path.ends_with(L'\\') ? path : path + L"/";
    Add(folder, NamesIn(path));
    if (recordings_.empty()) {
        RaiseRecording(L"The folder " + path +
                       L" holds no recording: no .sigmf-meta with its .sigmf-data and no .wav of two channels that has "
                       L"samples");
    }
}

void RecordingFolder::Add(const std::wstring& folder, const std::vector<std::wstring>& names)
{
    std::optional<double> fullScale;
    if (std::ranges::find(names, calibrationFile) != names.end()) {
        fullScale = ReadFolderCalibration(folder + calibrationFile, ReadText(folder + calibrationFile));
    }
    std::set<std::wstring> described;
    for (const std::wstring& name : names) {
        if (EndsWith(name, L".sigmf-meta")) {
            const auto lengthOf = [&](const std::wstring& data) -> std::optional<uint64_t> {
                const bool isThere = std::ranges::find(names, data) != names.end();
                return isThere ? std::optional(OpenStored(folder + data)->Size()) : std::nullopt;
            };
            const SigmfRecordings read = ReadSigmf(folder + name, ReadText(folder + name), lengthOf, fullScale);
            described.insert(read.data);
            recordings_.insert(recordings_.end(), read.recordings.begin(), read.recordings.end());
        }
    }
    for (const std::wstring& name : names) {
        if (EndsWith(name, L".wav") && !described.contains(name)) {
            const Recording recording = ReadWav(folder + name, *OpenStored(folder + name), fullScale);
            if (recording.samples > 0) {
                recordings_.push_back(recording);
            }
        }
    }
}

const Recording* RecordingFolder::Find(double centre, double width) const
{
    const Recording* best = nullptr;
    for (const Recording& recording : recordings_) {
        const double margin = recording.Margin(centre, width);
        if (margin >= 0 && (best == nullptr || margin > best->Margin(centre, width))) {
            best = &recording;
        }
    }
    return best;
}

std::wstring RecordingFolder::Bands() const
{
    std::wstring text;
    for (const Recording& recording : recordings_) {
        text += (text.empty() ? L"" : L"; ") + recording.FileName() + L" " +
                Megahertz(recording.frequency - recording.rate / 2) + L" to " +
                Megahertz(recording.frequency + recording.rate / 2) + L" MHz";
    }
    return text;
}

}  // namespace tvn2x::recordings
