#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace tvn2x {

/// Compares labels as a person orders them: numbers in them by their value, so that K2 comes before K10, and letters
/// without regard to case. Labels that differ in leading zeros or in case alone are in the order of their characters;
/// only equal ones give 0. Negative where the left one comes first.
int CompareNaturally(std::wstring_view left, std::wstring_view right);

/// The place of each text in that order, counted from 0. Equal texts have the same.
std::vector<int32_t> NaturalRanks(const std::vector<std::wstring_view>& texts);

}  // namespace tvn2x
