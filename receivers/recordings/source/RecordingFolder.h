#pragma once

#include <string>
#include <vector>

#include "receivers/recordings/source/Recording.h"

namespace tvn2x::recordings {

/// The recordings of a folder, as the network that a receiver is connected to: SigMF pairs and WAV files. Folders in it
/// and other files do not count. A recordings.json gives the level at full scale of those that do not tell their own.
class RecordingFolder
{
public:
    /// No recordings at all.
    RecordingFolder() = default;
    /// Reads what the files say of themselves, no sample yet. Raises an error that names the first file that cannot be
    /// used, or that there is none.
    explicit RecordingFolder(const std::wstring& path);

    const std::wstring& Path() const { return path_; }
    const std::vector<Recording>& Recordings() const { return recordings_; }

    /// The recording that holds a band, of several the one in which it lies farthest from the edges; null where none
    /// does.
    const Recording* Find(double centre, double width) const;

    /// What the folder holds, for who asked for something else: "cable.sigmf-data 301 to 311 MHz; ...".
    std::wstring Bands() const;

private:
    void Add(const std::wstring& folder, const std::vector<std::wstring>& names);

    std::wstring path_;
    std::vector<Recording> recordings_;
};

}  // namespace tvn2x::recordings
