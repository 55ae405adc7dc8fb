#include "measure/ResultFile.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>
#include <vector>

#include "measure/SpreadsheetText.h"
#include "setup/catalogue/Patterns.h"
#include "text/RichText.h"
#include "util/modFormat.h"

namespace tvn2x {
namespace {

/// A setting's value as the file words it.
struct Word
{
    int32_t value;
    std::wstring_view text;
};
constexpr std::array<Word, 5> inputRoutes{
    {{2, L"Receiver"}, {4, L"Demod (50 ohm)"}, {50, L"Receiver (50 ohm)"}, {75, L"Receiver (75 ohm)"}, {128, L"IF"}}};
constexpr std::array<Word, 5> sawFilters{{{0, L"Off"}, {2, L"2 MHz"}, {6, L"6 MHz"}, {7, L"7 MHz"}, {8, L"8 MHz"}}};
constexpr std::array<Word, 2> references{{{0, L"Internal"}, {1, L"External"}}};

/// A value without a word keeps its number.
template <size_t n>
std::wstring InWords(const std::array<Word, n>& words, int32_t value)
{
    const auto word = std::ranges::find(words, value, &Word::value);
    return word == words.end() ? std::to_wstring(value) : std::wstring(word->text);
}

std::wstring InWords(bool value)
{
    return value ? L"True" : L"False";
}

bool ChannelsRunAcross(const SetupDocument& document)
{
    constexpr int32_t frequencyListAlways = 0, sameAsDisplayGrid = 2;
    const int32_t choice = document.XAxis(1);
    return (choice == sameAsDisplayGrid ? document.XAxis(0) : choice) == frequencyListAlways;
}

std::wstring SettingInWords(const SetupDocument& document, int32_t parameter, const Locale& locale)
{
    switch (parameter) {
        case MP_ZIN:
            return InWords(inputRoutes, document.Zin());
        case MP_SAWBW:
            return InWords(sawFilters, document.SawBw());
        case MP_ORDEROFQAM:
            return std::to_wstring(document.OrderOfQam());
        case MP_ROLLOFFFACTOR:
            return FormatNumber(document.RollOffFactor() / 100.0, L"0.00", true, locale);
        case MP_LEVELUNIT:
            return document.LevelUnit();
        case MP_REFERENCE:
            return InWords(references, document.ReferenceSource());
        case MP_BERSAMPLES:
            return std::to_wstring(document.BerSamples());
        case MP_MAXSETTLINGTIME:
            return std::to_wstring(document.MaxSettlingTime());
        case MP_XAXIS:
            return InWords(ChannelsRunAcross(document));
        default:
            return {};
    }
}

/// The parameters of a range that are marked to be saved, in display order.
std::vector<int32_t> Saved(const SetupDocument& document, int32_t first, int32_t last)
{
    constexpr int32_t save = 2;
    std::vector<int32_t> saved;
    for (int32_t parameter = first; parameter <= last; ++parameter) {
        if (document.Parameter(save, parameter)) {
            saved.push_back(parameter);
        }
    }
    std::ranges::sort(saved, {}, [&](int32_t parameter) {
        const int32_t position = document.Order(parameter);
        return std::pair(position > 0 ? position : INT32_MAX, parameter);
    });
    return saved;
}

/// The field of the result table that holds what the user knows as the parameter's value.
int32_t FieldOf(int32_t parameter)
{
    const bool measured = parameter > MP_TIMESTAMP;
    return measured ? 0 : 1;
}

/// The file as it is being laid out.
class Layout
{
public:
    Layout(const SetupDocument& document, const ResultTable& table, const Locale& locale)
        : document_(document), table_(table), locale_(locale), text_(locale)
    {
    }

    std::string Content()
    {
        Settings();
        if (!columns_.empty()) {
            text_.EndRow();
            if (ChannelsRunAcross(document_)) {
                ResultsAcross();
            } else {
                ResultsDown();
            }
        }
        Notes();
        return text_.Take();
    }

private:
    void Setting(std::wstring_view caption, std::wstring_view value)
    {
        text_.Cell(caption);
        text_.Cell(value);
        text_.EndRow();
    }

    void Settings()
    {
        // In one cell: a spreadsheet would take a version such as 2.1 for a date.
        const std::wstring version = document_.appVersion.empty() ? L"" : L" " + document_.appVersion;
        Setting(L"Application", document_.productName + version);
        Setting(L"Setup", document_.FileTitle());
        if (!table_.receiver.empty()) {
            Setting(L"Receiver", table_.receiver);
        }
        for (const int32_t parameter : Saved(document_, MP_FIRST, MP_LASTSTATIC)) {
            Setting(document_.Caption(parameter), SettingInWords(document_, parameter, locale_));
        }
        Setting(L"Default Symbol Rate (MSymb/s)",
                FormatNumber(document_.DefaultSymbolRate(), pattern::symbolRate, true, locale_));
        Setting(L"Couple Display and Save", InWords(document_.CoupleDisplayAndSave()));
    }

    void ResultsAcross()
    {
        for (const int32_t parameter : columns_) {
            text_.Cell(document_.Caption(parameter));
            for (int32_t channel = 1; channel <= table_.Channels(); ++channel) {
                Result(parameter, channel);
            }
            text_.EndRow();
        }
    }

    void ResultsDown()
    {
        for (const int32_t parameter : columns_) {
            text_.Cell(document_.Caption(parameter));
        }
        text_.EndRow();
        for (int32_t channel = 1; channel <= table_.Channels(); ++channel) {
            for (const int32_t parameter : columns_) {
                Result(parameter, channel);
            }
            text_.EndRow();
        }
    }

    void Result(int32_t parameter, int32_t channel)
    {
        text_.Cell(table_.Result(FieldOf(parameter), parameter, channel));
    }

    void Notes()
    {
        const std::wstring notes = PlainText(document_.measurementNotes);
        const size_t end = notes.find_last_not_of(L" \t\r\n") + 1;  // 0 where there are none
        if (end == 0) {
            return;
        }
        text_.EndRow();
        text_.Cell(L"Notes");
        text_.EndRow();
        for (std::wstring_view rest = std::wstring_view(notes).substr(0, end); !rest.empty();) {
            const size_t length = std::min(rest.find_first_of(L"\r\n"), rest.size());
            if (length > 0) {
                text_.Cell(rest.substr(0, length));
            }
            text_.EndRow();
            rest.remove_prefix(length);
            rest.remove_prefix(rest.starts_with(L"\r\n") ? 2 : std::min<size_t>(1, rest.size()));
        }
    }

    const SetupDocument& document_;
    const ResultTable& table_;
    const Locale& locale_;
    const std::vector<int32_t> columns_ = Saved(document_, MP_FIRSTFIXED, MP_LAST);
    SpreadsheetText text_;
};

std::wstring FailureText(FileFault fault, const std::wstring& path)
{
    switch (fault) {
        case FileFault::diskFull:
            return L"Destination disk drive is full.";
        case FileFault::inUse:
            return L"The document " + path + L" is in use by another application and cannot be accessed.";
        case FileFault::accessDenied:
        case FileFault::readOnly:
        case FileFault::isDirectory:
            return L"Access to " + path + L" was denied.";
        case FileFault::missing:
        case FileFault::pathMissing:
            return L"Path does not exist. Please verify the correct path was given.";
        default:
            return L"Error writing " + path + L": " + std::wstring(FaultText(fault)) + L".";
    }
}

}  // namespace

std::string ResultFileContent(const SetupDocument& document, const ResultTable& table, const Locale& locale)
{
    return Layout(document, table, locale).Content();
}

bool SaveResults(const SetupDocument& document, const ResultTable& table, const Locale& locale, Replacement& file,
                 MessageBoxes& messages, const std::wstring& path)
{
    const std::string content = ResultFileContent(document, table, locale);
    FileFault fault = FileFault::none;
    try {
        fault = file.Open(path);
        if (fault == FileFault::none) {
            fault = file.Write(content);
        }
        if (fault == FileFault::none) {
            fault = file.Commit();
        }
    } catch (...) {
        file.Discard();
        throw;
    }
    file.Discard();
    if (fault != FileFault::none) {
        messages.Show(FailureText(fault, path), L"Save Results", MessageIcon::warning);
    }
    return fault == FileFault::none;
}

}  // namespace tvn2x
