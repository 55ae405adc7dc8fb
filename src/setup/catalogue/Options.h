#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace tvn2x {

/// What a setup asks of a receiver's equipment.
enum class Capability
{
    mode,       ///< operating mode, by its number
    reference,  ///< 10 MHz reference: 0 internal, 1 external
    route,      ///< input route: 2, 4, 50, 75, 128
    filter      ///< SAW filter, MHz
};

/// An option that a receiver can be fitted with.
struct OptionFact
{
    std::wstring_view code;                  ///< as it is ordered and listed: "KTR-H4"
    std::wstring_view words;                 ///< what it is for
    std::wstring_view sharesPlaceWith = {};  ///< the entry that stands for both
};
std::span<const OptionFact> Options();

/// The option that a value of a setting needs.
struct OptionNeed
{
    Capability capability;
    int32_t value;
    std::wstring_view part;      ///< the equipment itself, by its code
    std::wstring_view option;    ///< as it is ordered: two parts that share a place are one option
    std::wstring_view listedAs;  ///< looked for in the list with a comma before its first and behind its last entry
};

/// Null where the value needs no option, or where no receiver has it.
const OptionNeed* FindNeed(Capability capability, int32_t value);
/// Whether the receiver's list of installed options holds what is needed. Letters count in their case.
bool IsMet(const OptionNeed& need, std::wstring_view installedOptions);
/// Whether the list holds the input for an external 10 MHz reference.
bool HasReferenceInput(std::wstring_view installedOptions);

/// Where a signal enters the receiver.
namespace input_route {

constexpr int32_t receiver = 2;
constexpr int32_t demodulator = 4;  ///< straight to the demodulator, without input attenuator
constexpr int32_t receiver50 = 50;
constexpr int32_t receiver75 = 75;
constexpr int32_t intermediate = 128;  ///< the IF input, which every receiver has

}  // namespace input_route

/// The operating mode that measures DVB-C.
constexpr int32_t dvbCDemodulator = 4;

}  // namespace tvn2x
