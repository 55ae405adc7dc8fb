#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace tvn2x {

/// The place of each label, counted from 0, in the order in which a person puts them: numbers in them by their value,
/// so that K2 comes before K10, and letters without regard to case. Labels that differ in leading zeros or in case
/// alone are in the order of their characters; equal ones have the same place.
std::vector<int32_t> NaturalRanks(const std::vector<std::wstring_view>& labels);

}  // namespace tvn2x
