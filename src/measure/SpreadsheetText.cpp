#include "measure/SpreadsheetText.h"

#include <algorithm>
#include <cwctype>

#include "util/Encoding.h"
#include "util/RaisedError.h"

namespace tvn2x {
namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// Characters that begin a formula, in the full width too, in which East Asian keyboards write them.
constexpr std::wstring_view formulaBegins = L"=+-@\uFF1D\uFF0B\uFF0D\uFF20";

/// The character that the user's spreadsheet splits cells at. One that is the decimal mark too, or could not be told
/// from a cell's own text, gives way to the semicolon, as it does in the spreadsheet.
wchar_t Separator(const Locale& locale, wchar_t decimalMark)
{
    const std::wstring list = locale.GetLocaleString(locale_constant::listSeparator);
    if (list.empty()) {
        return decimalMark == L',' ? L';' : L',';
    }
    const wchar_t first = list.front();
    const bool usable = first != decimalMark && first != L'"' && first != L'-' && first != L'\r' && first != L'\n' &&
                        first != L' ' && std::iswalnum(static_cast<wint_t>(first)) == 0;
    return usable ? first : L';';
}

bool IsNumber(std::wstring_view text, wchar_t decimalMark)
{
    try {
        ParseNumber(text, decimalMark);
        return true;
    } catch (const RaisedError&) {
        return false;
    }
}

bool IsBlank(wchar_t c)
{
    return static_cast<char32_t>(c) <= L' ' || c == L'\u00A0' || c == L'\u3000';
}

}  // namespace

SpreadsheetText::SpreadsheetText(const Locale& locale)
    : decimalMark_(locale.DecimalMark()), separator_(Separator(locale, decimalMark_)), bytes_(byteOrderMark)
{
}

/// Programs that trim what they import see the first character that is not blank.
bool SpreadsheetText::LooksLikeFormula(std::wstring_view text) const
{
    const auto first = std::ranges::find_if_not(text, IsBlank);
    if (first == text.end() || formulaBegins.find(*first) == std::wstring_view::npos) {
        return false;
    }
    return text.find_first_not_of(L'-') != std::wstring_view::npos && !IsNumber(text, decimalMark_);
}

void SpreadsheetText::Cell(std::wstring_view text)
{
    if (rowHasCells_) {
        row_ += separator_;
    }
    rowHasCells_ = true;

    const bool formula = LooksLikeFormula(text);
    const auto needsQuotes = [this](wchar_t c) { return c == separator_ || c == L'"' || c == L'\r' || c == L'\n'; };
    const bool quoted =
        !text.empty() && (std::ranges::any_of(text, needsQuotes) || IsBlank(text.front()) || IsBlank(text.back()));
    if (quoted) {
        row_ += L'"';
    }
    if (formula) {
        row_ += L'\'';
    }
    for (const wchar_t c : text) {
        if (c == L'"') {
            row_ += c;
        }
        const bool control = static_cast<char32_t>(c) < L' ' && c != L'\t' && c != L'\r' && c != L'\n';
        row_ += control ? L' ' : c;
    }
    if (quoted) {
        row_ += L'"';
    }
}

void SpreadsheetText::EndRow()
{
    row_ += L"\r\n";
    bytes_ += ToUtf8(row_);
    row_.clear();
    rowHasCells_ = false;
}

}  // namespace tvn2x
