#pragma once

#include <string>

#include "setup/SetupDocument.h"
#include "setup/SetupFile.h"

namespace tvn2x::bench {

/// A setup of so many channels, all of its values different from one channel to the next.
inline SetupDocument SampleSetup(int32_t channels, double shift = 0)
{
    SetupDocument document;
    document.ListSize(channels);
    for (int32_t channel = 1; channel <= channels; ++channel) {
        document.Frequency(channel, 47 + channel % 9000 * 0.1 + shift);
        document.SymbolRate(channel, 6.9 - channel % 50 * 0.001);
        document.UserField(channel, L"Channel " + std::to_wstring(channel));
    }
    return document;
}

inline SetupEnvironment SystemEnvironment()
{
    return {SystemFiles(), SystemMessageBoxes(), SystemLocale()};
}

/// Reads the setup file whole; false where it did not load.
inline bool Load(const std::wstring& path, SetupDocument& document)
{
    std::wstring model;
    int32_t mode = 0;
    return LoadSetup(document, SystemEnvironment(), L"TVN2x", path, model, mode);
}

/// "01", "02", ... "100": the number behind a key.
inline std::string KeyNumber(int32_t index)
{
    return (index < 10 ? "0" : "") + std::to_string(index);
}

}  // namespace tvn2x::bench
