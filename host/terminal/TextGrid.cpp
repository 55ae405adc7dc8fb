#include "host/terminal/TextGrid.h"

#include <algorithm>
#include <numeric>

#include "host/terminal/Words.h"

namespace tvn2x {
namespace {

constexpr int32_t gap = 2;
constexpr int32_t narrowestText = 8;  ///< that a column of texts is narrowed to

bool IsDigit(wchar_t c)
{
    return c >= L'0' && c <= L'9';
}

/// A number as the grid aligns it: sign or "<", digits with one decimal separator, exponent.
bool IsNumber(std::wstring_view text)
{
    size_t at = 0;
    const auto skipDigits = [&] {
        const size_t begin = at;
        while (at < text.size() && IsDigit(text[at])) {
            ++at;
        }
        return at - begin;
    };
    at += text.starts_with(L'<') || text.starts_with(L'>');
    at += at < text.size() && (text[at] == L'-' || text[at] == L'+');
    size_t digits = skipDigits();
    if (at < text.size() && (text[at] == L'.' || text[at] == L',')) {
        ++at;
        digits += skipDigits();
    }
    if (digits != 0 && at < text.size() && (text[at] == L'E' || text[at] == L'e')) {
        ++at;
        at += at < text.size() && (text[at] == L'-' || text[at] == L'+');
        digits = skipDigits();
    }
    return digits != 0 && at == text.size();
}

bool IsMarker(std::wstring_view text)
{
    return text.empty() || text == L"---" || text == L"UNDER" || text == L"OVER";
}

/// Width in front of the decimal point or the exponent, or of the whole number where it has neither.
int32_t WidthBeforePoint(std::wstring_view number)
{
    return static_cast<int32_t>(std::min(number.find_first_of(L".,Ee"), number.size()));
}

/// Cuts a caption where a line may end: at blanks, and behind a "/" between two words ("Rate/Carrier", but not "I/Q").
std::vector<std::wstring> Pieces(std::wstring_view caption)
{
    constexpr size_t shortestWord = 3;
    std::vector<std::wstring> pieces(1);
    size_t wordBegin = 0;
    for (size_t i = 0; i < caption.size(); ++i) {
        if (caption[i] == L' ') {
            pieces.emplace_back();
            wordBegin = i + 1;
            continue;
        }
        pieces.back() += caption[i];
        const size_t wordEnd = std::min(caption.find(L' ', i), caption.size());
        if (caption[i] == L'/' && i - wordBegin >= shortestWord && wordEnd - i > shortestWord) {
            pieces.emplace_back();
            wordBegin = i + 1;
        }
    }
    std::erase(pieces, std::wstring());
    return pieces;
}

std::vector<std::wstring> Wrap(const std::vector<std::wstring>& pieces, int32_t width)
{
    std::vector<std::wstring> lines;
    for (const std::wstring& piece : pieces) {
        const bool glued = !lines.empty() && lines.back().ends_with(L'/');
        if (!lines.empty() && DisplayWidth(lines.back()) + (glued ? 0 : 1) + DisplayWidth(piece) <= width) {
            lines.back() += (glued ? L"" : L" ") + piece;
        } else {
            lines.push_back(piece);
        }
    }
    return lines;
}

std::wstring Pad(const std::wstring& text, int32_t width, bool right)
{
    const std::wstring blanks(static_cast<size_t>(std::max(0, width - DisplayWidth(text))), L' ');
    return right ? blanks + text : text + blanks;
}

/// Puts a line's cells side by side and cuts the blanks at its end.
std::wstring Join(const std::vector<std::wstring>& cells)
{
    std::wstring line;
    for (const std::wstring& cell : cells) {
        line += (line.empty() ? L"" : std::wstring(gap, L' ')) + cell;
    }
    line.erase(line.find_last_not_of(L' ') + 1);
    return line + L"\n";
}

}  // namespace

TextGrid::TextGrid(std::vector<std::wstring> captions, size_t keyColumns)
    : captions_(std::move(captions)), keyColumns_(std::min(keyColumns, captions_.size()))
{
}

void TextGrid::AddRow(std::vector<std::wstring> cells)
{
    for (std::wstring& cell : cells) {
        cell = Printable(cell);
        std::ranges::replace(cell, L'\n', L' ');
    }
    rows_.push_back(std::move(cells));
}

TextGrid::Column TextGrid::Layout(size_t index) const
{
    Column column;
    const auto isNumber = [&](const auto& row) { return IsNumber(row[index]); };
    column.isNumeric = std::ranges::any_of(rows_, isNumber) && std::ranges::all_of(rows_, [&](const auto& row) {
                           return isNumber(row) || IsMarker(row[index]);
                       });
    int32_t behind = 0;
    for (const auto& row : rows_) {
        const std::wstring& cell = row[index];
        column.width = std::max(column.width, DisplayWidth(cell));
        if (column.isNumeric && IsNumber(cell)) {
            column.before = std::max(column.before, WidthBeforePoint(cell));
            behind = std::max(behind, DisplayWidth(cell) - WidthBeforePoint(cell));
        }
    }
    column.width = std::max(column.width, column.before + behind);
    const std::vector<std::wstring> pieces = Pieces(captions_[index]);
    for (const std::wstring& piece : pieces) {
        column.least = std::max(column.least, DisplayWidth(piece));
    }
    column.width = std::max(column.width, column.least);
    column.least = column.isNumeric ? column.width : std::min(column.width, std::max(column.least, narrowestText));
    column.before = column.width - behind;
    column.caption = Wrap(pieces, column.width);
    return column;
}

void TextGrid::Narrow(Column& column, size_t index, int32_t width) const
{
    if (width < column.width) {
        column.width = std::max(width, column.least);
        column.caption = Wrap(Pieces(captions_[index]), column.width);
    }
}

int32_t TextGrid::NarrowKeys(std::vector<Column>& columns, int32_t maxWidth) const
{
    const auto width = [&] {
        return std::accumulate(columns.begin(), columns.begin() + static_cast<std::ptrdiff_t>(keyColumns_), -gap,
                               [](int32_t sum, const Column& column) { return sum + column.width + gap; });
    };
    for (size_t index = 0; index < keyColumns_ && maxWidth > 0; ++index) {
        Narrow(columns[index], index, columns[index].width - std::max(0, width() - maxWidth / 2));
    }
    return width();
}

std::vector<TextGrid::Panel> TextGrid::Panels(std::vector<Column>& columns, int32_t maxWidth) const
{
    constexpr int32_t readableText = 24;
    Panel keys(keyColumns_);
    std::iota(keys.begin(), keys.end(), size_t{0});
    const int32_t keyWidth = NarrowKeys(columns, maxWidth);
    std::vector<Panel> panels{keys};
    int32_t width = keyWidth;
    for (size_t index = keyColumns_; index < columns.size(); ++index) {
        Column& column = columns[index];
        if (!column.isNumeric && width + gap + readableText <= maxWidth) {
            Narrow(column, index, maxWidth - width - gap);
        }
        const bool isFirst = panels.back().size() == keyColumns_;
        if (maxWidth > 0 && !isFirst && width + gap + column.width > maxWidth) {
            panels.push_back(keys);
            width = keyWidth;
        }
        if (maxWidth > 0) {
            Narrow(column, index, maxWidth - width - gap);
        }
        panels.back().push_back(index);
        width += gap + column.width;
    }
    return panels;
}

std::vector<std::wstring> TextGrid::CellLines(const std::wstring& cell, const Column& column)
{
    if (!column.isNumeric) {
        std::vector<std::wstring> lines = WrappedLines(cell, column.width, true);
        for (std::wstring& line : lines) {
            line = Pad(line, column.width, false);
        }
        return lines;
    }
    const bool alignsPoint = IsNumber(cell);
    const int32_t indent = alignsPoint ? column.before - WidthBeforePoint(cell) : 0;
    return {Pad(std::wstring(static_cast<size_t>(indent), L' ') + cell, column.width, !alignsPoint)};
}

std::wstring TextGrid::RenderPanel(const std::vector<Column>& columns, const Panel& panel) const
{
    size_t captionLines = 0;
    std::vector<std::wstring> rules;
    for (const size_t index : panel) {
        captionLines = std::max(captionLines, columns[index].caption.size());
        rules.emplace_back(static_cast<size_t>(columns[index].width), L'─');
    }
    const int32_t width = std::accumulate(panel.begin(), panel.end(), -gap,
                                          [&](int32_t sum, size_t index) { return sum + columns[index].width + gap; });
    const std::wstring frame = std::wstring(static_cast<size_t>(std::max(0, width)), L'━') + L"\n";

    std::wstring text = frame;
    std::vector<std::wstring> cells(panel.size());
    for (size_t line = 0; line < captionLines; ++line) {
        for (size_t i = 0; i < panel.size(); ++i) {
            const Column& column = columns[panel[i]];
            const size_t above = captionLines - column.caption.size();
            cells[i] = Pad(line < above ? L"" : column.caption[line - above], column.width, column.isNumeric);
        }
        text += Join(cells);
    }
    text += Join(rules);
    for (const auto& row : rows_) {
        std::vector<std::vector<std::wstring>> lines;
        size_t height = 1;
        for (const size_t index : panel) {
            lines.push_back(CellLines(row[index], columns[index]));
            height = std::max(height, lines.back().size());
        }
        for (size_t line = 0; line < height; ++line) {
            for (size_t i = 0; i < panel.size(); ++i) {
                cells[i] = line < lines[i].size() ? lines[i][line] : Pad(L"", columns[panel[i]].width, false);
            }
            text += Join(cells);
        }
    }
    return text + frame;
}

std::wstring TextGrid::Render(int32_t maxWidth) const
{
    std::vector<Column> columns;
    for (size_t index = 0; index < captions_.size(); ++index) {
        columns.push_back(Layout(index));
    }
    std::wstring text;
    for (const Panel& panel : Panels(columns, maxWidth)) {
        text += (text.empty() ? L"" : L"\n") + RenderPanel(columns, panel);
    }
    return text;
}

}  // namespace tvn2x
