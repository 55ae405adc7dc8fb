#pragma once

#include <cstdint>
#include <string_view>

namespace tvn2x {

/// Names are the same where they differ in the case of A..Z at most.
bool EqualIgnoringCase(std::string_view left, std::string_view right);

bool EqualIgnoringCase(std::wstring_view left, std::wstring_view right);
bool EqualIgnoringCase(std::wstring_view text, std::string_view plainName);  ///< a name in ASCII

/// A hash that agrees with EqualIgnoringCase and that nobody outside the process can foresee.
uint32_t HashIgnoringCase(std::string_view name);

/// An order that agrees with EqualIgnoringCase.
struct IgnoreCase
{
    bool operator()(std::string_view left, std::string_view right) const;
};

}  // namespace tvn2x
