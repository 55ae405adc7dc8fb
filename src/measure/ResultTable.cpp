#include "measure/ResultTable.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "setup/catalogue/Patterns.h"
#include "util/RaisedError.h"
#include "util/modFormat.h"

namespace tvn2x {

void ResultTable::Reset(const SetupDocument& document, const Locale& locale, int32_t item)
{
    const int32_t channels = std::max(document.ListSize(), 0);
    if (channels != channels_) {
        std::vector<Channel> fresh;
        fresh.reserve(static_cast<size_t>(std::max(channels, 1)));
        for (int32_t channel = 1; channel <= channels; ++channel) {
            fresh.push_back(Unmeasured(document, locale, channel));
        }
        if (channels == 0) {
            fresh.emplace_back();
        }
        rows_ = std::move(fresh);
        channels_ = channels;
    } else if (item != 0) {
        Channel& row = Row(item, L"clsSetup.ResetMeasurement");
        row = Unmeasured(document, locale, item);
    } else {
        for (int32_t channel = 1; channel <= channels; ++channel) {
            rows_[static_cast<size_t>(channel - 1)] = Unmeasured(document, locale, channel);
        }
    }
}

ResultTable::Channel ResultTable::Unmeasured(const SetupDocument& document, const Locale& locale, int32_t channel)
{
    Channel row;
    row.Cell(CellIndex(1, MP_USERFIELD), document.UserField(channel));
    row.Cell(CellIndex(1, MP_FREQUENCY), FormatNumber(document.Frequency(channel), pattern::frequency, true, locale));
    row.Cell(CellIndex(1, MP_SYMBOLRATE),
             FormatNumber(document.SymbolRate(channel), pattern::symbolRate, true, locale));
    row.Cell(CellIndex(1, MP_STATUS), L"Un-measured");
    return row;
}

void ResultTable::Measured(int32_t channel, bool measured)
{
    Row(channel, L"clsSetup.Measured").measured = measured;
}

std::wstring_view ResultTable::Result(int32_t field, int32_t parameter, int32_t channel) const
{
    return Row(channel, L"clsSetup.Result").Cell(CellIndex(field, parameter));
}

void ResultTable::Result(int32_t field, int32_t parameter, int32_t channel, std::wstring_view text)
{
    Channel& row = Row(channel, L"clsSetup.Result");
    row.Cell(CellIndex(field, parameter), text);
    if (field == 0 && parameter >= MP_RFLEV) {
        row.values[static_cast<size_t>(parameter - MP_RFLEV)] = none;
    }
}

std::optional<double> ResultTable::Value(int32_t parameter, int32_t channel) const
{
    const wchar_t* const source = L"clsSetup.Value";
    const Channel& row = Row(channel, source);
    CellIndex(0, parameter, source);
    const double value = parameter < MP_RFLEV ? none : row.values[static_cast<size_t>(parameter - MP_RFLEV)];
    return std::isnan(value) ? std::nullopt : std::optional(value);
}

void ResultTable::Reading(int32_t parameter, int32_t channel, std::wstring_view text, double value)
{
    Result(0, parameter, channel, text);
    Row(channel, L"clsSetup.Result").values.at(static_cast<size_t>(parameter - MP_RFLEV)) = value;
}

void ResultTable::ClearColumn(int32_t parameter, int32_t channel)
{
    for (int32_t field = 0; field < fieldCount; ++field) {
        Result(field, parameter, channel, {});
    }
}

size_t ResultTable::CellIndex(int32_t field, int32_t parameter, const wchar_t* source)
{
    if (field < 0 || field >= fieldCount || parameter < MP_FIRSTFIXED || parameter > MP_LAST) {
        RaiseSubscript(source);
    }
    return static_cast<size_t>(parameter - MP_FIRSTFIXED) * fieldCount + static_cast<size_t>(field);
}

const ResultTable::Channel& ResultTable::Row(int32_t channel, const wchar_t* source) const
{
    const int32_t first = channels_ > 0 ? 1 : 0;
    if (channel < first || channel > channels_) {
        RaiseSubscript(source);
    }
    return rows_[static_cast<size_t>(channel - first)];
}

ResultTable::Channel& ResultTable::Row(int32_t channel, const wchar_t* source)
{
    return const_cast<Channel&>(std::as_const(*this).Row(channel, source));
}

std::wstring_view ResultTable::Channel::Cell(size_t cell) const
{
    return std::wstring_view(texts).substr(Begin(cell), ends[cell] - Begin(cell));
}

void ResultTable::Channel::Cell(size_t cell, std::wstring_view text)
{
    const size_t oldLength = ends[cell] - Begin(cell);
    texts.replace(Begin(cell), oldLength, text);
    const auto shift = static_cast<uint32_t>(text.size() - oldLength);  // wraps where the text gets shorter
    std::for_each(ends.begin() + static_cast<std::ptrdiff_t>(cell), ends.end(),
                  [shift](uint32_t& end) { end += shift; });
}

}  // namespace tvn2x
