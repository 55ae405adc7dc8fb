#include "editor/win32/frmFreqList.h"

#include <algorithm>
#include <new>

#include "editor/Choices.h"
#include "editor/EditorKeys.h"
#include "editor/win32/ControlIds.h"
#include "editor/win32/FormDialog.h"
#include "editor/win32/UserPlace.h"
#include "util/FloatingPoint.h"
#include "util/RaisedError.h"

namespace tvn2x {
namespace {

constexpr int32_t noScreen = 5;

/// Keeps a dialog's owner from taking input while the dialog is open.
class DisabledOwner
{
public:
    explicit DisabledOwner(HWND owner) : owner_(owner && IsWindowEnabled(owner) ? owner : nullptr)
    {
        if (owner_) {
            EnableWindow(owner_, FALSE);
        }
    }
    DisabledOwner(const DisabledOwner&) = delete;
    DisabledOwner& operator=(const DisabledOwner&) = delete;
    ~DisabledOwner()
    {
        if (owner_) {
            EnableWindow(owner_, TRUE);
        }
    }

private:
    HWND owner_;
};

/// The window that the calling thread's user is working in.
HWND PresentWindow()
{
    HWND window = GetActiveWindow();
    if (!window) {
        const HWND foreground = GetForegroundWindow();
        if (foreground && GetWindowThreadProcessId(foreground, nullptr) == GetCurrentThreadId()) {
            window = foreground;
        }
    }
    return window ? GetAncestor(window, GA_ROOT) : nullptr;
}

void RequireScreen()
{
    USEROBJECTFLAGS flags{};
    if (GetUserObjectInformationW(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags, nullptr) &&
        (flags.dwFlags & WSF_VISIBLE) == 0) {
        throw RaisedError(noScreen, L"clsSetup.Edit",
                          L"The setup editor needs a screen, and this process (a service, for example) has none");
    }
}

}  // namespace

void OwnedMessages::Show(std::wstring_view text, std::wstring_view title, MessageIcon icon)
{
    MessageBoxW(owner, std::wstring(text).c_str(), std::wstring(title).c_str(),
                MB_OK | (icon == MessageIcon::warning ? MB_ICONWARNING : MB_ICONINFORMATION));
}

frmFreqList::frmFreqList(SetupDocument& document, const Locale& locale)
    : editor_(document, *this, messages_, locale),
      title_(L"Setup - " + document.FileTitle()),
      font_(MessageFont(DpiOf(nullptr))),
      look_(font_.Get())
{
}

bool frmFreqList::ShowModal(HWND owner)
{
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_STANDARD_CLASSES | ICC_TAB_CLASSES | ICC_BAR_CLASSES};
    InitCommonControlsEx(&classes);
    CreateDialogs(owner, title_);
    dpi_ = DpiOf(dialog_.Get());
    font_ = MessageFont(dpi_);
    look_.Renew(font_.Get());
    PlaceOver(owner);
    CreateControls();
    const bool isKept = PlaceAsKept();
    Arrange();
    editor_.Activate();
    if (isKept) {
        editor_.SelectPage(static_cast<Page>(KeptPlace()->page));
    }
    {
        const DisabledOwner disabled(owner);
        ShowWindow(dialog_.Get(), SW_SHOW);
        SetForegroundWindow(dialog_.Get());
        SetFocus(tabs_);
        Run();
        closed_ = true;
        KeepPlaceOfWindow();
    }
    dialog_ = {};
    if (owner) {
        SetActiveWindow(owner);
    }
    return editor_.Tag() == L"OK";
}

/// A request to end the thread closes the dialog, and is passed on to the loop below.
void frmFreqList::Run()
{
    const OwnFloatingPointAfterwards after;  // the loop serves the host's windows too
    MSG message;
    while (!closed_) {
        const BOOL got = GetMessageW(&message, nullptr, 0, 0);
        if (got <= 0) {
            if (got == 0) {
                PostQuitMessage(static_cast<int>(message.wParam));
            }
            return;
        }
        if (!BeforeDialog(message) && !IsDialogMessageW(dialog_.Get(), &message)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        AfterMessage();
    }
}

void frmFreqList::CellEditorChanged()
{
    parameters_.ShowCellEditor();
    channels_.ShowCellEditor();
}

void frmFreqList::PageChanged()
{
    const auto current = static_cast<size_t>(editor_.CurrentPage());
    const HWND focused = GetFocus();
    SendMessageW(tabs_, TCM_SETCURSEL, current, 0);
    for (size_t page = 0; page < pages_.size(); ++page) {
        if (page != current && focused && IsChild(pages_[page], focused)) {
            SetFocus(tabs_);
        }
        EnableWindow(pages_[page], page == current);
        ShowWindow(pages_[page], page == current ? SW_SHOWNA : SW_HIDE);
    }
}

void frmFreqList::ChoiceChanged(Choice choice)
{
    const HWND list = choices_[static_cast<size_t>(choice)];
    SendMessageW(list, CB_RESETCONTENT, 0, 0);
    for (const ListItem& item : ItemsOf(choice)) {
        SendMessageW(list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(std::wstring(item.text).c_str()));
    }
    SendMessageW(list, CB_SETCURSEL, static_cast<WPARAM>(editor_.SelectedItem(choice)), 0);
}

void frmFreqList::FieldChanged(Field field)
{
    const FlagGuard updating(updating_);
    SetWindowTextW(fields_[static_cast<size_t>(field)], editor_.Text(field).c_str());
}

void frmFreqList::CheckChanged(Check check)
{
    SendMessageW(checks_[static_cast<size_t>(check)], BM_SETCHECK, editor_.Checked(check) ? BST_CHECKED : BST_UNCHECKED,
                 0);
}

void frmFreqList::ButtonRolesChanged()
{
    SendMessageW(dialog_.Get(), DM_SETDEFID, editor_.OkIsDefault() ? control_id::ok : 0, 0);
    ShowDefaultButton();
}

/// A push button that has the keyboard is what Enter presses; otherwise that is OK, or none.
void frmFreqList::ShowDefaultButton()
{
    const HWND focused = GetFocus();
    const bool hasButton = std::ranges::find(pushButtons_, focused) != pushButtons_.end();
    const HWND pressed = hasButton ? focused : editor_.OkIsDefault() ? ok_ : nullptr;
    for (const HWND button : pushButtons_) {
        const auto style = static_cast<WPARAM>(button == pressed ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON);
        if ((static_cast<WPARAM>(GetWindowLongPtrW(button, GWL_STYLE)) & BS_TYPEMASK) != style) {
            SendMessageW(button, BM_SETSTYLE, style, TRUE);
        }
    }
}

/// What follows from anything that may have happened: which buttons can do something, and which one Enter presses.
void frmFreqList::AfterMessage()
{
    if (closed_) {
        return;
    }
    for (const RowButton& button : rowButtons_) {
        const bool can = editor_.CanExecute(button.command, button.grid);
        if (can == (IsWindowEnabled(button.window) != FALSE) || !IsWindowEnabled(GetParent(button.window))) {
            continue;
        }
        if (!can && GetFocus() == button.window) {
            SetFocus(Pane(button.grid).Window());  // whose procedure is guarded
        }
        EnableWindow(button.window, can);
    }
    ShowDefaultButton();
}

void frmFreqList::Ask(const Form& form, const FormAnswers& take)
{
    FormDialog(form, take, font_.Get()).Show(dialog_.Get());
}

bool frmFreqList::Confirm(const std::wstring& question)
{
    return MessageBoxW(dialog_.Get(), question.c_str(), L"Setup", MB_OKCANCEL | MB_ICONWARNING | MB_DEFBUTTON2) == IDOK;
}

void frmFreqList::Focus(Control control, Column column)
{
    switch (control) {
        case Control::tabs:
            SetFocus(tabs_);
            break;
        case Control::list:
            Pane(column).FocusList();
            break;
        case Control::cellEditor:
            SetFocus(Pane(column).CellEditor());
            break;
        case Control::defaultSymbolRate:
        case Control::maxSettlingTime: {
            const HWND field = fields_[static_cast<size_t>(
                control == Control::maxSettlingTime ? Field::maxSettlingTime : Field::defaultSymbolRate)];
            SetFocus(field);
            SendMessageW(field, EM_SETSEL, 0, -1);
            break;
        }
        case Control::notes:
            SetFocus(notesWindow_);
            break;
        case Control::other:
            break;
    }
}

void frmFreqList::Close()
{
    closed_ = true;
    PostMessageW(dialog_.Get(), WM_NULL, 0, 0);  // wakes the loop where the call comes from outside of it
}

void frmFreqList::OnException() noexcept
{
    try {
        std::wstring text = L"The editor could not do that. Nothing was changed.";
        try {
            throw;
        } catch (const RaisedError& raised) {
            text = raised.description;
        } catch (const std::bad_alloc&) {
            text = L"There is not enough memory. Close other programs and try again.";
        } catch (...) {
        }
        messages_.Show(text, L"Setup", MessageIcon::warning);
    } catch (...) {
        MessageBeep(MB_ICONWARNING);
    }
}

bool EditSetup(SetupDocument& document, const Locale& locale)
{
    RequireScreen();
    return frmFreqList(document, locale).ShowModal(PresentWindow());
}

}  // namespace tvn2x
