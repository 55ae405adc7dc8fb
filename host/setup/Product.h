#pragma once

#include <string_view>

namespace tvn2x {

/// The product that the host's setups belong to: stands in "Application"/"Name" of a setup file and has to be given to
/// Load again.
constexpr std::wstring_view productName = L"TVN Host";

/// Stands in "Application"/"Version". From 2.0 on a setup file names the receiver's model and mode.
constexpr std::wstring_view setupVersion = L"2.0";

}  // namespace tvn2x
