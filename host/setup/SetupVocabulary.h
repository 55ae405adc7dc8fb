#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace tvn2x {

/// How the plug-in reads a key of a setup file.
enum class SetupKind
{
    text,
    number,       ///< what is no number cannot be loaded
    looseNumber,  ///< what is no number becomes the default
    integer,      ///< its leading digits count; without any it is 0
    word          ///< yes or no as a word
};

/// A value that a setting may have, and what it is called.
struct SetupChoice
{
    int32_t value;
    const wchar_t* name;
};

/// A key of a setup file, and the values that make sense: those of `choices`, or numbers from `lowest` to `highest`.
struct SetupKey
{
    const char* section;
    const char* key;
    SetupKind kind;
    double lowest = 0;
    double highest = 0;
    std::span<const SetupChoice> choices = {};
    const wchar_t* otherwise = L"";  ///< what is read where the key is missing
};

/// All keys but those that end in a row number.
std::span<const SetupKey> SetupKeys();

/// Keys that end in a row number: one for each channel, or for each parameter.
struct SetupRows
{
    const char* section;
    const char* prefix;
    SetupKind kind;
    bool isOfChannel;
    bool isNeeded;  ///< a row without it is not what its user meant
    double lowest = 0;
    double highest = 0;
};
std::span<const SetupRows> SetupRowKeys();

/// Prefixes of row keys of early programs. Nothing reads them.
std::span<const char* const> EarlyRowKeys();

/// The names of a setting's values, for "Order Of QAM", "Input Impedance (ohm)" and their like; empty for others.
std::span<const SetupChoice> SetupChoices(std::string_view key);

/// The name of a setting's value; the number in digits where it has none.
std::wstring SetupChoiceName(std::string_view key, int32_t value);

}  // namespace tvn2x
