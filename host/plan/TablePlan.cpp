#include "host/plan/TablePlan.h"

#include <algorithm>
#include <array>

#include "host/plan/PlanFields.h"
#include "text/Blanks.h"
#include "text/InputError.h"
#include "text/TextInput.h"
#include "util/Encoding.h"
#include "util/modLocaleInfo.h"

namespace tvn2x {
namespace {

/// A column of the table, by the fields of a channel.
enum Column : size_t
{
    labelColumn,
    frequencyColumn,
    symbolRateColumn,
    qamColumn,
    columns
};

/// Words that headings use, in lower case; the first match counts. A heading is a column's where it has one of its
/// words in it ("Centre Frequency (MHz)").
constexpr struct
{
    std::string_view word;
    Column column;
} headings[] = {
    {"freq", frequencyColumn}, {"mhz", frequencyColumn}, {"symbol", symbolRateColumn}, {"msymb", symbolRateColumn},
    {"qam", qamColumn},        {"modul", qamColumn},     {"label", labelColumn},       {"name", labelColumn},
    {"service", labelColumn},  {"channel", labelColumn}, {"user field", labelColumn},
};

/// Where each field stands in a row.
using Layout = std::array<size_t, columns>;
constexpr size_t nowhere = SIZE_MAX;

/// The cells of a row: one that begins with a quotation mark may hold separators, and a mark written twice is one.
std::vector<std::string> CellsOf(std::string_view line, char separator)
{
    std::vector<std::string> cells(1);
    bool isQuoted = false;
    for (size_t at = 0; at < line.size(); ++at) {
        const char c = line[at];
        if (c == '"' && isQuoted && line.substr(at + 1, 1) == "\"") {
            cells.back() += line[++at];
        } else if (c == '"' && (isQuoted || TrimBlanks(cells.back()).empty())) {
            isQuoted = !isQuoted;
        } else if (c == separator && !isQuoted) {
            cells.emplace_back();
        } else {
            cells.back() += c == '\t' ? ' ' : c;
        }
    }
    for (std::string& cell : cells) {
        cell = std::string(TrimBlanks(cell));
    }
    return cells;
}

/// A decimal comma can only be one where it separates no cells.
char SeparatorOf(std::string_view row)
{
    return row.find(';') != std::string_view::npos ? ';' : ',';
}

bool IsHeading(const std::vector<std::string>& cells)
{
    return std::ranges::none_of(
        cells, [](const std::string& cell) { return !cell.empty() && cell[0] >= '0' && cell[0] <= '9'; });
}

Layout LayoutOf(const std::vector<std::string>& heading, const std::wstring& place)
{
    Layout layout;
    layout.fill(nowhere);
    for (size_t i = 0; i < heading.size(); ++i) {
        std::string name = heading[i];
        std::ranges::transform(name, name.begin(),
                               [](char c) { return static_cast<char>(c >= 'A' && c <= 'Z' ? c + 0x20 : c); });
        const auto known =
            std::ranges::find_if(headings, [&](const auto& entry) { return name.find(entry.word) != name.npos; });
        if (known != std::end(headings) && layout[known->column] == nowhere) {
            layout[known->column] = i;
        }
    }
    if (layout[frequencyColumn] == nowhere) {
        RaiseInput(place +
                   L"the heading names no column \"frequency\". Columns are label, frequency, symbol rate and "
                   L"QAM; without a heading they stand in this order.");
    }
    return layout;
}

/// A number of millions that may also be written in thousands or ones: what is `manyMillions` or more is.
std::optional<double> ReadMillions(const std::string& text, char separator, double manyMillions)
{
    constexpr double thousand = 1000;
    try {
        double number = ParseNumber(FromUtf8(text), separator == ';' ? L',' : L'.');
        for (int unit = 0; unit < 2 && number >= manyMillions; ++unit) {
            number /= thousand;
        }
        return number;
    } catch (const RaisedError&) {
        return std::nullopt;
    }
}

std::optional<std::wstring> ReadRow(const std::vector<std::string>& cells, const Layout& layout, char separator,
                                    const PlanDefaults& defaults, PlanChannel& channel)
{
    constexpr double manyMegahertz = 3000, manyMegasymbols = 50;
    const auto cell = [&](Column column) {
        return layout[column] < cells.size() ? cells[layout[column]] : std::string();
    };
    channel.label = FromUtf8(cell(labelColumn));
    const auto frequency = ReadMillions(cell(frequencyColumn), separator, manyMegahertz);
    if (!frequency) {
        return L"frequency " + Excerpt(cell(frequencyColumn)) + L" is no number";
    }
    const std::string rate = cell(symbolRateColumn);
    const auto symbolRate = rate.empty() ? 0 : ReadMillions(rate, separator, manyMegasymbols);
    if (!symbolRate) {
        return L"symbol rate " + Excerpt(rate) + L" is no number";
    }
    if (auto reason = TakeFrequency(*frequency, channel)) {
        return reason;
    }
    if (auto reason = TakeSymbolRate(*symbolRate, defaults, channel)) {
        return reason;
    }
    return TakeModulation(cell(qamColumn), defaults, channel);
}

}  // namespace

bool IsTableRow(std::string_view line)
{
    return !line.starts_with('[') && line.find('=') == std::string_view::npos &&
           line.find_first_of(",;") != std::string_view::npos;
}

ChannelPlan ReadTablePlan(std::string_view content, const std::wstring& path, const PlanDefaults& defaults)
{
    ChannelPlan plan;
    Layout layout{labelColumn, frequencyColumn, symbolRateColumn, qamColumn};
    char separator = '\0';
    LineReader reader(content);
    std::string_view line;
    while (reader.Next(line)) {
        if (line.starts_with('#') && separator == '\0' && plan.title.empty()) {
            plan.title = TitleOf(line);
        }
        if (line.empty() || line.starts_with('#')) {
            continue;
        }
        const bool isFirst = separator == '\0';
        separator = isFirst ? SeparatorOf(line) : separator;
        const std::vector<std::string> cells = CellsOf(line, separator);
        if (isFirst && IsHeading(cells)) {
            layout = LayoutOf(cells, AtLine(path, reader.Number()));
            continue;
        }
        PlanChannel channel{.line = reader.Number()};
        if (auto reason = ReadRow(cells, layout, separator, defaults, channel)) {
            plan.leftOut.push_back({reader.Number(), *reason});
        } else {
            plan.channels.push_back(std::move(channel));
        }
    }
    return plan;
}

}  // namespace tvn2x
