#include "editor/win32/GridAccessible.h"

#include <algorithm>
#include <new>
#include <string>

#include "editor/Choices.h"
#include "editor/win32/GridPane.h"
#include "editor/win32/SelectedChildren.h"

namespace tvn2x {
namespace {

using namespace accessible_child;

std::wstring PlainHeading(Column column)
{
    std::wstring heading(HeadingOf(column));
    std::erase(heading, L'&');
    return heading;
}

VARIANT Number(long number)
{
    VARIANT value{};
    value.vt = VT_I4;
    value.lVal = number;
    return value;
}

}  // namespace

GridAccessible::GridAccessible(GridPane& pane, Editor& editor, Grid grid) : pane_(&pane), editor_(editor), grid_(grid)
{
    CreateStdAccessibleObject(pane.Window(), OBJID_CLIENT, IID_IAccessible, reinterpret_cast<void**>(&standard_));
}

/// Clients in other processes lose their connection; those in this one are told so when they ask.
void GridAccessible::Disconnect()
{
    pane_ = nullptr;
    CoDisconnectObject(this, 0);
    if (standard_) {
        standard_->Release();
        standard_ = nullptr;
    }
}

HRESULT GridAccessible::QueryInterface(REFIID iid, void** object) noexcept
{
    if (!object) {
        return E_POINTER;
    }
    const bool isKnown =
        IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch) || IsEqualIID(iid, IID_IAccessible);
    *object = isKnown ? static_cast<IAccessible*>(this) : nullptr;
    if (!isKnown) {
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

ULONG GridAccessible::Release() noexcept
{
    const ULONG left = --references_;
    if (left == 0) {
        delete this;
    }
    return left;
}

template <class Work>
HRESULT GridAccessible::Guarded(Work work) const noexcept
{
    const OwnFloatingPoint floatingPoint;
    if (!pane_) {
        return CO_E_OBJNOTCONNECTED;
    }
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

/// A text about a child; S_FALSE where there is none.
template <class Make>
HRESULT GridAccessible::Tell(VARIANT child, BSTR* text, Make make) const noexcept
{
    if (!text) {
        return E_POINTER;
    }
    *text = nullptr;
    return Guarded([&]() -> HRESULT {
        if (!Has(child)) {
            return E_INVALIDARG;
        }
        const std::wstring made = make(child.lVal);
        if (made.empty()) {
            return S_FALSE;
        }
        *text = SysAllocStringLen(made.data(), static_cast<UINT>(made.size()));
        return *text ? S_OK : E_OUTOFMEMORY;
    });
}

bool GridAccessible::Has(const VARIANT& child) const
{
    return child.vt == VT_I4 && child.lVal >= self && child.lVal < Cell(editor_.RowCount(grid_), 0);
}

Column GridAccessible::ColumnOf(int32_t child) const
{
    return static_cast<Column>(grid_) + IndexOf(child);
}

std::wstring GridAccessible::TextOf(int32_t child) const
{
    const Column column = ColumnOf(child);
    if (child == self || RowOf(child) < 0) {
        return {};
    }
    if (!IsCheckColumn(column)) {
        return editor_.CellText(column, RowOf(child));
    }
    constexpr const wchar_t* states[]{L"not checked", L"checked", L"partly checked"};
    return states[static_cast<size_t>(editor_.CheckOf(column, RowOf(child)))];
}

/// "Row 3, Center Frequency, 474.0000000, selected". The row behind the last channel is called a new one.
std::wstring GridAccessible::NameOf(int32_t child) const
{
    if (child == self) {
        return grid_ == Grid::channels ? L"Channels" : L"Parameters";
    }
    const int32_t row = RowOf(child);
    std::wstring heading = PlainHeading(ColumnOf(child));
    if (row < 0) {
        return heading;
    }
    const bool isNew = grid_ == Grid::channels && row == editor_.RowCount(grid_) - 1;
    const int32_t number = row + 1 - editor_.PinnedRows(grid_);
    const std::wstring name = isNew ? L"New row" : number < 1 ? L"All rows" : L"Row " + std::to_wstring(number);
    const bool isSelected = editor_.Selection(grid_).Contains(row);
    return name + L", " + heading + L", " + TextOf(child) + (isSelected ? L", selected" : L", not selected");
}

long GridAccessible::StateOf(int32_t child) const
{
    const bool hasFocus = GetFocus() == pane_->Window();
    if (child == self) {
        return STATE_SYSTEM_FOCUSABLE | (hasFocus ? STATE_SYSTEM_FOCUSED : 0);
    }
    const int32_t row = RowOf(child);
    if (row < 0) {
        return 0;
    }
    const Column column = ColumnOf(child);
    long state = STATE_SYSTEM_SELECTABLE | STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_MULTISELECTABLE;
    state |= editor_.Selection(grid_).Contains(row) ? STATE_SYSTEM_SELECTED : 0;
    const bool isCurrent = row == editor_.SelectedRow(grid_) && column == editor_.CurrentColumn(grid_);
    state |= isCurrent && hasFocus ? STATE_SYSTEM_FOCUSED : 0;
    if (IsCheckColumn(column)) {
        constexpr long checks[]{0, STATE_SYSTEM_CHECKED, STATE_SYSTEM_MIXED};
        state |= checks[static_cast<size_t>(editor_.CheckOf(column, row))];
    }
    const RECT place = pane_->CellRect({row, column});
    return state | (IsRectEmpty(&place) ? STATE_SYSTEM_OFFSCREEN : 0);
}

HRESULT GridAccessible::GetTypeInfoCount(UINT* count) noexcept
{
    return standard_ ? standard_->GetTypeInfoCount(count) : E_NOTIMPL;
}

HRESULT GridAccessible::GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) noexcept
{
    return standard_ ? standard_->GetTypeInfo(index, locale, info) : E_NOTIMPL;
}

HRESULT GridAccessible::GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) noexcept
{
    return standard_ ? standard_->GetIDsOfNames(iid, names, count, locale, ids) : E_NOTIMPL;
}

HRESULT GridAccessible::Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                               EXCEPINFO* exception, UINT* argument) noexcept
{
    ITypeInfo* info = nullptr;
    const HRESULT found = GetTypeInfo(0, locale, &info);
    if (FAILED(found) || !info) {
        return E_NOTIMPL;
    }
    static_cast<void>(iid);
    const HRESULT answer =
        info->Invoke(static_cast<IAccessible*>(this), id, flags, parameters, result, exception, argument);
    info->Release();
    return answer;
}

HRESULT GridAccessible::get_accParent(IDispatch** parent) noexcept
{
    return Guarded([&] { return standard_ ? standard_->get_accParent(parent) : E_FAIL; });
}

HRESULT GridAccessible::get_accChildCount(long* count) noexcept
{
    return !count ? E_POINTER : Guarded([&] {
        *count = Cell(editor_.RowCount(grid_), 0) - 1;
        return S_OK;
    });
}

/// The parts are no objects of their own: they are asked for through this one.
HRESULT GridAccessible::get_accChild(VARIANT child, IDispatch** object) noexcept
{
    if (!object) {
        return E_POINTER;
    }
    *object = nullptr;
    return Guarded([&] { return Has(child) ? S_FALSE : E_INVALIDARG; });
}

HRESULT GridAccessible::get_accName(VARIANT child, BSTR* name) noexcept
{
    return Tell(child, name, [this](int32_t number) { return NameOf(number); });
}

HRESULT GridAccessible::get_accValue(VARIANT child, BSTR* value) noexcept
{
    return Tell(child, value, [this](int32_t number) { return TextOf(number); });
}

HRESULT GridAccessible::get_accDescription(VARIANT child, BSTR* description) noexcept
{
    return Tell(child, description, [this](int32_t number) {
        return RowOf(number) < 0 ? std::wstring() : editor_.RemarkOn(grid_, RowOf(number));
    });
}

HRESULT GridAccessible::get_accRole(VARIANT child, VARIANT* role) noexcept
{
    return !role ? E_POINTER : Guarded([&] {
        *role = Number(child.lVal == self      ? ROLE_SYSTEM_TABLE
                       : RowOf(child.lVal) < 0 ? ROLE_SYSTEM_COLUMNHEADER
                                               : ROLE_SYSTEM_CELL);
        return Has(child) ? S_OK : E_INVALIDARG;
    });
}

HRESULT GridAccessible::get_accState(VARIANT child, VARIANT* state) noexcept
{
    return !state ? E_POINTER : Guarded([&] {
        if (!Has(child)) {
            return E_INVALIDARG;
        }
        *state = Number(StateOf(child.lVal));
        return S_OK;
    });
}

HRESULT GridAccessible::get_accHelp(VARIANT child, BSTR* help) noexcept
{
    return Tell(child, help, [](int32_t) { return std::wstring(); });
}

HRESULT GridAccessible::get_accHelpTopic(BSTR* file, VARIANT child, long* topic) noexcept
{
    if (topic) {
        *topic = 0;
    }
    return Tell(child, file, [](int32_t) { return std::wstring(); });
}

HRESULT GridAccessible::get_accKeyboardShortcut(VARIANT child, BSTR* shortcut) noexcept
{
    return Tell(child, shortcut, [this](int32_t number) {
        const std::wstring_view heading = number == self ? L"" : HeadingOf(ColumnOf(number));
        const size_t mark = heading.find(L'&');
        const bool hasKey = RowOf(number) < 0 && mark + 1 < heading.size() && mark != heading.npos;
        return hasKey ? L"Alt+" + std::wstring(1, heading[mark + 1]) : std::wstring();
    });
}

HRESULT GridAccessible::get_accFocus(VARIANT* child) noexcept
{
    return !child ? E_POINTER : Guarded([&] {
        *child = {};
        if (GetFocus() != pane_->Window()) {
            return S_FALSE;
        }
        *child = Number(Cell(editor_.SelectedRow(grid_), editor_.CurrentColumn(grid_) - static_cast<Column>(grid_)));
        return S_OK;
    });
}

HRESULT GridAccessible::get_accSelection(VARIANT* children) noexcept
{
    return !children ? E_POINTER : Guarded([&]() -> HRESULT {
        *children = {};
        std::vector<long> cells;
        for (const int32_t row : editor_.Selection(grid_).Rows()) {
            for (int32_t index = 0; index < 3; ++index) {
                cells.push_back(Cell(row, index));
            }
        }
        children->vt = VT_UNKNOWN;
        children->punkVal = new SelectedChildren(std::move(cells));
        return S_OK;
    });
}

HRESULT GridAccessible::get_accDefaultAction(VARIANT child, BSTR* action) noexcept
{
    return Tell(child, action, [this](int32_t number) {
        const bool isCell = number != self && RowOf(number) >= 0;
        return std::wstring(number == self                    ? L""
                            : !isCell                         ? L"Sort"
                            : IsCheckColumn(ColumnOf(number)) ? L"Check"
                                                              : L"Edit");
    });
}

HRESULT GridAccessible::accSelect(long flags, VARIANT child) noexcept
{
    return Guarded([&] {
        if (!Has(child) || (child.lVal != self && RowOf(child.lVal) < 0)) {
            return E_INVALIDARG;
        }
        if ((flags & SELFLAG_TAKEFOCUS) != 0) {
            pane_->FocusList();
        }
        if (child.lVal == self) {
            return S_OK;
        }
        const Column column = ColumnOf(child.lVal);
        const int32_t row = RowOf(child.lVal);
        const bool isSelected = editor_.Selection(grid_).Contains(row);
        if ((flags & SELFLAG_EXTENDSELECTION) != 0) {
            editor_.CellPressed(column, row, modifier::shift);
        } else if ((flags & (SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION)) != 0) {
            editor_.RowSelected(column, row);
        } else if (((flags & SELFLAG_ADDSELECTION) != 0 && !isSelected) ||
                   ((flags & SELFLAG_REMOVESELECTION) != 0 && isSelected)) {
            editor_.CellPressed(column, row, modifier::control);
        }
        return S_OK;
    });
}

HRESULT GridAccessible::accLocation(long* left, long* top, long* width, long* height, VARIANT child) noexcept
{
    if (!left || !top || !width || !height) {
        return E_POINTER;
    }
    return Guarded([&] {
        if (!Has(child)) {
            return E_INVALIDARG;
        }
        RECT place{};
        if (child.lVal == self) {
            GetClientRect(pane_->Window(), &place);
        } else {
            place = pane_->CellRect({RowOf(child.lVal), ColumnOf(child.lVal)});
        }
        MapWindowPoints(pane_->Window(), nullptr, reinterpret_cast<POINT*>(&place), 2);
        *left = place.left;
        *top = place.top;
        *width = place.right - place.left;
        *height = place.bottom - place.top;
        return S_OK;
    });
}

HRESULT GridAccessible::accNavigate(long direction, VARIANT start, VARIANT* end) noexcept
{
    return !end ? E_POINTER : Guarded([&] {
        *end = {};
        if (!Has(start)) {
            return E_INVALIDARG;
        }
        const long from = start.lVal;
        const long last = Cell(editor_.RowCount(grid_), 0) - 1;
        const int32_t index = IndexOf(from);
        const long to = direction == NAVDIR_FIRSTCHILD && from == self  ? 1
                        : direction == NAVDIR_LASTCHILD && from == self ? last
                        : from == self                                  ? 0
                        : direction == NAVDIR_UP                        ? from - 3
                        : direction == NAVDIR_DOWN                      ? from + 3
                        : direction == NAVDIR_LEFT                      ? (index > 0 ? from - 1 : 0)
                        : direction == NAVDIR_RIGHT                     ? (index < 2 ? from + 1 : 0)
                        : direction == NAVDIR_NEXT                      ? from + 1
                        : direction == NAVDIR_PREVIOUS                  ? from - 1
                                                                        : 0;
        if (to < 1 || to > last) {
            return S_FALSE;
        }
        *end = Number(to);
        return S_OK;
    });
}

HRESULT GridAccessible::accHitTest(long x, long y, VARIANT* child) noexcept
{
    return !child ? E_POINTER : Guarded([&] {
        *child = {};
        POINT point{x, y};
        RECT client{};
        GetClientRect(pane_->Window(), &client);
        ScreenToClient(pane_->Window(), &point);
        if (!PtInRect(&client, point)) {
            return S_FALSE;
        }
        const GridPlace place = pane_->PlaceAt(point);
        const int32_t index = place.column.value_or(static_cast<Column>(grid_)) - static_cast<Column>(grid_);
        const bool isCell = place.column && place.row >= 0 && place.row < editor_.RowCount(grid_);
        *child = Number(isCell ? Cell(place.row, index) : place.column && place.row == -1 ? Heading(index) : self);
        return S_OK;
    });
}

HRESULT GridAccessible::accDoDefaultAction(VARIANT child) noexcept
{
    return Guarded([&] {
        if (!Has(child) || child.lVal == self) {
            return E_INVALIDARG;
        }
        const Column column = ColumnOf(child.lVal);
        if (RowOf(child.lVal) < 0) {
            editor_.HeadingClicked(column);
        } else {
            pane_->FocusList();
            editor_.CellClicked(column, RowOf(child.lVal));
        }
        return S_OK;
    });
}

HRESULT GridAccessible::put_accName(VARIANT, BSTR) noexcept
{
    return DISP_E_MEMBERNOTFOUND;
}

HRESULT GridAccessible::put_accValue(VARIANT, BSTR) noexcept
{
    return DISP_E_MEMBERNOTFOUND;
}

LRESULT Accessible::Answer(GridPane& pane, Editor& editor, Grid grid, WPARAM wParam)
{
    if (!object_) {
        object_ = new (std::nothrow) GridAccessible(pane, editor, grid);
    }
    // Who asks is waiting: no message may come between.
    if (!object_) {
        return E_OUTOFMEMORY;
    }
    return LresultFromObject(IID_IAccessible, wParam, static_cast<IAccessible*>(object_));
}

void Accessible::Disconnect()
{
    if (object_) {
        object_->Disconnect();
        object_->Release();
        object_ = nullptr;
    }
}

}  // namespace tvn2x
