#include "editor/win32/AccessKeys.h"

#include "editor/Choices.h"

namespace tvn2x {
namespace {

wchar_t UpperCase(wchar_t letter)
{
    return static_cast<wchar_t>(reinterpret_cast<UINT_PTR>(CharUpperW(reinterpret_cast<wchar_t*>(UINT_PTR{letter}))));
}

/// The letter behind "&", 0 where there is none.
wchar_t LetterOf(std::wstring_view caption)
{
    const size_t mark = caption.find(L'&');
    return mark + 1 < caption.size() && mark != caption.npos ? UpperCase(caption[mark + 1]) : L'\0';
}

}  // namespace

void AccessKeys::Add(Page page, std::wstring_view caption, AccessTarget target)
{
    pages_[static_cast<size_t>(page)].push_back({LetterOf(caption), target});
}

std::optional<AccessTarget> AccessKeys::Find(Page page, wchar_t letter, HWND focused) const
{
    const std::vector<Entry>& entries = pages_[static_cast<size_t>(page)];
    std::optional<AccessTarget> first;
    bool isBehind = false;
    for (const Entry& entry : entries) {
        if (entry.letter == UpperCase(letter)) {
            if (isBehind) {
                return entry.target;
            }
            if (!first) {
                first = entry.target;
            }
        }
        isBehind = isBehind || entry.target.control == focused;
    }
    return first;
}

std::optional<Page> AccessKeys::FindTab(wchar_t letter)
{
    for (int32_t page = 0; page < pageCount; ++page) {
        if (LetterOf(CaptionOf(static_cast<Page>(page))) == UpperCase(letter)) {
            return static_cast<Page>(page);
        }
    }
    return std::nullopt;
}

}  // namespace tvn2x
