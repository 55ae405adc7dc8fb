#include "editor/win32/FormDialog.h"

#include <commctrl.h>

#include <algorithm>
#include <exception>
#include <utility>

#include "editor/win32/DialogTemplate.h"
#include "editor/win32/GridPane.h"
#include "editor/win32/Theme.h"
#include "util/FloatingPoint.h"
#include "util/RaisedError.h"

namespace tvn2x {
namespace {

using dialog_unit::gap;
using dialog_unit::margin;

// Dialog units.
constexpr int pitch = 18;
constexpr int labelWidth = 96;
constexpr int fieldWidth = 84;
constexpr int fieldHeight = 13;
constexpr int faultHeight = 20;
constexpr int buttonWidth = 52;
constexpr int buttonHeight = 14;
constexpr int width = margin + labelWidth + gap + fieldWidth + margin;

}  // namespace

void FormDialog::Show(HWND owner)
{
    EmptyTemplate empty;
    empty.head.style = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME;
    const INT_PTR result = DialogBoxIndirectParamW(OwnModule(), &empty.head, owner, &FormDialog::Procedure,
                                                   reinterpret_cast<LPARAM>(this));
    if (exception_) {
        std::rethrow_exception(exception_);
    }
    if (result < 0) {
        throw RaisedError(HRESULT_FROM_WIN32(GetLastError()), L"clsSetup.Edit", L"A dialog cannot be created");
    }
}

HWND FormDialog::Add(const wchar_t* windowClass, const std::wstring& text, DWORD style, int id, const Area& area)
{
    const RECT place = InPixels(area, metrics_, {});
    const DWORD exStyle = windowClass == std::wstring_view(WC_EDITW) ? WS_EX_CLIENTEDGE : 0;
    const HWND control = CreateWindowExW(exStyle, windowClass, text.c_str(), WS_CHILD | WS_VISIBLE | style, place.left,
                                         place.top, place.right - place.left, place.bottom - place.top, window_,
                                         reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), OwnModule(), nullptr);
    if (!control) {
        throw RaisedError(HRESULT_FROM_WIN32(GetLastError()), L"clsSetup.Edit", L"A control cannot be created");
    }
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font_), FALSE);
    return control;
}

void FormDialog::Fill(HWND window)
{
    window_ = window;
    SetWindowTextW(window, form_.title.c_str());
    constexpr int noCommand = 0xFFFF;
    constexpr int fieldLeft = margin + labelWidth + gap;
    int top = margin;
    for (const Form::Entry& entry : form_.entries) {
        Add(WC_STATICW, entry.label, SS_CENTERIMAGE, noCommand, {margin, top, margin + labelWidth, top + fieldHeight});
        fields_.push_back(Add(WC_EDITW, entry.text, WS_TABSTOP | ES_AUTOHSCROLL, noCommand,
                              {fieldLeft, top, fieldLeft + fieldWidth, top + fieldHeight}));
        top += pitch;
    }
    fault_ = Add(WC_STATICW, L"", 0, noCommand, {margin, top, width - margin, top + faultHeight});
    top += faultHeight + gap;
    constexpr int cancelLeft = width - margin - buttonWidth;
    constexpr int acceptLeft = cancelLeft - gap - buttonWidth;
    Add(WC_BUTTONW, form_.accept, WS_TABSTOP | BS_DEFPUSHBUTTON, IDOK,
        {acceptLeft, top, acceptLeft + buttonWidth, top + buttonHeight});
    Add(WC_BUTTONW, L"Cancel", WS_TABSTOP, IDCANCEL, {cancelLeft, top, cancelLeft + buttonWidth, top + buttonHeight});
    Place(GetWindow(window, GW_OWNER), top + buttonHeight + margin);
    SetFocus(fields_.front());
    SendMessageW(fields_.front(), EM_SETSEL, 0, -1);
}

/// In the middle of its owner.
void FormDialog::Place(HWND owner, int height) const
{
    RECT size{0, 0, metrics_.X(width), metrics_.Y(height)};
    AdjustWindowRectEx(&size, static_cast<DWORD>(GetWindowLongPtrW(window_, GWL_STYLE)), FALSE,
                       static_cast<DWORD>(GetWindowLongPtrW(window_, GWL_EXSTYLE)));
    RECT around{};
    GetWindowRect(owner, &around);
    const LONG left = std::max<LONG>((around.left + around.right - (size.right - size.left)) / 2, 0);
    const LONG top = std::max<LONG>((around.top + around.bottom - (size.bottom - size.top)) / 2, 0);
    Move(window_, {left, top, left + size.right - size.left, top + size.bottom - size.top});
}

void FormDialog::Accept()
{
    std::vector<std::wstring> answers;
    for (const HWND field : fields_) {
        answers.push_back(WindowText(field));
    }
    const std::wstring fault = take_(answers);
    if (fault.empty()) {
        EndDialog(window_, IDOK);
        return;
    }
    SetWindowTextW(fault_, fault.c_str());
    NotifyWinEvent(EVENT_OBJECT_NAMECHANGE, fault_, OBJID_WINDOW, CHILDID_SELF);
    MessageBeep(MB_ICONWARNING);
}

INT_PTR CALLBACK FormDialog::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept
{
    const OwnFloatingPoint floatingPoint;
    auto* self =
        reinterpret_cast<FormDialog*>(message == WM_INITDIALOG ? lParam : GetWindowLongPtrW(window, DWLP_USER));
    if (!self) {
        return FALSE;
    }
    try {
        switch (message) {
            case WM_INITDIALOG:
                SetWindowLongPtrW(window, DWLP_USER, lParam);
                self->Fill(window);
                return FALSE;  // the keyboard is where it belongs
            case WM_COMMAND:
                if (LOWORD(wParam) == IDOK) {
                    self->Accept();
                } else if (LOWORD(wParam) == IDCANCEL) {
                    EndDialog(window, IDCANCEL);
                }
                return TRUE;
            case WM_CLOSE:
                EndDialog(window, IDCANCEL);
                return TRUE;
            default:
                return FALSE;
        }
    } catch (...) {
        self->exception_ = std::current_exception();
        EndDialog(window, IDCANCEL);
        return TRUE;
    }
}

}  // namespace tvn2x
