// The setup editor's window with many channels: how long until it stands there painted, and until the next page of
// channels does. Needs a screen.

#include <initguid.h>

#include "Race.h"
#include "editor/win32/ControlIds.h"
#include "editor/win32/frmFreqList.h"
#include "util/RaisedError.h"

namespace {

using namespace tvn2x;
using namespace tvn2x::bench;

constexpr int32_t manyChannels = 5000;

SetupDocument Document(int32_t channels)
{
    SetupDocument document;
    document.ListSize(channels);
    for (int32_t channel = 1; channel <= channels; ++channel) {
        document.Frequency(channel, 100 + 0.125 * channel);
        document.SymbolRate(channel, 6.9);
        document.UserField(channel, L"Channel " + std::to_wstring(channel));
    }
    return document;
}

void PaintAll(HWND window)
{
    RedrawWindow(window, nullptr, nullptr, RDW_ALLCHILDREN | RDW_UPDATENOW);
    GdiFlush();
}

HWND ListOf(HWND dialog, Column column)
{
    HWND list = nullptr;
    for (HWND page = GetWindow(dialog, GW_CHILD); page && !list; page = GetWindow(page, GW_HWNDNEXT)) {
        list = GetDlgItem(page, control_id::List(column));
    }
    return list;
}

/// Opens the editor, does something in it once it is painted, and closes it.
class Session
{
public:
    Session(SetupDocument& document, std::function<void(HWND)> work) : work_(std::move(work))
    {
        const HWND helper = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
        SetWindowLongPtrW(helper, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        SetWindowLongPtrW(helper, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Session::Procedure));
        PostMessageW(helper, WM_APP, 0, 0);
        EditSetup(document, SystemLocale());
        DestroyWindow(helper);
    }

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        if (message != WM_APP) {
            return DefWindowProcW(window, message, wParam, lParam);
        }
        const HWND dialog = GetAncestor(GetActiveWindow(), GA_ROOT);
        PaintAll(dialog);
        reinterpret_cast<Session*>(GetWindowLongPtrW(window, GWLP_USERDATA))->work_(dialog);
        PostMessageW(dialog, WM_CLOSE, 0, 0);
        return 0;
    }

    std::function<void(HWND)> work_;
};

void RaceOpening()
{
    SetupDocument many = Document(manyChannels);
    SetupDocument one = Document(1);
    Race race("The setup editor opened, painted and closed");
    race.Add("5,000 channels", [&] { Session(many, [](HWND) {}); });
    race.Add("1 channel", [&] { Session(one, [](HWND) {}); });
    race.Run(9);
}

void RaceScrolling()
{
    SetupDocument many = Document(manyChannels);
    Session(many, [](HWND dialog) {
        constexpr int frequenciesPage = static_cast<int>(Page::frequencies);
        const HWND tabs = GetDlgItem(dialog, control_id::tabs);
        RECT tab{};
        SendMessageW(tabs, TCM_GETITEMRECT, frequenciesPage, reinterpret_cast<LPARAM>(&tab));
        const LPARAM point = MAKELPARAM(tab.left + 4, tab.top + 4);
        SendMessageW(tabs, WM_LBUTTONDOWN, MK_LBUTTON, point);
        SendMessageW(tabs, WM_LBUTTONUP, 0, point);
        PaintAll(dialog);
        const HWND list = ListOf(dialog, MP_SYMBOLRATE);
        const auto scroll = [&](WPARAM code) {
            const LRESULT before = SendMessageW(list, LB_GETTOPINDEX, 0, 0);
            SendMessageW(list, WM_VSCROLL, code, 0);
            if (SendMessageW(list, LB_GETTOPINDEX, 0, 0) == before) {
                SendMessageW(list, WM_VSCROLL, SB_TOP, 0);
            }
            PaintAll(dialog);
        };
        constexpr double aFrame = 1e6 / 60;
        Race race("5,000 channels scrolled in step, all three lists painted");
        race.Add("by a page", [&] { scroll(SB_PAGEDOWN); });
        race.Add("by a row", [&] { scroll(SB_LINEDOWN); });
        race.Run(9, aFrame);
    });
}

}  // namespace

int main(int argc, char** argv)
{
    try {
        RaceOpening();
        RaceScrolling();
    } catch (const RaisedError& error) {
        std::fprintf(stderr, "%ls\n", error.description.c_str());
        return 1;
    }
    return Finish(argc, argv);
}
