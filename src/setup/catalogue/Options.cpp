#include "setup/catalogue/Options.h"

#include <algorithm>
#include <string>

namespace tvn2x {
namespace {

using enum Capability;

constexpr std::wstring_view bothFilters = L"KTR-H8 (or KTR-H9)";

constexpr OptionFact options[] = {
    {L"KTR-H2", L"DVB-C demodulator (operating mode 4)"},
    {L"KTR-H4", L"SAW filter of 8 MHz"},
    {L"KTR-H5", L"receiver input of 50 or 75 ohm"},
    {L"KTR-H6", L"SAW filter of 2 MHz"},
    {bothFilters, L"SAW filters of 6 and 7 MHz, which share one place"},
    {L"KTR-H8", L"SAW filter of 6 MHz", bothFilters},
    {L"KTR-H9", L"SAW filter of 7 MHz", bothFilters},
    {L"KTR-H7", L"operating mode 13"},
    {L"KTR-S31", L"operating modes 6 and 8"},
    {L"KTR-S32", L"operating mode 14"},
    {L"KTR-S33", L"operating mode 7"},
    {L"EXTREF", L"input for an external 10 MHz reference"},
    {L"EAMOD", L"receiver input"},
    {L"RB", L"demodulator input"},
};

// The receivers list their filters of 6 and 7 MHz as one entry.
constexpr OptionNeed needs[] = {
    {mode, 4, L"KTR-H2", L"KTR-H2", L",KTR-H2,"},
    {mode, 6, L"KTR-S31", L"KTR-S31", L",KTR-S31,"},
    {mode, 7, L"KTR-S33", L"KTR-S33", L",KTR-S33,"},
    {mode, 8, L"KTR-S31", L"KTR-S31", L",KTR-S31,"},
    {mode, 13, L"KTR-H7", L"KTR-H7", L",KTR-H7,"},
    {mode, 14, L"KTR-S32", L"KTR-S32", L",KTR-S32,"},
    {filter, 2, L"KTR-H6", L"KTR-H6", L",KTR-H6,"},
    {filter, 6, L"KTR-H8", bothFilters, L",KTR-H8 "},
    {filter, 7, L"KTR-H9", bothFilters, L"(or KTR-H9),"},
    {filter, 8, L"KTR-H4", L"KTR-H4", L",KTR-H4,"},
    {reference, 1, L"EXTREF", L"EXTREF", L"EXTREF"},
    {route, input_route::receiver, L"EAMOD", L"EAMOD", L"EAMOD"},
    {route, input_route::demodulator, L"RB", L"RB", L"RB"},
    {route, input_route::receiver50, L"KTR-H5", L"KTR-H5", L"KTR-H5"},
    {route, input_route::receiver75, L"KTR-H5", L"KTR-H5", L"KTR-H5"},
};

}  // namespace

std::span<const OptionFact> Options()
{
    return options;
}

const OptionNeed* FindNeed(Capability capability, int32_t value)
{
    const auto* found = std::ranges::find_if(
        needs, [&](const OptionNeed& need) { return need.capability == capability && need.value == value; });
    return found == std::end(needs) ? nullptr : found;
}

bool IsMet(const OptionNeed& need, std::wstring_view installedOptions)
{
    return (L"," + std::wstring(installedOptions) + L",").find(need.listedAs) != std::wstring::npos;
}

bool HasReferenceInput(std::wstring_view installedOptions)
{
    return IsMet(*FindNeed(reference, 1), installedOptions);
}

}  // namespace tvn2x
