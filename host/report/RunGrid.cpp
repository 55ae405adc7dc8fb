#include "host/report/RunGrid.h"

#include <algorithm>

#include "setup/catalogue/Patterns.h"
#include "util/modFormat.h"

namespace tvn2x {

std::wstring CellText(const ChannelResult& channel, int32_t parameter)
{
    switch (parameter) {
        case MP_USERFIELD:
            return channel.label;
        case MP_FREQUENCY:
            return FormatNumber(channel.frequency, pattern::frequency, true, SystemLocale());
        case MP_SYMBOLRATE:
            return FormatNumber(channel.symbolRate, pattern::symbolRate, true, SystemLocale());
        case MP_STATUS:
            return channel.status;
        case MP_TIMESTAMP:
            return channel.timeStamp;
        default:
            break;
    }
    const Reading* reading = channel.Find(parameter);
    return reading ? reading->text : L"";
}

TextGrid RunGrid(const FinishedRun& run, int32_t pass)
{
    const bool showsOrder = run.MixesOrders();
    std::vector<std::wstring> captions{L"No."};
    for (const RunColumn& column : run.columns) {
        captions.push_back(column.caption);
    }
    if (showsOrder) {
        captions.insert(captions.begin() + 1, L"QAM");
    }
    const auto fixed =
        std::ranges::find_if(run.columns, [](const RunColumn& column) { return column.parameter > MP_SYMBOLRATE; });
    TextGrid grid(captions, 1 + (showsOrder ? 1 : 0) + static_cast<size_t>(fixed - run.columns.begin()));
    for (const ChannelResult& channel : run.channels) {
        if (channel.pass == pass) {
            std::vector<std::wstring> row{std::to_wstring(channel.number)};
            if (showsOrder) {
                row.push_back(std::to_wstring(channel.orderOfQam));
            }
            for (const RunColumn& column : run.columns) {
                row.push_back(CellText(channel, column.parameter));
            }
            grid.AddRow(std::move(row));
        }
    }
    return grid;
}

TextGrid ComparisonGrid(const RunComparison& comparison)
{
    TextGrid grid({L"Channel", L"What", L"Before", L"After", L"Change"}, 1);
    for (const RunChange& change : comparison.changes) {
        grid.AddRow({change.channel, change.parameter, change.before, change.after, change.change});
    }
    return grid;
}

}  // namespace tvn2x
