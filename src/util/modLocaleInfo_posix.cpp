#include <langinfo.h>
#include <locale.h>
#include <wchar.h>

#include <array>
#include <cstring>
#include <ctime>

#include "util/Encoding.h"
#include "util/modLocaleInfo.h"

namespace tvn2x {
namespace {

/// The locale that the environment names, read once: a process cannot be given another environment.
class EnvironmentLocale : public Locale
{
public:
    EnvironmentLocale() : locale_(newlocale(LC_ALL_MASK, "", nullptr))
    {
        if (locale_ == nullptr) {
            locale_ = newlocale(LC_ALL_MASK, "C", nullptr);
        }
        const char* const mark = nl_langinfo_l(RADIXCHAR, locale_);
        const bool utf8 = std::strcmp(nl_langinfo_l(CODESET, locale_), "UTF-8") == 0;
        const std::wstring text = utf8 ? FromUtf8(mark) : FromCodePage(mark);
        if (!text.empty()) {
            mark_ = text.front();
        }
    }
    ~EnvironmentLocale() override { freelocale(locale_); }
    EnvironmentLocale(const EnvironmentLocale&) = delete;
    EnvironmentLocale& operator=(const EnvironmentLocale&) = delete;

    std::wstring GetLocaleString(uint32_t constant) const override
    {
        switch (constant) {
            case locale_constant::decimalSeparator:
                return std::wstring(1, mark_);
            case locale_constant::listSeparator:
                return mark_ == L',' ? L";" : L",";
            default:
                return {};
        }
    }

    wchar_t DecimalMark() const override { return mark_; }

    std::wstring FormatGeneralDate(const DateTime& time) const override
    {
        std::tm parts{};
        parts.tm_year = time.year - 1900;
        parts.tm_mon = time.month - 1;
        parts.tm_mday = time.day;
        parts.tm_hour = time.hour;
        parts.tm_min = time.minute;
        parts.tm_sec = time.second;

        // The unlocalised short date has two digits of the year: an ISO date says the same without doubt.
        const bool plain = std::strcmp(nl_langinfo_l(D_FMT, locale_), "%m/%d/%y") == 0;
        const bool midnight = time.hour == 0 && time.minute == 0 && time.second == 0;
        const wchar_t* const format =
            plain ? (midnight ? L"%Y-%m-%d" : L"%Y-%m-%d %H:%M:%S") : (midnight ? L"%x" : L"%x %X");
        std::array<wchar_t, 128> text;
        return std::wstring(text.data(), wcsftime_l(text.data(), text.size(), format, &parts, locale_));
    }

private:
    locale_t locale_;
    wchar_t mark_ = L'.';
};

}  // namespace

const Locale& SystemLocale()
{
    static const EnvironmentLocale locale;
    return locale;
}

}  // namespace tvn2x
