#pragma once

#include <array>
#include <cstdio>
#include <string>
#include <utility>

#include "util/modLocaleInfo.h"

namespace tvn2x {

/// A locale with chosen separators. Its general date is "2024-03-15 10:00:00", and "2024-03-15" at midnight.
class FixedLocale : public Locale
{
public:
    explicit FixedLocale(std::wstring decimal = L".", std::wstring list = L",")
        : decimal_(std::move(decimal)), list_(std::move(list))
    {
    }

    std::wstring GetLocaleString(uint32_t constant) const override
    {
        ++queries;
        switch (constant) {
            case locale_constant::decimalSeparator:
                return decimal_;
            case locale_constant::listSeparator:
                return list_;
            default:
                return {};
        }
    }

    std::wstring FormatGeneralDate(const DateTime& time) const override
    {
        std::array<char, 96> text{};
        int length = std::snprintf(text.data(), text.size(), "%04d-%02d-%02d", time.year, time.month, time.day);
        if (time.hour != 0 || time.minute != 0 || time.second != 0) {
            length += std::snprintf(text.data() + length, text.size() - length, " %02d:%02d:%02d", time.hour,
                                    time.minute, time.second);
        }
        return std::wstring(text.data(), text.data() + length);
    }

    mutable int queries = 0;  ///< how often a locale string was asked for

private:
    std::wstring decimal_;
    std::wstring list_;
};

/// A locale of the "6,9" and "a;b" kind.
inline FixedLocale CommaLocale()
{
    return FixedLocale(L",", L";");
}

}  // namespace tvn2x
