#include <windows.h>

#include <uxtheme.h>

#include <algorithm>
#include <utility>

#include "editor/Choices.h"
#include "editor/win32/ControlIds.h"
#include "editor/win32/DialogTemplate.h"
#include "editor/win32/UserPlace.h"
#include "editor/win32/frmFreqList.h"
#include "util/RaisedError.h"

namespace tvn2x {
namespace {

using dialog_unit::gap;
using dialog_unit::margin;

// Dialog units.
constexpr int buttonWidth = 52;
constexpr int buttonHeight = 14;
constexpr int rowPitch = 19;
constexpr int controlHeight = 13;
constexpr int labelWidth = 112;
constexpr int dropDownHeight = 120;
constexpr SIZE usualSize{350, 232};

constexpr std::wstring_view symbolRateHint =
    L"Channels that are typed or inserted, or pasted without a symbol rate of their own, begin with this one.";
constexpr std::wstring_view settlingHint = L"The longest that the receiver may take to lock onto a channel.";
constexpr std::wstring_view displayHint = L"What runs along the upper edge of the grid that shows the readings.";
constexpr std::wstring_view resultHint = L"What runs along the upper edge of the table in a saved result file.";

constexpr int fieldLeft = margin + labelWidth + gap;
constexpr int commandLeft = -margin - buttonWidth;

constexpr Area RowArea(int row, int left, int right, int height)
{
    return {left, margin + row * rowPitch, right, margin + row * rowPitch + height};
}

RECT WorkArea(HMONITOR monitor)
{
    MONITORINFO info{};
    info.cbSize = sizeof info;
    GetMonitorInfoW(monitor, &info);
    return info.rcWork;
}

HWND CreateEmpty(DWORD style, DWORD exStyle, HWND parent, DLGPROC procedure, void* form)
{
    EmptyTemplate empty;
    empty.head.style = style;
    empty.head.dwExtendedStyle = exStyle;
    const HWND dialog =
        CreateDialogIndirectParamW(OwnModule(), &empty.head, parent, procedure, reinterpret_cast<LPARAM>(form));
    if (!dialog) {
        throw RaisedError(HRESULT_FROM_WIN32(GetLastError()), L"clsSetup.Edit",
                          L"The setup editor's window cannot be created. It needs a screen");
    }
    return dialog;
}

}  // namespace

/// The tab order: the pages, the two buttons, the tabs. The tabs come last, because the pages lie upon them.
void frmFreqList::CreateDialogs(HWND owner, const std::wstring& title)
{
    constexpr DWORD frame = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_CLIPCHILDREN | DS_MODALFRAME;
    constexpr DWORD page = WS_CHILD | WS_CLIPSIBLINGS | WS_CLIPCHILDREN | WS_DISABLED | DS_CONTROL;
    const DWORD inTaskBar = owner ? 0 : WS_EX_APPWINDOW;
    dialog_ = Dialog(CreateEmpty(frame, WS_EX_CONTROLPARENT | inTaskBar, owner, &frmFreqList::Procedure, this));
    messages_.owner = dialog_.Get();
    SetWindowTextW(dialog_.Get(), title.c_str());
    for (HWND& window : pages_) {
        window = CreateEmpty(page, WS_EX_CONTROLPARENT, dialog_.Get(), &frmFreqList::Procedure, this);
        EnableThemeDialogTexture(window, ETDT_ENABLETAB);
    }
}

void frmFreqList::CreateControls()
{
    for (int32_t choice = 0; choice <= static_cast<int32_t>(Choice::berIntegration); ++choice) {
        AddChoice(Page::settings, static_cast<Choice>(choice), choice);
    }
    AddField(Page::application, Field::defaultSymbolRate, 0);
    AddHint(Page::application, symbolRateHint, 1);
    AddField(Page::application, Field::maxSettlingTime, 3);
    AddHint(Page::application, settlingHint, 4);
    CreateGridPage(Grid::channels, Page::frequencies);
    CreateGridPage(Grid::parameters, Page::parameters);
    CreateNotesPage();
    AddChoice(Page::xAxis, Choice::displayGrid, 0);
    AddHint(Page::xAxis, displayHint, 1);
    AddChoice(Page::xAxis, Choice::resultFile, 3);
    AddHint(Page::xAxis, resultHint, 4);

    const HWND frame = dialog_.Get();
    const int top = -margin - buttonHeight;
    ok_ = AddControl(frame, WC_BUTTONW, L"OK", WS_TABSTOP | BS_DEFPUSHBUTTON, control_id::ok,
                     {commandLeft - gap - buttonWidth, top, commandLeft - gap, -margin});
    const HWND cancel = AddControl(frame, WC_BUTTONW, L"Cancel", WS_TABSTOP | BS_PUSHBUTTON, control_id::cancel,
                                   {commandLeft, top, -margin, -margin});
    tabs_ = AddControl(frame, WC_TABCONTROLW, {}, WS_TABSTOP | WS_CLIPSIBLINGS, control_id::tabs,
                       {margin, margin, -margin, top - margin});
    for (int32_t page = 0; page < pageCount; ++page) {
        std::wstring caption(CaptionOf(static_cast<Page>(page)));
        TCITEMW item{};
        item.mask = TCIF_TEXT;
        item.pszText = caption.data();
        SendMessageW(tabs_, TCM_INSERTITEMW, static_cast<WPARAM>(page), reinterpret_cast<LPARAM>(&item));
    }
    pushButtons_.insert(pushButtons_.end(), {ok_, cancel});
    Watch(ok_, Control::other, 0);
    Watch(cancel, Control::other, 0);
    Watch(tabs_, Control::tabs, 0);
}

HWND frmFreqList::AddControl(HWND parent, const wchar_t* windowClass, std::wstring_view text, DWORD style, int id,
                             const Area& area, HWND label)
{
    const DWORD exStyle = windowClass == std::wstring_view(WC_EDITW) ? WS_EX_CLIENTEDGE : 0;
    const HWND control =
        CreateWindowExW(exStyle, windowClass, std::wstring(text).c_str(), WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0,
                        parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), OwnModule(), nullptr);
    if (!control) {
        throw RaisedError(HRESULT_FROM_WIN32(GetLastError()), L"clsSetup.Edit",
                          L"A control of the setup editor cannot be created");
    }
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font_.Get()), FALSE);
    controls_.push_back(control);
    const auto page = std::ranges::find(pages_, parent);
    Layout& layout = page == pages_.end() ? frameLayout_ : layouts_[static_cast<size_t>(page - pages_.begin())];
    if (label) {
        layout.AddField(control, area, label);
    } else {
        layout.Add(control, area);
    }
    return control;
}

HWND frmFreqList::AddButton(Page page, std::wstring_view text, DWORD style, int id, const Area& area)
{
    const HWND button = AddControl(PageWindow(page), WC_BUTTONW, text, WS_TABSTOP | style, id, area);
    Watch(button, Control::other, 0);
    accessKeys_.Add(page, text, {button, {}});
    if (style == BS_PUSHBUTTON) {
        pushButtons_.push_back(button);
    }
    return button;
}

void frmFreqList::AddChoice(Page page, Choice choice, int row)
{
    const HWND parent = PageWindow(page);
    const HWND label = AddControl(parent, WC_STATICW, CaptionOf(choice), SS_CENTERIMAGE, control_id::label,
                                  RowArea(row, margin, margin + labelWidth, controlHeight));
    const HWND list = AddControl(parent, WC_COMBOBOXW, {}, WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST,
                                 control_id::Of(choice), RowArea(row, fieldLeft, -margin, dropDownHeight), label);
    Watch(list, Control::other, 0);
    choices_[static_cast<size_t>(choice)] = list;
    accessKeys_.Add(page, CaptionOf(choice), {list, {}});
}

void frmFreqList::AddField(Page page, Field field, int row)
{
    const HWND parent = PageWindow(page);
    const HWND label = AddControl(parent, WC_STATICW, CaptionOf(field), SS_CENTERIMAGE, control_id::label,
                                  RowArea(row, margin, margin + labelWidth, controlHeight));
    const HWND edit = AddControl(parent, WC_EDITW, {}, WS_TABSTOP | ES_AUTOHSCROLL, control_id::Of(field),
                                 RowArea(row, fieldLeft, -margin, controlHeight), label);
    Watch(edit, field == Field::maxSettlingTime ? Control::maxSettlingTime : Control::defaultSymbolRate,
          static_cast<int32_t>(field));
    fields_[static_cast<size_t>(field)] = edit;
    accessKeys_.Add(page, CaptionOf(field), {edit, {}});
}

/// A sentence below a field, in two lines at most.
void frmFreqList::AddHint(Page page, std::wstring_view text, int row)
{
    AddControl(PageWindow(page), WC_STATICW, text, SS_NOPREFIX, control_id::label,
               RowArea(row, fieldLeft, -margin, 2 * controlHeight));
}

void frmFreqList::CreateGridPage(Grid grid, Page page)
{
    GridPane& pane = Pane(grid);
    pane.Create(PageWindow(page), *this, subclasses_);
    for (int32_t index = 0; index < 3; ++index) {
        const Column column = static_cast<Column>(grid) + index;
        accessKeys_.Add(page, HeadingOf(column), {pane.Window(), column});
    }
    for (int32_t command = 0; command < rowButtonCount; ++command) {
        const auto each = static_cast<RowCommand>(command);
        const int top = margin + command * (buttonHeight + gap);
        const HWND button = AddButton(page, CaptionOf(each), BS_PUSHBUTTON, control_id::Of(each, grid),
                                      {commandLeft, top, -margin, top + buttonHeight});
        rowButtons_.push_back({button, each, grid});
    }
    if (grid == Grid::parameters) {
        checks_[static_cast<size_t>(Check::couple)] =
            AddButton(page, CaptionOf(Check::couple), BS_AUTOCHECKBOX, control_id::Of(Check::couple),
                      {margin, -margin - 11, commandLeft - gap, -margin});
    }
}

void frmFreqList::CreateNotesPage()
{
    constexpr std::wstring_view caption = L"&Template:";
    const HWND page = PageWindow(Page::notes);
    AddControl(page, WC_STATICW, caption, 0, control_id::label, {margin, margin, margin + labelWidth, margin + 9});
    notesWindow_ = notes_.Create(page, {}, control_id::notes);
    layouts_[static_cast<size_t>(Page::notes)].Add(notesWindow_,
                                                   {margin, margin + 11, commandLeft - gap, -margin - 16});
    Watch(notesWindow_, Control::notes, 0);
    accessKeys_.Add(Page::notes, caption, {notesWindow_, {}});
    const int top = margin + 11;
    AddButton(Page::notes, L"P&rotect", BS_PUSHBUTTON, control_id::protect,
              {commandLeft, top, -margin, top + buttonHeight});
    AddButton(Page::notes, L"&Unprotect", BS_PUSHBUTTON, control_id::unprotect,
              {commandLeft, top + buttonHeight + gap, -margin, top + 2 * buttonHeight + gap});
    int left = margin;
    for (const Check check : {Check::showBefore, Check::showAfter}) {
        checks_[static_cast<size_t>(check)] =
            AddButton(Page::notes, CaptionOf(check), BS_AUTOCHECKBOX, control_id::Of(check),
                      {left, -margin - 11, left + 118, -margin});
        left += 118 + gap;
    }
}

void frmFreqList::Arrange()
{
    const Metrics& metrics = look_.metrics;
    frameLayout_.Apply(metrics, ClientSize(dialog_.Get()));
    RECT area{};
    GetWindowRect(tabs_, &area);
    MapWindowPoints(nullptr, dialog_.Get(), reinterpret_cast<POINT*>(&area), 2);
    SendMessageW(tabs_, TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&area));
    for (size_t page = 0; page < pages_.size(); ++page) {
        Move(pages_[page], area);
        layouts_[page].Apply(metrics, ClientSize(pages_[page]));
    }
    const SIZE page = ClientSize(pages_[0]);
    channels_.Arrange(InPixels({margin, margin, commandLeft - gap, -margin}, metrics, page));
    parameters_.Arrange(InPixels({margin, margin, commandLeft - gap, -margin - 16}, metrics, page));
    RedrawWindow(dialog_.Get(), nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN);
}

/// In the middle of the owner, or of the screen, and wholly on the screen.
void frmFreqList::PlaceOver(HWND owner)
{
    RECT wanted{0, 0, look_.metrics.X(usualSize.cx), look_.metrics.Y(usualSize.cy)};
    AdjustWindowRectEx(&wanted, static_cast<DWORD>(GetWindowLongPtrW(dialog_.Get(), GWL_STYLE)), FALSE,
                       static_cast<DWORD>(GetWindowLongPtrW(dialog_.Get(), GWL_EXSTYLE)));
    smallest_ = {wanted.right - wanted.left, wanted.bottom - wanted.top};
    const RECT screen = WorkArea(MonitorFromWindow(owner ? owner : dialog_.Get(), MONITOR_DEFAULTTONEAREST));
    RECT around = screen;
    if (owner && !IsIconic(owner)) {
        GetWindowRect(owner, &around);
    }
    const auto [width, height] = smallest_;
    const LONG left = std::max(screen.left, std::min((around.left + around.right - width) / 2, screen.right - width));
    const LONG top = std::max(screen.top, std::min((around.top + around.bottom - height) / 2, screen.bottom - height));
    Move(dialog_.Get(), {left, top, left + width, top + height});
}

/// As the user has left it. A size that was counted in another resolution is converted; of a place that is not wholly
/// on a screen, only the size counts. False where none was kept.
bool frmFreqList::PlaceAsKept()
{
    const std::optional<UserPlace> kept = KeptPlace();
    if (!kept || kept->dpi <= 0 || kept->page < 0 || kept->page >= pageCount) {
        return false;
    }
    channels_.TakeShares(kept->channelShares);
    parameters_.TakeShares(kept->parameterShares);
    const auto [left, top, right, bottom] = kept->window;
    const LONG width = std::max<LONG>(MulDiv(right - left, dpi_, kept->dpi), smallest_.cx);
    const LONG height = std::max<LONG>(MulDiv(bottom - top, dpi_, kept->dpi), smallest_.cy);
    RECT present{};
    GetWindowRect(dialog_.Get(), &present);
    const HMONITOR monitor = MonitorFromRect(&kept->window, MONITOR_DEFAULTTONULL);
    const RECT screen = WorkArea(monitor ? monitor : MonitorFromWindow(dialog_.Get(), MONITOR_DEFAULTTONEAREST));
    RECT place{left, top, left + width, top + height};
    const bool isThere = monitor && left >= screen.left && top >= screen.top && place.right <= screen.right &&
                         place.bottom <= screen.bottom;
    if (!isThere) {
        const LONG shownWidth = std::min(width, std::max(screen.right - present.left, smallest_.cx));
        const LONG shownHeight = std::min(height, std::max(screen.bottom - present.top, smallest_.cy));
        place = {present.left, present.top, present.left + shownWidth, present.top + shownHeight};
    }
    Move(dialog_.Get(), place);
    return true;
}

void frmFreqList::KeepPlaceOfWindow() const
{
    UserPlace place;
    GetWindowRect(dialog_.Get(), &place.window);
    place.dpi = dpi_;
    place.page = static_cast<int32_t>(editor_.CurrentPage());
    place.channelShares = channels_.Shares();
    place.parameterShares = parameters_.Shares();
    KeepPlace(place);
}

/// The window has come to a monitor of another resolution.
void frmFreqList::ScaleTo(int dpi)
{
    smallest_ = {MulDiv(smallest_.cx, dpi, dpi_), MulDiv(smallest_.cy, dpi, dpi_)};
    dpi_ = dpi;
    Font font = MessageFont(dpi);
    look_.Renew(font.Get());
    for (const HWND each : controls_) {
        SendMessageW(each, WM_SETFONT, reinterpret_cast<WPARAM>(font.Get()), FALSE);
    }
    for (GridPane* const pane : {&channels_, &parameters_}) {
        SendMessageW(pane->CellEditor(), WM_SETFONT, reinterpret_cast<WPARAM>(font.Get()), FALSE);
    }
    font_ = std::move(font);
}

}  // namespace tvn2x
