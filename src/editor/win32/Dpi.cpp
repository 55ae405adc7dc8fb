#include "editor/win32/Dpi.h"

namespace tvn2x {
namespace {

int SystemDpi()
{
    const ScreenContext screen(nullptr);
    return GetDeviceCaps(screen.Get(), LOGPIXELSY);
}

}  // namespace

int DpiOf(HWND window)
{
    // Older systems have one resolution, and no such function.
    using Function = UINT(WINAPI*)(HWND);
    const auto function = reinterpret_cast<Function>(
        reinterpret_cast<void (*)()>(GetProcAddress(GetModuleHandleW(L"user32.dll"), "GetDpiForWindow")));
    const UINT dpi = function ? function(window) : 0;
    return dpi != 0 ? static_cast<int>(dpi) : SystemDpi();
}

Font MessageFont(int dpi)
{
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    metrics.lfMessageFont.lfHeight = MulDiv(metrics.lfMessageFont.lfHeight, dpi, SystemDpi());
    return Font(CreateFontIndirectW(&metrics.lfMessageFont));
}

}  // namespace tvn2x
