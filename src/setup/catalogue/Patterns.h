#pragma once

#include <string_view>

namespace tvn2x {

/// How the numbers of a channel are written (FormatNumber): in files with a digit before the point, in grids as short
/// as they can be.
namespace pattern {

constexpr std::wstring_view frequencyInFiles = L"###0.0000000";
constexpr std::wstring_view frequency = L"###.0000000";
constexpr std::wstring_view symbolRate = L"#0.000";

}  // namespace pattern

/// What the plug-in can tune to.
namespace channel_limit {

constexpr double lowestFrequency = 3;      ///< MHz
constexpr double highestFrequency = 1000;  ///< MHz
constexpr double lowestSymbolRate = 0.1;   ///< MSymb/s
constexpr double highestSymbolRate = 7;    ///< MSymb/s

}  // namespace channel_limit

}  // namespace tvn2x
