#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "util/modListUtils.h"

namespace tvn2x {

/// How the plug-in reads a key of a setup file.
enum class SettingKind
{
    text,
    number,       ///< what is no number cannot be loaded
    looseNumber,  ///< what is no number becomes the default
    integer,      ///< its leading digits count; without any it is 0
    word          ///< yes or no as a word
};

/// A key of a setup file, and the values that make sense: numbers from `lowest` to `highest`, or where these are equal,
/// those of `choices`. The choices are also what the dialog offers, in its order and words.
struct Setting
{
    const char* section;
    const char* key;
    SettingKind kind;
    double lowest = 0;
    double highest = 0;
    std::span<const ListItem> choices = {};
    const wchar_t* otherwise = L"";  ///< what is read where the key is missing
};

/// The settings that have choices or are asked for one by one.
namespace setting {

extern const Setting mode;
extern const Setting levelUnit;
extern const Setting referenceSource;
extern const Setting orderOfQam;
extern const Setting rollOffFactor;
extern const Setting berSamples;
extern const Setting sawBandwidth;
extern const Setting inputRoute;
extern const Setting defaultSymbolRate;
extern const Setting maxSettlingTime;
extern const Setting displayGrid;
extern const Setting resultFile;

}  // namespace setting

/// All keys but those that end in a row number, in the order of the file.
std::span<const Setting* const> Settings();

/// The words for a setting's value; the number in digits where it has none.
std::wstring ChoiceWords(const Setting& setting, int32_t value);

/// Keys that end in a row number: one for each channel, or for each parameter.
struct SettingRows
{
    const char* section;
    const char* prefix;
    SettingKind kind;
    bool isOfChannel;
    bool isNeeded;  ///< a row without it is not what its user meant
    double lowest = 0;
    double highest = 0;
};
std::span<const SettingRows> RowSettings();

/// Prefixes of row keys of early programs. Nothing reads them.
std::span<const char* const> EarlyRowKeys();

}  // namespace tvn2x
