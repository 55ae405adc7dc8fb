#pragma once

#include <string>
#include <string_view>

#include "util/modLocaleInfo.h"

namespace tvn2x {

/// A table as text that a spreadsheet under the user's regional settings opens at a double click: the list separator
/// between cells, CR LF behind rows, cells quoted where they need it, UTF-8 with a byte order mark.
///
/// No cell is taken for a formula: a text that begins like one gets an apostrophe in front. Numbers as the user's
/// locale writes them stay, negative ones too, and so does a row of dashes.
class SpreadsheetText
{
public:
    explicit SpreadsheetText(const Locale& locale);

    /// A cell of the row that is being written. Control characters other than line ends and tabs become blanks.
    void Cell(std::wstring_view text);
    void EndRow();  ///< without a cell before it, a blank row

    /// The table so far. The object is empty afterwards.
    std::string Take() { return std::move(bytes_); }

private:
    bool LooksLikeFormula(std::wstring_view text) const;

    wchar_t decimalMark_;
    wchar_t separator_;
    std::wstring row_;
    bool rowHasCells_ = false;
    std::string bytes_;
};

}  // namespace tvn2x
