#include <windowsx.h>

#include <algorithm>

#include "editor/win32/ControlIds.h"
#include "editor/win32/Menus.h"
#include "editor/win32/frmFreqList.h"
#include "util/FloatingPoint.h"

namespace tvn2x {
namespace {

constexpr UINT dpiChanged = 0x02E0;  // WM_DPICHANGED, of later systems than the headers are asked for

bool IsPushButton(HWND window)
{
    return (SendMessageW(window, WM_GETDLGCODE, 0, 0) & (DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)) != 0;
}

}  // namespace

/// Keys that the system's dialogs do not know, or know otherwise. True where one is taken.
bool frmFreqList::BeforeDialog(const MSG& message)
{
    if (!IsChild(dialog_.Get(), message.hwnd)) {
        return false;
    }
    try {
        if (message.message == WM_SYSCHAR) {
            return OnAccessKey(static_cast<wchar_t>(message.wParam));
        }
        if (message.message != WM_KEYDOWN) {
            return false;
        }
        if (GetKeyState(VK_CONTROL) < 0) {
            return OnPageKey(message.wParam) || OnUndoKey(message.wParam, message.hwnd);
        }
        if (message.wParam == VK_RETURN && IsPushButton(message.hwnd)) {
            SendMessageW(message.hwnd, BM_CLICK, 0, 0);
            return true;
        }
    } catch (...) {
        OnException();
    }
    return false;
}

bool frmFreqList::OnPageKey(WPARAM key)
{
    const bool isTab = key == VK_TAB;
    if (!isTab && key != VK_NEXT && key != VK_PRIOR) {
        return false;
    }
    const bool backwards = isTab ? GetKeyState(VK_SHIFT) < 0 : key == VK_PRIOR;
    const int32_t page = static_cast<int32_t>(editor_.CurrentPage()) + (backwards ? pageCount - 1 : 1);
    editor_.SelectPage(static_cast<Page>(page % pageCount));
    return true;
}

/// What was done to the lists can be undone wherever no text has the keyboard; there the key is the text's own.
bool frmFreqList::OnUndoKey(WPARAM key, HWND focused)
{
    const bool isText = (SendMessageW(focused, WM_GETDLGCODE, 0, 0) & (DLGC_HASSETSEL | DLGC_WANTCHARS)) != 0;
    if (isText || (key != L'Z' && key != L'Y')) {
        return false;
    }
    const Grid grid = editor_.CurrentPage() == Page::parameters ? Grid::parameters : Grid::channels;
    editor_.Execute(key == L'Z' ? RowCommand::undo : RowCommand::redo, grid);
    return true;
}

bool frmFreqList::OnAccessKey(wchar_t letter)
{
    if (const auto target = accessKeys_.Find(editor_.CurrentPage(), letter, GetFocus())) {
        if (target->heading) {
            editor_.HeadingAccessKey(*target->heading);
            return true;
        }
        SetFocus(target->control);
        const LRESULT code = SendMessageW(target->control, WM_GETDLGCODE, 0, 0);
        if ((code & (DLGC_BUTTON | DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)) != 0) {
            SendMessageW(target->control, BM_CLICK, 0, 0);
        } else if ((code & DLGC_HASSETSEL) != 0) {
            SendMessageW(target->control, EM_SETSEL, 0, -1);
        }
        return true;
    }
    const auto page = AccessKeys::FindTab(letter);
    if (!page) {
        return false;
    }
    SetFocus(tabs_);
    editor_.SelectPage(*page);
    return true;
}

INT_PTR CALLBACK frmFreqList::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept
{
    const OwnFloatingPoint floatingPoint;
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, DWLP_USER, lParam);
        return FALSE;
    }
    auto* const self = reinterpret_cast<frmFreqList*>(GetWindowLongPtrW(window, DWLP_USER));
    if (!self) {
        return FALSE;
    }
    try {
        return self->OnDialogMessage(window, message, wParam, lParam);
    } catch (...) {
        self->OnException();
        return TRUE;
    }
}

INT_PTR frmFreqList::OnDialogMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    const bool isFrame = window == dialog_.Get();
    switch (message) {
        case WM_COMMAND:
            OnCommand(LOWORD(wParam), HIWORD(wParam), reinterpret_cast<HWND>(lParam));
            return TRUE;
        case WM_NOTIFY:
            return OnNotify(window, *reinterpret_cast<const NMHDR*>(lParam));
        case WM_LBUTTONDOWN:
            if (!isFrame) {
                editor_.BackgroundClicked();
            }
            return !isFrame;
        case WM_SIZE:
            if (isFrame && tabs_ && wParam != SIZE_MINIMIZED) {
                Arrange();
            }
            return FALSE;
        case WM_GETMINMAXINFO:
            if (isFrame) {
                reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {smallest_.cx, smallest_.cy};
            }
            return FALSE;
        case dpiChanged:
            if (isFrame) {
                ScaleTo(LOWORD(wParam));
                Move(window, *reinterpret_cast<const RECT*>(lParam));
                Arrange();
            }
            return isFrame;
        case WM_THEMECHANGED:
        case WM_SYSCOLORCHANGE:
            if (isFrame) {
                OnColoursChanged();
            }
            return FALSE;
        case WM_CLOSE:
            if (isFrame) {
                editor_.CloseSign();
            }
            return TRUE;
        default:
            return FALSE;
    }
}

void frmFreqList::OnColoursChanged()
{
    look_.Renew(font_.Get());
    for (const Subclass& each : subclasses_) {
        SendMessageW(each.window, WM_SYSCOLORCHANGE, 0, 0);
    }
    RedrawWindow(dialog_.Get(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

INT_PTR frmFreqList::OnNotify(HWND window, const NMHDR& notice)
{
    if (notice.code == static_cast<UINT>(TCN_SELCHANGE) && notice.hwndFrom == tabs_) {
        editor_.SelectPage(static_cast<Page>(SendMessageW(tabs_, TCM_GETCURSEL, 0, 0)));
        return TRUE;
    }
    if (notice.code == EN_PROTECTED) {
        const LRESULT answer = notes_.OnProtected(reinterpret_cast<const ENPROTECTED&>(notice));
        SetWindowLongPtrW(window, DWLP_MSGRESULT, answer);
        return TRUE;
    }
    return FALSE;
}

/// The numbers of the controls tell what they are: see ControlIds.h.
void frmFreqList::OnCommand(int id, int event, HWND control)
{
    using namespace control_id;
    if (id == ok && event == BN_CLICKED) {
        return editor_.Ok();
    }
    if (id == cancel) {
        // A cell that is open for want of memory does not hold up who has clicked.
        return editor_.CancelIsCancel() || GetFocus() == control ? editor_.Cancel() : void();
    }
    if (id == notes && event == EN_CHANGE) {
        return notes_.OnChanged();
    }
    if ((id == protect || id == unprotect) && event == BN_CLICKED) {
        return editor_.NotesButton(id == protect);
    }
    const auto in = [id](int first, int count) { return id >= first && id < first + count; };
    if (in(Of(Choice{}), choiceCount) && event == CBN_SELCHANGE) {
        return editor_.SelectItem(static_cast<Choice>(id - Of(Choice{})),
                                  static_cast<int32_t>(SendMessageW(control, CB_GETCURSEL, 0, 0)));
    }
    if (in(Of(Field{}), fieldCount) && event == EN_CHANGE && !updating_) {
        return editor_.TextChanged(static_cast<Field>(id - Of(Field{})), WindowText(control));
    }
    if (in(Of(Check{}), checkCount) && event == BN_CLICKED) {
        return editor_.SetCheck(static_cast<Check>(id - Of(Check{})),
                                SendMessageW(control, BM_GETCHECK, 0, 0) == BST_CHECKED);
    }
    for (const Grid grid : {Grid::parameters, Grid::channels}) {
        if (in(Of(RowCommand{}, grid), rowButtonCount) && event == BN_CLICKED) {
            return editor_.Execute(static_cast<RowCommand>(id - Of(RowCommand{}, grid)), grid);
        }
        if (id == CellEditor(grid) && event == EN_CHANGE) {
            return Pane(grid).OnCellTextChanged();
        }
    }
}

/// A closed drop-down list keeps its setting when the wheel turns.
bool frmFreqList::IsClosedChoice(HWND control) const
{
    return std::ranges::find(choices_, control) != choices_.end() &&
           SendMessageW(control, CB_GETDROPPEDSTATE, 0, 0) == FALSE;
}

void frmFreqList::OnContextMenu(const Subclass& control, LPARAM lParam)
{
    POINT place{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    const bool byKey = lParam == -1;
    if (control.control == Control::notes) {
        return notes_.ShowMenu(dialog_.Get(), byKey ? nullptr : &place);
    }
    const auto grid = static_cast<Grid>(control.number);
    if (byKey) {
        const RECT cell = Pane(grid).CellRect({editor_.SelectedRow(grid), editor_.CurrentColumn(grid)});
        place = {cell.left, cell.bottom};
        ClientToScreen(control.window, &place);
    }
    if (const auto command = ChooseCommand(dialog_.Get(), place, editor_, grid)) {
        editor_.Execute(*command, grid);
    }
}

LRESULT frmFreqList::OnMessage(const Subclass& control, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_SETFOCUS || message == WM_KILLFOCUS) {
        const LRESULT result = control.Default(message, wParam, lParam);
        for (const GridPane* const pane : {&channels_, &parameters_}) {
            InvalidateRect(pane->Window(), nullptr, FALSE);
        }
        if (message == WM_SETFOCUS && !closed_) {
            const Column column = control.control == Control::cellEditor ? editor_.CurrentEdit().column
                                  : control.control == Control::list
                                      ? editor_.CurrentColumn(static_cast<Grid>(control.number))
                                      : control.number;
            editor_.FocusMoved(control.control, column);
            ShowDefaultButton();
        }
        return result;
    }
    if (message == WM_MOUSEWHEEL && IsClosedChoice(control.window)) {
        return 0;
    }
    if (message == WM_CONTEXTMENU && (control.control == Control::list || control.control == Control::notes)) {
        OnContextMenu(control, lParam);
        return 0;
    }
    switch (control.control) {
        case Control::list:
            return Pane(static_cast<Grid>(control.number)).OnListMessage(control, message, wParam, lParam);
        case Control::cellEditor:
            return Pane(static_cast<Grid>(control.number)).OnCellEditorMessage(control, message, wParam, lParam);
        case Control::notes:
            return notes_.OnMessage(control, message, wParam, lParam);
        case Control::defaultSymbolRate:
        case Control::maxSettlingTime:
            if (message == WM_CHAR &&
                !editor_.FieldChar(static_cast<Field>(control.number), static_cast<wchar_t>(wParam))) {
                return 0;
            }
            break;
        default:
            break;
    }
    return control.Default(message, wParam, lParam);
}

}  // namespace tvn2x
