#pragma once

#include <windows.h>

#include <array>
#include <optional>
#include <string_view>
#include <vector>

#include "editor/EditorView.h"

namespace tvn2x {

/// What Alt and a letter lead to on one page.
struct AccessTarget
{
    HWND control;
    std::optional<Column> heading;  ///< of the list that is the control
};

/// The letters behind "&" in the captions. Those of a page work while it is shown, and before those of the tabs.
class AccessKeys
{
public:
    void Add(Page page, std::wstring_view caption, AccessTarget target);

    /// The target of a letter on a page. Where several have the same letter, the one behind `focused`, round and round.
    std::optional<AccessTarget> Find(Page page, wchar_t letter, HWND focused) const;
    static std::optional<Page> FindTab(wchar_t letter);

private:
    /// An underlined letter of a page, and what it goes to.
    struct Entry
    {
        wchar_t letter;
        AccessTarget target;
    };
    std::array<std::vector<Entry>, pageCount> pages_;
};

}  // namespace tvn2x
