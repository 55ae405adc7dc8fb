#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "setup/catalogue/Options.h"

namespace tvn2x {

/// What the plug-in has answered.
struct ReceiverAnswer
{
    Capability need;
    int32_t asked;                       ///< the setup's value: mode number, reference source, input route, MHz
    bool isMet = false;                  ///< the receiver can do it
    bool isActive = true;                ///< of the mode: the receiver is in it
    std::vector<int32_t> possible = {};  ///< of an unmet need: values that this receiver can do
};

/// Whether the receiver can do all of it.
bool CanDo(const std::vector<ReceiverAnswer>& answers);

/// The answer in one line: what the setup asks for and, where the receiver has not got it, the name of the missing
/// option and what to do about it. Without "yes" or "no".
std::wstring AnswerText(const ReceiverAnswer& answer, std::wstring_view installedOptions);

/// One line for each answer, ended with LF: "  yes  SAW filter: 8 MHz".
std::wstring AnswerList(const std::vector<ReceiverAnswer>& answers, std::wstring_view installedOptions);

}  // namespace tvn2x
