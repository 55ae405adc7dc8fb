#include "editor/win32/ToolTip.h"

#include "editor/win32/Theme.h"

namespace tvn2x {
namespace {

TTTOOLINFOW InfoOf(HWND window)
{
    TTTOOLINFOW info{};
    info.cbSize = TTTOOLINFOW_V2_SIZE;  // what every version of the controls takes
    info.hwnd = window;
    info.uId = 1;
    return info;
}

}  // namespace

void ToolTip::Create(HWND window)
{
    window_ = window;
    tip_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, L"", WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP, 0, 0, 0, 0,
                           window, nullptr, OwnModule(), nullptr);
    TTTOOLINFOW info = InfoOf(window);
    std::wstring none;
    info.lpszText = none.data();
    SendMessageW(tip_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&info));
    constexpr LPARAM widest = 600;
    SendMessageW(tip_, TTM_SETMAXTIPWIDTH, 0, widest);
}

void ToolTip::Show(const RECT& area, const std::wstring& text)
{
    TTTOOLINFOW info = InfoOf(window_);
    std::wstring shown = text;
    info.lpszText = shown.data();
    info.rect = area;
    SendMessageW(tip_, TTM_POP, 0, 0);
    SendMessageW(tip_, TTM_NEWTOOLRECTW, 0, reinterpret_cast<LPARAM>(&info));
    SendMessageW(tip_, TTM_UPDATETIPTEXTW, 0, reinterpret_cast<LPARAM>(&info));
}

void ToolTip::Pass(UINT message, WPARAM wParam, LPARAM lParam) const
{
    MSG relayed{};
    relayed.hwnd = window_;
    relayed.message = message;
    relayed.wParam = wParam;
    relayed.lParam = lParam;
    SendMessageW(tip_, TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&relayed));
}

}  // namespace tvn2x
