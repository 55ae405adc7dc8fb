// The setup editor's window with many channels: how long until it stands there painted, until the next page of channels
// does, and until a command on all of them is done and to be seen. Needs a screen.

#include <initguid.h>

#include <utility>

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

/// The list of channels, on its page that is shown from now on.
HWND ShowChannels(HWND dialog)
{
    const HWND tabs = GetDlgItem(dialog, control_id::tabs);
    RECT tab{};
    SendMessageW(tabs, TCM_GETITEMRECT, static_cast<WPARAM>(Page::frequencies), reinterpret_cast<LPARAM>(&tab));
    const LPARAM point = MAKELPARAM(tab.left + 4, tab.top + 4);
    SendMessageW(tabs, WM_LBUTTONDOWN, MK_LBUTTON, point);
    SendMessageW(tabs, WM_LBUTTONUP, 0, point);
    HWND list = nullptr;
    for (HWND page = GetWindow(dialog, GW_CHILD); page && !list; page = GetWindow(page, GW_HWNDNEXT)) {
        list = GetDlgItem(page, control_id::List(Grid::channels));
    }
    SetFocus(list);
    PaintAll(dialog);
    return list;
}

/// A key with Ctrl held, and what it changes painted.
void PressControl(HWND dialog, HWND list, WPARAM key, bool shift = false)
{
    BYTE keys[256]{};
    keys[VK_CONTROL] = 0x80;
    keys[VK_SHIFT] = shift ? 0x80 : 0;
    SetKeyboardState(keys);
    SendMessageW(list, WM_KEYDOWN, key, 1);
    keys[VK_CONTROL] = 0;
    keys[VK_SHIFT] = 0;
    SetKeyboardState(keys);
    PaintAll(dialog);
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
        // The close sign would ask whether what the commands have done may be lost.
        PostMessageW(GetDlgItem(dialog, control_id::cancel), BM_CLICK, 0, 0);
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
        const HWND list = ShowChannels(dialog);
        const auto scroll = [&](WPARAM code) {
            const int before = GetScrollPos(list, SB_VERT);
            SendMessageW(list, WM_VSCROLL, code, 0);
            if (GetScrollPos(list, SB_VERT) == before) {
                SendMessageW(list, WM_VSCROLL, SB_TOP, 0);
            }
            PaintAll(dialog);
        };
        constexpr double aFrame = 1e6 / 60;
        Race race("5,000 channels scrolled and painted");
        race.Add("by a page", [&] { scroll(SB_PAGEDOWN); });
        race.Add("by a row", [&] { scroll(SB_LINEDOWN); });
        race.Run(9, aFrame);
    });
}

/// Each command on all channels, to be done and painted within a tenth of a second.
void RaceCommands(int32_t count)
{
    SetupDocument many = Document(count);
    Session(many, [count](HWND dialog) {
        constexpr double tenth = 1e5;
        const HWND list = ShowChannels(dialog);
        const auto race = [&](const std::string& what, const std::function<void()>& run) {
            Race contest(what + " " + std::to_string(count) + " channels");
            contest.Add("done and painted", run);
            contest.Run(7, tenth);
        };
        const auto press = [&](WPARAM key, bool shift = false) { PressControl(dialog, list, key, shift); };
        race("Select", [&] { press('A'); });
        press('C');
        race("Paste over", [&] { press('V'); });
        const auto inTurn = [&](WPARAM one, WPARAM other) {
            return [&press, keys = std::pair(one, other)]() mutable {
                press(keys.first);
                std::swap(keys.first, keys.second);
            };
        };
        race("Undo or redo", inTurn('Z', 'Y'));
        race("Sort", [&] { press('O', true); });
        race("Fill down or undo", inTurn('D', 'Z'));
    });
}

}  // namespace

int main(int argc, char** argv)
{
    try {
        RaceOpening();
        RaceScrolling();
        RaceCommands(manyChannels);
        RaceCommands(30000);
    } catch (const RaisedError& error) {
        std::fprintf(stderr, "%ls\n", error.description.c_str());
        return 1;
    }
    return Finish(argc, argv);
}
