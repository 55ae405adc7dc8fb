#include <windows.h>

#include <atomic>

#include "util/Encoding.h"
#include "util/modLocaleInfo.h"

namespace tvn2x {
namespace {

constexpr uint64_t cacheMilliseconds = 1000;

/// The user's settings, which may change while the host runs. The decimal mark, which every result cell needs, is asked
/// of the system once a second at most.
class UserLocale : public Locale
{
public:
    std::wstring GetLocaleString(uint32_t constant) const override
    {
        const LCID locale = GetUserDefaultLCID();
        const int length = GetLocaleInfoA(locale, constant, nullptr, 0);
        if (length <= 0) {
            return {};
        }
        std::string text(static_cast<size_t>(length), '\0');
        if (GetLocaleInfoA(locale, constant, text.data(), length) <= 0) {
            return {};
        }
        return FromCodePage(text.substr(0, text.find('\0')));
    }

    wchar_t DecimalMark() const override
    {
        // One word, so that no reader sees half of it: the time in milliseconds above, the character below.
        const uint64_t now = GetTickCount64();
        const uint64_t kept = mark_.load(std::memory_order_relaxed);
        if (kept != 0 && now - (kept >> 16) < cacheMilliseconds) {
            return static_cast<wchar_t>(kept & 0xFFFF);
        }
        const wchar_t mark = Locale::DecimalMark();
        mark_.store(now << 16 | mark, std::memory_order_relaxed);
        return mark;
    }

    std::wstring FormatGeneralDate(const DateTime& time) const override
    {
        const SYSTEMTIME parts{static_cast<WORD>(time.year),
                               static_cast<WORD>(time.month),
                               0,
                               static_cast<WORD>(time.day),
                               static_cast<WORD>(time.hour),
                               static_cast<WORD>(time.minute),
                               static_cast<WORD>(time.second),
                               0};
        wchar_t text[128];
        std::wstring result;
        if (GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &parts, nullptr, text, 128) > 0) {
            result = text;
        }
        const bool midnight = time.hour == 0 && time.minute == 0 && time.second == 0;
        if (!midnight && GetTimeFormatW(LOCALE_USER_DEFAULT, 0, &parts, nullptr, text, 128) > 0) {
            result.append(L" ").append(text);
        }
        return result;
    }

private:
    mutable std::atomic<uint64_t> mark_{0};
};

}  // namespace

const Locale& SystemLocale()
{
    static const UserLocale locale;
    return locale;
}

}  // namespace tvn2x
