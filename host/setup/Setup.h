#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace tvn2x {

/// What a setup makes of the receiver, and how long a measurement waits and counts. A run keeps this of its setup.
struct SetupSettings
{
    int32_t orderOfQam = 0;
    int32_t rollOffFactor = 0;    ///< hundredths
    int32_t sawBandwidth = 0;     ///< MHz, 0 is off
    int32_t inputRoute = 0;       ///< 2, 4, 50, 75, 128
    int32_t referenceSource = 0;  ///< 0 internal, 1 external
    int32_t berSamples = 0;       ///< blocks of 10^7 bits
    int32_t maxSettlingTime = 0;  ///< seconds
    std::wstring levelUnit;

    bool operator==(const SetupSettings&) const = default;
};

/// What a setup says, as the plug-in has loaded it.
struct Setup
{
    /// A channel of the frequency list.
    struct Channel
    {
        std::wstring userField;
        double frequency = 0;   ///< MHz
        double symbolRate = 0;  ///< MSymb/s
    };
    /// A parameter: whether and where it is shown and saved.
    struct Parameter
    {
        std::wstring caption;
        bool isDisplayed = false;
        bool isSaved = false;
        int32_t position = 0;
    };

    const Channel& ChannelAt(int32_t number) const { return channels.at(static_cast<size_t>(number - 1)); }
    std::wstring FileName() const { return path.substr(path.find_last_of(L"\\/") + 1); }
    const Parameter& ParameterAt(int32_t number) const { return parameters.at(static_cast<size_t>(number - 1)); }

    std::wstring path, product, version;
    int32_t mode = 0;
    bool isBackup = false;
    bool isDirty = false;   ///< of a backup copy: the real document had unsaved changes
    std::wstring realPath;  ///< of a backup copy: where the real document is
    SetupSettings settings;
    double defaultSymbolRate = 0;
    bool isCoupled = false;
    std::array<int32_t, 2> xAxis{};
    std::vector<Channel> channels;      ///< by number, from 1
    std::vector<Parameter> parameters;  ///< by number, from 1
    std::wstring notes;                 ///< plain or rich text
    bool showsNotesBefore = false;
    bool showsNotesAfter = false;
};

}  // namespace tvn2x
