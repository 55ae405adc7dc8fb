#include "editor/win32/Layout.h"

#include <iterator>
#include <string_view>

#include "editor/win32/Handles.h"

namespace tvn2x {

Metrics::Metrics(HFONT font)
{
    constexpr std::wstring_view letters = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    const ScreenContext screen(font);
    TEXTMETRICW metrics{};
    SIZE size{};
    GetTextMetricsW(screen.Get(), &metrics);
    GetTextExtentPoint32W(screen.Get(), letters.data(), static_cast<int>(letters.size()), &size);
    averageWidth_ = (size.cx / 26 + 1) / 2;
    lineHeight_ = metrics.tmHeight;
}

RECT InPixels(const Area& area, const Metrics& metrics, SIZE parent)
{
    const auto x = [&](int units) { return metrics.X(units) + (units < 0 ? parent.cx : 0); };
    const auto y = [&](int units) { return metrics.Y(units) + (units < 0 ? parent.cy : 0); };
    return {x(area.left), y(area.top), x(area.right), y(area.bottom)};
}

void Layout::Apply(const Metrics& metrics, SIZE parent) const
{
    for (const Place& place : places_) {
        RECT area = InPixels(place.area, metrics, parent);
        wchar_t name[8]{};
        GetClassNameW(place.control, name, static_cast<int>(std::size(name)));
        if (place.label && std::wstring_view(name) == L"Edit") {
            // Room for its text, which it shows at its upper edge: so the text is in the middle.
            area.bottom = area.top + metrics.LineHeight() + 2 * GetSystemMetrics(SM_CYEDGE) + 2;
        }
        Move(place.control, area);
        if (place.label) {
            const HWND page = GetParent(place.label);
            const RECT field = PlaceIn(page, place.control);
            const RECT label = PlaceIn(page, place.label);
            Move(place.label, {label.left, field.top, label.right, field.bottom});
        }
    }
}

RECT PlaceIn(HWND parent, HWND window)
{
    RECT place{};
    GetWindowRect(window, &place);
    MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&place), 2);
    return place;
}

SIZE ClientSize(HWND window)
{
    RECT client{};
    GetClientRect(window, &client);
    return {client.right, client.bottom};
}

void Move(HWND window, const RECT& to)
{
    SetWindowPos(window, nullptr, to.left, to.top, to.right - to.left, to.bottom - to.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace tvn2x
