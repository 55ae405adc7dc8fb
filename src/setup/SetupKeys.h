#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "setup/catalogue/FileRules.h"

namespace tvn2x::setup_file {

namespace section {

constexpr const wchar_t* application = L"Application";
constexpr const wchar_t* hardware = L"Hardware";
constexpr const wchar_t* frequencyList = L"Frequency List";
constexpr const wchar_t* staticSettings = L"Static Settings";
constexpr const wchar_t* parameters = L"Parameters";
constexpr const wchar_t* display = L"Parameters to Display";
constexpr const wchar_t* save = L"Parameters to Save";
constexpr const wchar_t* displayOrder = L"Parameters Display Order";
constexpr const wchar_t* captions = L"Parameter Captions";
constexpr const wchar_t* notes = L"Notes";
constexpr const wchar_t* xAxis = L"X-Axis";
constexpr const wchar_t* backup = L"Backup";

}  // namespace section

/// A key that ends in a row number: the text before it, and the number with at least two digits.
class RowKey
{
public:
    explicit RowKey(std::string_view prefix, bool padded = true);

    /// Valid until the next call.
    std::string_view operator()(int32_t row);

private:
    std::array<char, 48> text_{};
    size_t prefixLength_;
    bool padded_;
};

constexpr std::string_view frequencyKey = "Frequency   ";
constexpr std::string_view userFieldKey = "User Field  ";
constexpr std::string_view symbolRateKey = "Symbol Rate ";
constexpr std::string_view parameterKey = "Parameter ";
constexpr std::string_view positionKey = "Position ";

/// Version 1.4 had ten parameters fewer, numbered otherwise. `count` is the file's own count of them, normally 20 and
/// 0..32767.

/// The number of the key that holds a parameter's flags and caption.
int32_t OldKeyNumber(int32_t parameter, int32_t count);

/// Where a parameter's display position comes from: a key and its translation, or a fixed position.
struct OldPosition
{
    int32_t key = 0;  ///< 0 where the position is fixed
    int32_t fixed = 0;
};
OldPosition OldPositionOf(int32_t parameter, int32_t count);
/// The position that an old position has become.
int32_t TranslatedPosition(int32_t oldPosition);

}  // namespace tvn2x::setup_file
