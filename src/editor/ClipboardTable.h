#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tvn2x {

/// Rows of cells. They need not be of one length.
using Table = std::vector<std::vector<std::wstring>>;

/// The cells of a text as spreadsheet programs put it onto the clipboard: tabs between the cells of a row, a line end
/// of any kind behind each row but perhaps the last. A cell that holds a tab or a line end stands between quotation
/// marks, and those that it contains are doubled. The text ends with a NUL, if it has one; "" has no rows.
Table ReadTable(std::wstring_view text);

/// The same the other way, with CR LF behind every row.
std::wstring WriteTable(const Table& table);

/// A row of cells as somebody may have written it: a line with a tab, or more than one line. A line end at the very end
/// does not count, because spreadsheet programs put one behind a single cell too.
bool IsRange(std::wstring_view text);

}  // namespace tvn2x
