#include "host/setup/SetupView.h"

#include <algorithm>
#include <numeric>

#include "host/terminal/TextGrid.h"
#include "setup/catalogue/Patterns.h"
#include "setup/catalogue/Settings.h"
#include "text/RichText.h"
#include "util/modFormat.h"
#include "util/modLocaleInfo.h"

namespace tvn2x {
namespace {

std::wstring Fixed(double value, std::wstring_view pattern)
{
    return FormatNumber(value, pattern, false, SystemLocale());
}

std::wstring Line(const std::wstring& what, const std::wstring& value)
{
    constexpr size_t width = 26;
    return L"  " + what + std::wstring(what.size() < width ? width - what.size() : 1, L' ') + value + L"\n";
}

std::wstring Choice(const wchar_t* what, const Setting& setting, int32_t value)
{
    return Line(what, ChoiceWords(setting, value));
}

std::wstring Head(const Setup& setup)
{
    const std::wstring mode = ChoiceWords(setting::mode, setup.mode);
    std::wstring text =
        setup.path + L"\n" + Line(L"Made by", setup.product + L", version " + setup.version) +
        Line(L"For receiver model", L"2x, mode " + std::to_wstring(setup.mode) +
                                        (mode == std::to_wstring(setup.mode) ? L"" : L" (" + mode + L")"));
    if (setup.isBackup) {
        text += Line(L"Backup copy of", setup.realPath + (setup.isDirty ? L" (which had unsaved changes)" : L""));
    }
    return text;
}

std::wstring Settings(const Setup& setup)
{
    return L"\nSettings\n" + Line(L"Level unit", setup.settings.levelUnit) +
           Choice(L"Rolloff factor", setting::rollOffFactor, setup.settings.rollOffFactor) +
           Choice(L"10 MHz reference", setting::referenceSource, setup.settings.referenceSource) +
           Choice(L"Input route", setting::inputRoute, setup.settings.inputRoute) +
           Choice(L"SAW filter bandwidth", setting::sawBandwidth, setup.settings.sawBandwidth) +
           Choice(L"Order of QAM", setting::orderOfQam, setup.settings.orderOfQam) +
           Line(L"BER integration", std::to_wstring(setup.settings.berSamples) + L" samples of 10^7 bits") +
           Line(L"Default symbol rate", Fixed(setup.defaultSymbolRate, pattern::symbolRate) + L" MSymb/s") +
           Line(L"Maximum settling time", std::to_wstring(setup.settings.maxSettlingTime) + L" s") +
           Line(L"Display and save coupled", setup.isCoupled ? L"yes" : L"no") +
           Choice(L"X axis, display grid", setting::displayGrid, setup.xAxis[0]) +
           Choice(L"X axis, result file", setting::resultFile, setup.xAxis[1]);
}

std::wstring Channels(const Setup& setup, int32_t maxWidth)
{
    const size_t count = setup.channels.size();
    std::wstring text =
        L"\n" + (count == 0 ? L"No" : std::to_wstring(count)) + (count == 1 ? L" channel\n" : L" channels\n");
    if (count == 0) {
        return text;
    }
    TextGrid grid({L"No.", L"User Field", L"Center Frequency (MHz)", L"Symbol Rate (MSymb/s)"}, 1);
    for (size_t i = 0; i < count; ++i) {
        const Setup::Channel& channel = setup.channels[i];
        grid.AddRow({std::to_wstring(i + 1), channel.userField, Fixed(channel.frequency, pattern::frequencyInFiles),
                     Fixed(channel.symbolRate, pattern::symbolRate)});
    }
    return text + grid.Render(maxWidth);
}

std::wstring Parameters(const Setup& setup, int32_t maxWidth)
{
    std::vector<size_t> order(setup.parameters.size());
    std::iota(order.begin(), order.end(), size_t{0});
    std::ranges::stable_sort(order, {}, [&](size_t i) { return setup.parameters[i].position; });
    TextGrid grid({L"Position", L"No.", L"Caption", L"Display", L"Save"});
    for (const size_t i : order) {
        const Setup::Parameter& parameter = setup.parameters[i];
        grid.AddRow({std::to_wstring(parameter.position), std::to_wstring(i + 1), parameter.caption,
                     parameter.isDisplayed ? L"yes" : L"-", parameter.isSaved ? L"yes" : L"-"});
    }
    return L"\nParameters\n" + grid.Render(maxWidth);
}

std::wstring Notes(const Setup& setup)
{
    const wchar_t* const when = setup.showsNotesBefore  ? setup.showsNotesAfter ? L"before and after" : L"before"
                                : setup.showsNotesAfter ? L"after"
                                                        : L"neither before nor after";
    std::wstring text = L"\nNotes, shown " + std::wstring(when) + L" a measurement\n";
    const std::wstring notes = PlainText(setup.notes);
    if (notes.empty()) {
        return text + L"  (none)\n";
    }
    for (size_t at = 0; at <= notes.size();) {
        const size_t stop = std::min(notes.find(L'\n', at), notes.size());
        std::wstring line = notes.substr(at, stop - at);
        std::ranges::replace_if(
            line, [](wchar_t c) { return c < 0x20; }, L' ');
        text += (line.empty() ? L"" : L"  ") + line + L"\n";
        at = stop + 1;
    }
    return text;
}

}  // namespace

std::wstring DescribeSetup(const Setup& setup, int32_t maxWidth)
{
    return Head(setup) + Settings(setup) + Channels(setup, maxWidth) + Parameters(setup, maxWidth) + Notes(setup);
}

}  // namespace tvn2x
