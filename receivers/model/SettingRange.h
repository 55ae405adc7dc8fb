#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "util/RaisedError.h"

namespace tvn2x {

/// Refuses a setting that is not accepted: "Let OrderOfQam failed: 65 is none of ...". `member` is the operation where
/// it is named otherwise than the setting.
void RequireSetting(bool accepted, std::wstring_view setting, const std::wstring& reason,
                    int32_t number = error::invalidPropertyValue, std::wstring_view member = {});

/// Refuses one out of its range, NaN too: "it must be from 12 to 35 hundredths".
void RequireSettingRange(double value, double min, double max, std::wstring_view setting, std::wstring_view unit);

}  // namespace tvn2x
