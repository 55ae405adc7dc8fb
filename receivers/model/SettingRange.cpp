#include "receivers/model/SettingRange.h"

#include <cmath>

namespace tvn2x {

void RequireSetting(bool accepted, std::wstring_view setting, const std::wstring& reason, int32_t number,
                    std::wstring_view member)
{
    if (!accepted) {
        throw RaisedError(number, L"clsReceiver." + std::wstring(member.empty() ? setting : member),
                          L"Let " + std::wstring(setting) + L" failed: " + reason);
    }
}

void RequireSettingRange(double value, double min, double max, std::wstring_view setting, std::wstring_view unit)
{
    const auto text = [](double number) { return std::to_wstring(std::llround(number)); };
    RequireSetting(value >= min && value <= max, setting,
                   L"it must be from " + text(min) + L" to " + text(max) + std::wstring(unit));
}

}  // namespace tvn2x
