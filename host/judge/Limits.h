#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace tvn2x {

/// What one reading has to keep to. A value beyond the failure bound fails, one between the two bounds of a side is a
/// warning; the bound itself is still good.
struct Limit
{
    std::optional<double> failBelow;
    std::optional<double> warnBelow;
    std::optional<double> warnAbove;
    std::optional<double> failAbove;

    bool operator==(const Limit&) const = default;
};

/// Limits for the readings of a channel, and how far readings may drift between two runs. In the units of ReadingKinds
/// (levels in dBµV).
struct Limits
{
    std::wstring path;                                    ///< as it was named
    std::wstring name;                                    ///< what the file calls its limits, "" where it does not
    std::wstring date;                                    ///< of the limits, as the file has it
    std::wstring sha256;                                  ///< of the file
    std::map<std::pair<int32_t, int32_t>, Limit> limits;  ///< by parameter and order of QAM, 0 for every order
    std::map<int32_t, double> drift;                      ///< by parameter; of ratios in decades

    /// The limit for an order of QAM, or else the one for every order; null where there is none.
    const Limit* Find(int32_t parameter, int32_t orderOfQam) const;
    std::set<int32_t> Parameters() const;  ///< those that have a limit for any order
};

/// Reads a limits file. Raises unusableInput with file, line, what is allowed and a remedy.
Limits ReadLimits(std::string_view content, const std::wstring& path);

/// The limits for cable outlets that come with the program, and their file's text.
Limits OutletLimits();
std::string_view OutletLimitsText();

}  // namespace tvn2x
