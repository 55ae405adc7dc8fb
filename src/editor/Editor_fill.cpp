#include <algorithm>
#include <cmath>
#include <utility>

#include "editor/Editor.h"
#include "editor/EditorKeys.h"
#include "editor/Series.h"
#include "setup/catalogue/Patterns.h"
#include "util/clsQuickSort.h"
#include "util/modFormat.h"

namespace tvn2x {
namespace {

constexpr double usualRaster = 8;       // MHz between the channels of a European network
constexpr double usualFirst = 306;      // MHz
constexpr double usualLast = 858;       // MHz
constexpr double stepTolerance = 1e-6;  // of a step: 306 + 8 * n reaches 858 however it is computed
constexpr const wchar_t* usualLabel = L"S21";

std::wstring_view PatternOf(Column column)
{
    return column == MP_FREQUENCY ? pattern::frequency : pattern::symbolRate;
}

}  // namespace

/// The first selected cell into the selected ones below it; of one selected row alone, the cell above into it.
void Editor::FillDown(GridRows& grid)
{
    std::vector<int32_t> rows = grid.SelectedRows();
    if (rows.size() == 1) {
        rows.insert(rows.begin(), rows.front() - 1);
    }
    const Column column = grid.column;
    const SharedRow source = grid.rows[static_cast<size_t>(rows.front())];
    if (IsCheckColumn(column)) {
        for (const int32_t row : rows) {
            MarkCoupled(column, row, source->checked[grid.Index(column)]);
        }
        return RenumberGroup(grid);
    }
    const std::wstring text =
        source->itemData == MP_RFLEV ? WithoutUnit(source->text[0]) : source->text[grid.Index(column)];
    for (const int32_t row : rows) {
        const bool hasUnit = column == captionColumn && grid.At(row).itemData == MP_RFLEV;
        SetCell(column, row, hasUnit ? WithUnit(WithoutUnit(text)) : text);
    }
}

/// From the first selected row down to the last selected one, or to the end of the list where only one is selected.
void Editor::AskForSeries(GridRows& grid)
{
    std::vector<int32_t> rows = grid.SelectedRows();
    for (const bool isAlone = rows.size() == 1; isAlone && rows.back() < grid.LastRow();) {
        rows.push_back(rows.back() + 1);
    }
    const Column column = grid.column;
    const std::wstring& first = grid.Text(column, rows.front());
    const double difference = NumberIn(grid.Text(column, rows[1])) - NumberIn(first);
    const double step = column == MP_USERFIELD      ? 1
                        : std::isfinite(difference) ? difference
                        : column == MP_FREQUENCY    ? usualRaster
                                                    : 0;
    Form form{L"Fill " + std::to_wstring(rows.size()) + L" Rows", L"Fill", {{L"&First value:", first}}};
    form.entries.push_back({L"&Step (0: all alike):", FormatNumber(step, true, locale_)});
    view_.Ask(form, [&](const std::vector<std::wstring>& answers) -> std::wstring {
        const double by = NumberIn(answers[1]);
        if (!std::isfinite(by) || std::fabs(by) > 1e6) {
            return L"The step is no number.";
        }
        if (column != MP_USERFIELD && !std::isfinite(NumberIn(answers[0]))) {
            return L"The first value is no number.";
        }
        if (column == MP_USERFIELD && by != std::trunc(by)) {
            return L"Labels count on by whole numbers.";
        }
        Change(grid.grid, [&] { FillSeries(grid, rows, answers[0], by); });
        return {};
    });
}

void Editor::FillSeries(GridRows& grid, const std::vector<int32_t>& rows, const std::wstring& first, double step)
{
    const Column column = grid.column;
    int64_t place = 0;
    for (const int32_t row : rows) {
        SetCell(column, row,
                column == MP_USERFIELD ? CountOn(first, place * static_cast<int64_t>(step))
                                       : FormatNumber(NumberIn(first) + static_cast<double>(place) * step,
                                                      PatternOf(column), true, locale_));
        ++place;
    }
    SelectRows(grid, rows, rows.front());
}

/// Proposes to go on behind the last channel.
void Editor::AskForChannels()
{
    const GridRows& channels = lists_.channels;
    double first = usualFirst;
    std::wstring label = usualLabel;
    if (channels.LastRow() >= 0) {
        const double last = NumberIn(channels.Text(MP_FREQUENCY, channels.LastRow()));
        first = std::isfinite(last) ? last + usualRaster : first;
        label = CountOn(channels.Text(MP_USERFIELD, channels.LastRow()), 1);
    }
    const auto number = [&](double value) { return FormatNumber(value, true, locale_); };
    view_.Ask({L"Add Channels",
               L"Add",
               {{L"&First frequency (MHz):", number(first)},
                {L"&Last frequency (MHz):", number(std::max(first, usualLast))},
                {L"&Step (MHz):", number(usualRaster)},
                {L"Symbol &rate (MSymb/s):", Text(Field::defaultSymbolRate)},
                {L"First la&bel (counts on):", label}}},
              [this](const std::vector<std::wstring>& answers) { return AddChannels(answers); });
}

/// In front of the selected rows, as "Insert" does. What is wrong with the answers, "" where nothing is.
std::wstring Editor::AddChannels(const std::vector<std::wstring>& answers)
{
    const double first = NumberIn(answers[0]);
    const double last = NumberIn(answers[1]);
    const double step = NumberIn(answers[2]);
    if (!std::isfinite(first) || !std::isfinite(last) || !std::isfinite(step) || !std::isfinite(NumberIn(answers[3]))) {
        return L"Frequencies, step and symbol rate are numbers.";
    }
    if (step <= 0 || last < first) {
        return L"The step must be above 0, and the last frequency not below the first.";
    }
    const double count = std::floor((last - first) / step + stepTolerance) + 1;
    if (count > clsQuickSort::mostRows) {
        return L"That would be more than " + std::to_wstring(clsQuickSort::mostRows) + L" channels.";
    }
    Change(Grid::channels, [&] {
        GridRows& channels = lists_.channels;
        const int32_t at = channels.selection.First();
        const auto rows = static_cast<int32_t>(count);
        std::vector<SharedRow> added;
        for (int32_t each = 0; each < rows; ++each) {
            const std::wstring frequency = FormatNumber(first + each * step, pattern::frequency, true, locale_);
            added.push_back(
                std::make_shared<const GridRow>(GridRow{{CountOn(answers[4], each), frequency, answers[3]}, {}, 0}));
        }
        channels.rows.insert(channels.rows.begin() + at, added.begin(), added.end());
        view_.RowsInserted(Grid::channels, at, rows);
        ClearArrows();
        channels.selection.Range(at, at + rows - 1);
        channels.Show(at + rows - 1);
        SyncGridColumns(channels);
    });
    return {};
}

}  // namespace tvn2x
