#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace tvn2x {

/// What a setup says, as the plug-in has loaded it.
struct SetupContent
{
    struct Channel
    {
        std::wstring userField;
        double frequency = 0;   ///< MHz
        double symbolRate = 0;  ///< MSymb/s
    };
    struct Parameter
    {
        std::wstring caption;
        bool isDisplayed = false;
        bool isSaved = false;
        int32_t position = 0;
    };

    std::wstring path, product, version;
    int32_t mode = 0;
    bool isBackup = false;
    bool isDirty = false;   ///< of a backup copy: the real document had unsaved changes
    std::wstring realPath;  ///< of a backup copy: where the real document is
    std::wstring levelUnit;
    int32_t orderOfQam = 0, rollOffFactor = 0, zin = 0, sawBw = 0, referenceSource = 0, berSamples = 0;
    int32_t maxSettlingTime = 0;
    double defaultSymbolRate = 0;
    bool isCoupled = false;
    std::array<int32_t, 2> xAxis{};
    std::vector<Channel> channels;
    std::vector<Parameter> parameters;  ///< by number, from 1
    std::wstring notes;                 ///< plain or rich text
    bool showsNotesBefore = false;
    bool showsNotesAfter = false;
};

/// The setup as a person reads it: settings in words, channels, parameters in the order of the grid, notes as plain
/// text. Each line ends with LF; tables wider than maxWidth (0: no limit) are folded.
std::wstring DescribeSetup(const SetupContent& setup, int32_t maxWidth = 0);

}  // namespace tvn2x
