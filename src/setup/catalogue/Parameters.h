#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "setup/catalogue/MP_TYPES.h"

namespace tvn2x {

/// What a parameter is a value of.
enum class ParameterKind
{
    setting,  ///< static, of the whole measurement
    column,   ///< of each channel, but no reading: label, frequency, status, time stamp
    lock,     ///< "OK", "UNSYNC" or "INTERMITTENT"
    reading,
    ratio  ///< a reading that spans decades, so that differences are counted in them
};

/// One of the values that the product handles, as files, dialogs and sentences know it.
struct Parameter
{
    MP_TYPES number;
    ParameterKind kind;
    std::wstring_view caption;       ///< that it has in a new document; the RF level's is without its unit
    const char* name = "";           ///< on the command line and in files ("rflev"); "" for a static setting
    const wchar_t* title = L"";      ///< of a lock or reading in a sentence ("RF level")
    const wchar_t* unit = L"";       ///< "" where it has none; of the level in limits, where a setup may use another
    std::wstring_view format = L"";  ///< pattern of a reading, "" for the general format; the RF level's is that of a
                                     ///< unit in decibels
};

/// By number, MP_FIRST..MP_LAST.
std::span<const Parameter> Parameters();
const Parameter* FindParameter(int32_t number);  ///< null where it is none

/// The caption that a parameter has in a new document, "" for none.
std::wstring_view DefaultCaption(int32_t parameter);
/// The pattern that a measured value is displayed with, "" for the general format and for none.
std::wstring_view DisplayFormat(int32_t parameter);

}  // namespace tvn2x
