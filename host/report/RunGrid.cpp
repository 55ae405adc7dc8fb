#include "host/report/RunGrid.h"

#include <algorithm>

#include "setup/catalogue/Patterns.h"
#include "util/Encoding.h"
#include "util/modFormat.h"

namespace tvn2x {

std::string CellText(const ChannelResult& channel, int32_t parameter)
{
    switch (parameter) {
        case MP_USERFIELD:
            return channel.label;
        case MP_FREQUENCY:
            return ToUtf8(FormatNumber(channel.frequency, pattern::frequency, true, SystemLocale()));
        case MP_SYMBOLRATE:
            return ToUtf8(FormatNumber(channel.symbolRate, pattern::symbolRate, true, SystemLocale()));
        case MP_STATUS:
            return channel.status;
        case MP_TIMESTAMP:
            return channel.timeStamp;
        default:
            break;
    }
    const Reading* reading = channel.Find(parameter);
    return reading ? reading->text : "";
}

TextGrid RunGrid(const FinishedRun& run, int32_t pass)
{
    std::vector<std::wstring> captions{L"No."};
    for (const RunColumn& column : run.columns) {
        captions.push_back(FromUtf8(column.caption));
    }
    const auto fixed =
        std::ranges::find_if(run.columns, [](const RunColumn& column) { return column.parameter > MP_SYMBOLRATE; });
    TextGrid grid(captions, 1 + static_cast<size_t>(fixed - run.columns.begin()));
    for (const ChannelResult& channel : run.channels) {
        if (channel.pass == pass) {
            std::vector<std::wstring> row{std::to_wstring(channel.number)};
            for (const RunColumn& column : run.columns) {
                row.push_back(FromUtf8(CellText(channel, column.parameter)));
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
        grid.AddRow({FromUtf8(change.channel), FromUtf8(change.parameter), FromUtf8(change.before),
                     FromUtf8(change.after), FromUtf8(change.change)});
    }
    return grid;
}

}  // namespace tvn2x
