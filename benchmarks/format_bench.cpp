// Numbers as text: FormatNumber beside snprintf and the bare conversion underneath.

#include <charconv>
#include <cstdio>

#include "Race.h"
#include "util/modFormat.h"

namespace {

using namespace tvn2x;
using namespace tvn2x::bench;

const double values[] = {474, 474.25, 6.9, 6.952, 123.4567891, 0.5, 36.5, 1.2e-7, -12.75, 858};

void FormatRace(const char* title, const wchar_t* pattern, const char* format, int decimals)
{
    Race race(title, std::size(values));
    race.Add("FormatNumber", [=] {
        for (const double value : values) {
            Keep(FormatNumber(value, pattern, false, SystemLocale()));
        }
    });
    race.Add("snprintf", [=] {
        for (const double value : values) {
            char text[64];
            std::snprintf(text, sizeof text, format, value);
            Keep(text);
        }
    });
    race.Add("std::to_chars", [=] {
        for (const double value : values) {
            char text[64];
            if (decimals < 0) {
                Keep(std::to_chars(text, text + sizeof text, value, std::chars_format::general, 15));
            } else {
                Keep(std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, decimals));
            }
            Keep(text);
        }
    });
    race.Run();
}

}  // namespace

int main(int argc, char** argv)
{
    FormatRace("A frequency, \"###0.0000000\"", L"###0.0000000", "%.7f", 7);
    FormatRace("A symbol rate, \"#0.000\"", L"#0.000", "%.3f", 3);
    FormatRace("A reading, \"0.0\"", L"0.0", "%.1f", 1);
    FormatRace("General format", L"", "%.15g", -1);
    return Finish(argc, argv);
}
