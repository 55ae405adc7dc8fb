#pragma once

#include <windows.h>

#include <commctrl.h>
#include <oleacc.h>

#include <functional>
#include <string>
#include <thread>

#include "Client.h"
#include "editor/win32/ControlIds.h"

namespace tvn2x::client {

constexpr unsigned shift = 1, control = 2;

/// A person in front of the setup editor: opens it through ISetup on the calling thread and works in it from a thread
/// of its own, by keys and clicks. Every act returns when the dialog has dealt with it.
class EditorDriver
{
public:
    using Deeds = std::function<void(EditorDriver&)>;

    EditorDriver()
        : gui_(GetCurrentThreadId()),
          helper_(CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr)),
          settled_(CreateEventW(nullptr, FALSE, FALSE, nullptr)),
          done_(CreateEventW(nullptr, FALSE, FALSE, nullptr))
    {
        SetWindowLongPtrW(helper_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        SetWindowLongPtrW(helper_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&EditorDriver::Procedure));
    }
    EditorDriver(const EditorDriver&) = delete;
    EditorDriver& operator=(const EditorDriver&) = delete;
    ~EditorDriver()
    {
        DestroyWindow(helper_);
        CloseHandle(settled_);
        CloseHandle(done_);
    }

    /// What ISetup.Edit says to a host with unmasked exceptions when the deeds are done. A dialog that is then still
    /// open is cancelled.
    HRESULT Edit(ISetup* setup, bool& accepted, const Deeds& deeds)
    {
        VARIANT_BOOL answer = VARIANT_FALSE;
        HRESULT result = E_FAIL;
        Work([&] { result = FromUnmaskedHost([&] { return setup->Edit(&answer); }); }, deeds);
        accepted = answer != VARIANT_FALSE;
        return result;
    }

    /// The same with any way to open the dialog.
    void Work(const std::function<void()>& open, const Deeds& deeds)
    {
        if (!remembers) {
            RegDeleteKeyW(HKEY_CURRENT_USER, L"Software\\TVN2x\\Editor");
        }
        std::thread person([&] {
            Settle();  // the first message loop that runs is the dialog's
            dialog = GetAncestor(GuiState().hwndActive, GA_ROOT);
            if (IsWindow(dialog)) {
                deeds(*this);
            }
            for (int attempt = 0; attempt < 8 && IsWindow(dialog); ++attempt) {
                // A box that came before the dialog is all there is.
                const HWND box = MessageBoxWindow();
                const HWND cancel = Find(control_id::cancel);
                const bool isClick = !box && cancel;
                PostMessageW(isClick ? cancel : box ? box : dialog, isClick ? BM_CLICK : WM_CLOSE, 0, 0);
                Settle();
            }
            SetEvent(done_);
        });
        open();
        // The person may still be looking at what happened.
        while (MsgWaitForMultipleObjects(1, &done_, FALSE, INFINITE, QS_ALLINPUT) != WAIT_OBJECT_0) {
            MSG message;
            while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
                DispatchMessageW(&message);
            }
        }
        person.join();
    }

    void Type(std::wstring_view text)
    {
        for (const wchar_t each : text) {
            PostMessageW(Focus(), WM_CHAR, each, 1);
            Settle();
        }
    }
    void Press(WPARAM key, unsigned modifiers = 0)
    {
        Hold(modifiers);
        PostMessageW(Focus(), WM_KEYDOWN, key, 1);
        Settle();
        Hold(0);
    }
    void Alt(wchar_t letter)
    {
        constexpr LPARAM altIsDown = 1 << 29;
        PostMessageW(Focus(), WM_SYSCHAR, letter, altIsDown);
        Settle();
    }
    /// The mouse goes down at one place of a window and up at another, with keys held.
    void Mouse(HWND window, POINT from, POINT to, WPARAM keys = 0)
    {
        PostMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON | keys, MAKELPARAM(from.x, from.y));
        if (from.x != to.x || from.y != to.y) {
            PostMessageW(window, WM_MOUSEMOVE, MK_LBUTTON | keys, MAKELPARAM(to.x, to.y));
        }
        PostMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(to.x, to.y));
        Settle();
    }
    void Click(int id) { Mouse(Find(id), {5, 5}, {5, 5}); }
    /// The mouse on a cell, on a heading (row -1), or in front of a row (no column), with keys held.
    void ClickRow(Column column, int row, unsigned modifiers = 0)
    {
        const POINT point = PointIn(column, row);
        Mouse(List(column), point, point, (modifiers & shift ? MK_SHIFT : 0) | (modifiers & control ? MK_CONTROL : 0));
    }
    void ClickHeading(Column column) { ClickRow(column, -1); }
    RECT CellRect(Column column, int row)
    {
        RECT place{};
        Accessible(column, [&](IAccessible& grid) {
            long width = 0;
            long height = 0;
            grid.accLocation(&place.left, &place.top, &width, &height, Child(column, row));
            place.right = place.left + width;
            place.bottom = place.top + height;
        });
        MapWindowPoints(nullptr, List(column), reinterpret_cast<POINT*>(&place), 2);
        return place;
    }
    static RECT PlaceOf(HWND window)
    {
        RECT place{};
        GetWindowRect(window, &place);
        return place;
    }
    POINT PointIn(Column column, int row)
    {
        const RECT place = CellRect(column, row);
        return {place.left + (place.right - place.left) / 2, place.top + (place.bottom - place.top) / 2};
    }
    /// Does something with a grid as a screen reader sees it.
    void Accessible(Column column, const std::function<void(IAccessible&)>& work)
    {
        OnGuiThread([&] {
            IAccessible* grid = nullptr;
            AccessibleObjectFromWindow(List(column), static_cast<DWORD>(OBJID_CLIENT), IID_IAccessible,
                                       reinterpret_cast<void**>(&grid));
            if (grid) {  // there may be no memory for one
                work(*grid);
                grid->Release();
            }
        });
    }
    static VARIANT Child(Column column, int row)
    {
        VARIANT child{};
        child.vt = VT_I4;
        child.lVal = 4 + 3 * row + column % 10;
        return child;
    }
    /// What a screen reader says of a cell.
    std::wstring NameOf(Column column, int row)
    {
        Bstr name;
        Accessible(column, [&](IAccessible& grid) { grid.get_accName(Child(column, row), name.Put()); });
        return std::wstring(name.View());
    }
    void ClickTab(Page page)
    {
        RECT tab{};
        SendMessageW(Find(control_id::tabs), TCM_GETITEMRECT, static_cast<WPARAM>(page),
                     reinterpret_cast<LPARAM>(&tab));
        const POINT point{tab.left + 4, tab.top + 4};
        Mouse(Find(control_id::tabs), point, point);
    }

    /// A control of the dialog, on any page.
    HWND Find(int id) const
    {
        HWND found = GetDlgItem(dialog, id);
        for (HWND page = GetWindow(dialog, GW_CHILD); page && !found; page = GetWindow(page, GW_HWNDNEXT)) {
            found = GetDlgItem(page, id);
        }
        return found;
    }
    HWND List(Column column) const { return Find(control_id::List(GridOf(column))); }
    /// What a spreadsheet program would put there.
    void PutOnClipboard(std::wstring_view text)
    {
        OnGuiThread([&] {
            const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(wchar_t));
            *std::copy(text.begin(), text.end(), static_cast<wchar_t*>(GlobalLock(memory))) = L'\0';
            GlobalUnlock(memory);
            ASSERT_TRUE(OpenClipboard(dialog));
            EmptyClipboard();
            SetClipboardData(CF_UNICODETEXT, memory);
            CloseClipboard();
        });
    }
    HWND CellEditor(Grid grid) const { return Find(control_id::CellEditor(grid)); }
    HWND Focus() const { return GuiState().hwndFocus; }
    int FocusId() const { return GetDlgCtrlID(Focus()); }
    Page CurrentPage() const { return static_cast<Page>(SendMessageW(Find(control_id::tabs), TCM_GETCURSEL, 0, 0)); }
    long Rows(Column column)
    {
        long cells = 0;
        Accessible(column, [&](IAccessible& grid) { grid.get_accChildCount(&cells); });
        return cells / 3 - 1;
    }
    long TopRow(Column column) const { return GetScrollPos(List(column), SB_VERT); }
    static std::wstring TextOf(HWND window)
    {
        std::wstring text(static_cast<size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)) + 1, L'\0');
        text.resize(
            static_cast<size_t>(SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
        return text;
    }
    std::wstring FocusText() const { return TextOf(Focus()); }

    /// The message box that is open over the dialog, null for none.
    HWND MessageBoxWindow() const
    {
        const HWND popup = GetLastActivePopup(dialog);
        return popup != dialog && IsWindowVisible(popup) ? popup : nullptr;
    }
    /// Closes the message box with Enter: "title|text", "" where there is none.
    std::wstring AnswerMessageBox()
    {
        const HWND box = MessageBoxWindow();
        if (!box) {
            return {};
        }
        constexpr int textOfBox = 0xFFFF;
        const std::wstring message = TextOf(box) + L"|" + TextOf(GetDlgItem(box, textOfBox));
        PostMessageW(Focus(), WM_KEYDOWN, VK_RETURN, 1);
        Settle();
        return message;
    }

    /// What a list tells of the cell under the mouse.
    std::wstring TipOf(Column column, int row)
    {
        const POINT point = PointIn(column, row);
        wchar_t text[200] = L"";
        OnGuiThread([&] {
            SendMessageW(List(column), WM_MOUSEMOVE, 0, MAKELPARAM(point.x, point.y));
            TTTOOLINFOW info{};
            info.cbSize = TTTOOLINFOW_V2_SIZE;
            info.hwnd = List(column);
            info.uId = 1;
            info.lpszText = text;
            for (HWND tip = nullptr; !*text && (tip = FindWindowExW(nullptr, tip, TOOLTIPS_CLASSW, nullptr));) {
                SendMessageW(tip, TTM_GETTEXTW, std::size(text), reinterpret_cast<LPARAM>(&info));
            }
        });
        return text;
    }

    /// Runs something on the dialog's thread, between two messages.
    void OnGuiThread(const std::function<void()>& work)
    {
        SendMessageW(helper_, WM_APP + 1, 0, reinterpret_cast<LPARAM>(&work));
    }

    HWND dialog = nullptr;
    bool remembers = false;  ///< the dialog opens as it was left

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        auto* const self = reinterpret_cast<EditorDriver*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (message == WM_APP) {
            SetEvent(self->settled_);
        } else if (message == WM_APP + 1) {
            (*reinterpret_cast<const std::function<void()>*>(lParam))();
        } else {
            return DefWindowProcW(window, message, wParam, lParam);
        }
        return 0;
    }

    /// Returns when what was posted so far has been dealt with, the characters that keys make among it.
    void Settle() const
    {
        for (int round = 0; round < 2; ++round) {
            PostMessageW(helper_, WM_APP, 0, 0);
            WaitForSingleObject(settled_, INFINITE);
        }
    }

    GUITHREADINFO GuiState() const
    {
        GUITHREADINFO state{};
        state.cbSize = sizeof state;
        GetGUIThreadInfo(gui_, &state);
        return state;
    }

    void Hold(unsigned modifiers)
    {
        OnGuiThread([&] {
            BYTE keys[256]{};
            keys[VK_SHIFT] = modifiers & shift ? 0x80 : 0;
            keys[VK_CONTROL] = modifiers & control ? 0x80 : 0;
            SetKeyboardState(keys);
        });
    }

    const DWORD gui_;
    const HWND helper_;
    const HANDLE settled_;
    const HANDLE done_;
};

}  // namespace tvn2x::client
