#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tvn2x {

/// An entry of the list of options that a receiver reports.
struct ReceiverOption
{
    std::wstring code;   ///< as it is ordered: "KTR-H4"
    std::wstring words;  ///< what it is for; "" where this program does not know it
};

/// The entries of a list that is separated by commas, in its order. Empty entries are left out.
std::vector<ReceiverOption> ReadOptions(std::wstring_view installed);

/// The known options that the list does not hold. What shares one place in the receiver counts as one option.
std::vector<ReceiverOption> MissingOptions(std::wstring_view installed);

/// What an option is for; "" where this program does not know it.
std::wstring OptionWords(std::wstring_view code);

/// "4 (DVB-C demodulator)", or the number alone.
std::wstring ModeText(int32_t mode);

}  // namespace tvn2x
