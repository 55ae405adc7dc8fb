#pragma once

#include <windows.h>

#include <oleacc.h>

#include <cstdint>
#include <vector>

#include "editor/Editor.h"
#include "util/FloatingPoint.h"

namespace tvn2x {

class GridPane;

/// The numbers under which screen readers know the parts of a grid: the three headings, then the cells row by row.
namespace accessible_child {

constexpr int32_t self = CHILDID_SELF;

constexpr int32_t Heading(int32_t index)
{
    return 1 + index;
}
constexpr int32_t Cell(int32_t row, int32_t index)
{
    return 4 + 3 * row + index;
}
constexpr int32_t RowOf(int32_t child)
{
    return child < 4 ? -1 : (child - 4) / 3;
}
constexpr int32_t IndexOf(int32_t child)
{
    return (child - 1) % 3;
}

}  // namespace accessible_child

/// A grid as the system's accessibility interface shows it: a table whose cells say their row, column and text, and
/// whether they are selected. Lives as long as somebody holds it; without its grid it answers CO_E_OBJNOTCONNECTED. Is
/// called on the grid's thread.
class GridAccessible final : public IAccessible
{
public:
    GridAccessible(GridPane& pane, Editor& editor, Grid grid);
    GridAccessible(const GridAccessible&) = delete;
    GridAccessible& operator=(const GridAccessible&) = delete;

    void Disconnect();

    // IUnknown
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override;
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() noexcept override;

    // IDispatch: as the system's own object for the window answers.
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) noexcept override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* ids) noexcept override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters,
                                     VARIANT* result, EXCEPINFO* exception, UINT* argument) noexcept override;

    // IAccessible
    HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** parent) noexcept override;
    HRESULT STDMETHODCALLTYPE get_accChildCount(long* count) noexcept override;
    HRESULT STDMETHODCALLTYPE get_accChild(VARIANT child, IDispatch** object) noexcept override;
    HRESULT STDMETHODCALLTYPE get_accName(VARIANT child, BSTR* name) noexcept override;
    HRESULT STDMETHODCALLTYPE get_accValue(VARIANT child, BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT child, BSTR* description) noexcept override;
    HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* role) noexcept override;
    HRESULT STDMETHODCALLTYPE get_accState(VARIANT child, VARIANT* state) noexcept override;
    HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT child, BSTR* help) noexcept override;
    HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR* file, VARIANT child, long* topic) noexcept override;
    HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT child, BSTR* shortcut) noexcept override;
    HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* child) noexcept override;
    HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* children) noexcept override;
    HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT child, BSTR* action) noexcept override;
    HRESULT STDMETHODCALLTYPE accSelect(long flags, VARIANT child) noexcept override;
    HRESULT STDMETHODCALLTYPE accLocation(long* left, long* top, long* width, long* height,
                                          VARIANT child) noexcept override;
    HRESULT STDMETHODCALLTYPE accNavigate(long direction, VARIANT start, VARIANT* end) noexcept override;
    HRESULT STDMETHODCALLTYPE accHitTest(long x, long y, VARIANT* child) noexcept override;
    HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT child) noexcept override;
    HRESULT STDMETHODCALLTYPE put_accName(VARIANT child, BSTR name) noexcept override;
    HRESULT STDMETHODCALLTYPE put_accValue(VARIANT child, BSTR value) noexcept override;

private:
    ~GridAccessible() = default;
    template <class Work>
    HRESULT Guarded(Work work) const noexcept;
    template <class Make>
    HRESULT Tell(VARIANT child, BSTR* text, Make make) const noexcept;
    bool Has(const VARIANT& child) const;
    Column ColumnOf(int32_t child) const;
    std::wstring NameOf(int32_t child) const;
    std::wstring TextOf(int32_t child) const;
    long StateOf(int32_t child) const;

    ULONG references_ = 1;
    GridPane* pane_;
    Editor& editor_;
    const Grid grid_;
    IAccessible* standard_ = nullptr;  ///< the system's for the same window; may be none
};

/// The accessible object of one grid, from the first question for it until the grid goes.
class Accessible
{
public:
    Accessible() = default;
    Accessible(const Accessible&) = delete;
    Accessible& operator=(const Accessible&) = delete;
    ~Accessible() { Disconnect(); }

    LRESULT Answer(GridPane& pane, Editor& editor, Grid grid, WPARAM wParam);
    void Disconnect();

private:
    GridAccessible* object_ = nullptr;
};

}  // namespace tvn2x
