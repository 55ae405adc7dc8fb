#include "editor/win32/Layout.h"

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
        Move(place.control, InPixels(place.area, metrics, parent));
    }
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
