#include "editor/ClipboardTable.h"

#include <algorithm>

namespace tvn2x {
namespace {

constexpr std::wstring_view separators = L"\t\r\n";

/// Takes a cell between quotation marks from the front; false where the text does not begin with a whole one.
bool TakeQuoted(std::wstring_view& text, std::wstring& cell)
{
    if (!text.starts_with(L'"')) {
        return false;
    }
    std::wstring content;
    for (size_t at = 1; at < text.size(); ++at) {
        if (text[at] != L'"') {
            content += text[at];
        } else if (at + 1 < text.size() && text[at + 1] == L'"') {
            content += text[at++];
        } else if (at + 1 == text.size() || separators.find(text[at + 1]) != separators.npos) {
            text.remove_prefix(at + 1);
            cell = std::move(content);
            return true;
        } else {
            return false;
        }
    }
    return false;
}

void TakeLineEnd(std::wstring_view& text)
{
    text.remove_prefix(text.starts_with(L"\r\n") ? 2 : 1);
}

}  // namespace

Table ReadTable(std::wstring_view text)
{
    text = text.substr(0, text.find(L'\0'));
    Table table;
    while (!text.empty()) {
        std::vector<std::wstring>& row = table.emplace_back();
        for (bool isRow = true; isRow;) {
            std::wstring& cell = row.emplace_back();
            if (!TakeQuoted(text, cell)) {
                const size_t length = std::min(text.find_first_of(separators), text.size());
                cell = text.substr(0, length);
                text.remove_prefix(length);
            }
            isRow = text.starts_with(L'\t');
            text.remove_prefix(isRow ? 1 : 0);
        }
        if (!text.empty()) {
            TakeLineEnd(text);
        }
    }
    return table;
}

std::wstring WriteTable(const Table& table)
{
    std::wstring text;
    for (const std::vector<std::wstring>& row : table) {
        for (size_t index = 0; index < row.size(); ++index) {
            text += index == 0 ? L"" : L"\t";
            const std::wstring& cell = row[index];
            if (cell.find_first_of(separators) == cell.npos && !cell.starts_with(L'"')) {
                text += cell;
                continue;
            }
            text += L'"';
            for (const wchar_t each : cell) {
                text += each == L'"' ? L"\"\"" : std::wstring(1, each);
            }
            text += L'"';
        }
        text += L"\r\n";
    }
    return text;
}

bool IsRange(std::wstring_view text)
{
    text = text.substr(0, text.find(L'\0'));
    if (text.ends_with(L'\n')) {
        text.remove_suffix(1);
    }
    if (text.ends_with(L'\r')) {
        text.remove_suffix(1);
    }
    return text.find_first_of(separators) != text.npos;
}

}  // namespace tvn2x
