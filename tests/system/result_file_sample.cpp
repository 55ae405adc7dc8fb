// Writes the result file of a made-up measurement with chosen regional settings, for programs that read such files:
// result_file_sample DECIMAL_SEPARATOR LIST_SEPARATOR across|down FILE

#include <cstdio>
#include <fstream>
#include <string>

#include "measure/ResultFile.h"
#include "support/FixedLocale.h"
#include "util/Encoding.h"
#include "util/modFormat.h"

namespace tvn2x {
namespace {

void MakeMeasurement(SetupDocument& document, ResultTable& table, const Locale& locale)
{
    document.ListSize(3);
    document.productName = L"TVN Host";
    document.appVersion = L"2.0";
    document.measurementNotes = L"{\\rtf1\\ansi cold; \"quiet\" morning\\par =1+1\\par}";
    document.Caption(MP_USERFIELD, L"Label; with, separators");
    const wchar_t* const labels[] = {L"\u00D8lgade \"north\"; a, b\r\n\u4E2D\u6587 \U0001F4E1", L"=1+1",
                                     L"@SUM(A1); - plain"};
    for (int32_t channel = 1; channel <= 3; ++channel) {
        document.UserField(channel, labels[channel - 1]);
        document.Frequency(channel, 105.2512345 + 8 * channel);
        document.SymbolRate(channel, 6.9);
    }
    for (int32_t parameter = MP_TIMESTAMP; parameter <= MP_LAST; ++parameter) {
        document.Parameter(2, parameter, parameter == MP_RFLEV || parameter == MP_BER || parameter == MP_FREQOFF);
    }

    table.Reset(document, locale);
    const auto number = [&](double value) { return FormatNumber(value, L"0.0", true, locale); };
    table.Result(1, MP_STATUS, 1, L"Done");
    table.Result(0, MP_RFLEV, 1, number(-12.3));
    table.Result(0, MP_BER, 1, number(1.5) + L"E-3");
    table.Result(0, MP_FREQOFF, 1, L"-1250");
    table.Result(1, MP_STATUS, 2, L"Done");
    table.Result(0, MP_RFLEV, 2, number(61.5));
    table.Result(0, MP_BER, 2, L"<" + number(1.7) + L"E-8");
    table.Result(0, MP_FREQOFF, 2, L"---");
}

}  // namespace
}  // namespace tvn2x

int main(int count, char** arguments)
{
    using namespace tvn2x;
    if (count != 5) {
        std::fputs("usage: result_file_sample DECIMAL_SEPARATOR LIST_SEPARATOR across|down FILE\n", stderr);
        return 2;
    }
    const FixedLocale locale(FromUtf8(arguments[1]), FromUtf8(arguments[2]));
    SetupDocument document;
    ResultTable table;
    MakeMeasurement(document, table, locale);
    document.XAxis(1, arguments[3] == std::string("across") ? 0 : 1);
    std::ofstream(arguments[4], std::ios::binary) << ResultFileContent(document, table, locale);
}
