#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "receivers/recordings/source/Recording.h"

namespace tvn2x::recordings {

/// The member of SigMF metadata, in a capture or for all of them, that tells the level in dBµV of a carrier of
/// amplitude 1. In a folder's recordings.json it holds for all recordings that do not have it.
constexpr const char* fullScaleKey = "tvn2x:full_scale_dbuv";

/// The length of a data file in bytes, by its name without a folder; nothing where there is none.
using DataLength = std::function<std::optional<uint64_t>(const std::wstring& file)>;

/// Recordings that a metadata file describes: one for each of its captures that has samples.
struct SigmfRecordings
{
    std::wstring data;  ///< name of the data file, without its folder
    std::vector<Recording> recordings;
};

/// Reads SigMF metadata. Without core:dataset the data file is named after the metadata, NAME.sigmf-data. A data file
/// that is shorter than its captures say has fewer samples. Raises an error that names file, member, limit and remedy.
SigmfRecordings ReadSigmf(const std::wstring& path, std::string_view text, const DataLength& lengthOf,
                          std::optional<double> fullScale);

/// The folder's calibration, from the text of its recordings.json.
double ReadFolderCalibration(const std::wstring& path, std::string_view text);

}  // namespace tvn2x::recordings
