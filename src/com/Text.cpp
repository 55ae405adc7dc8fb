#include "com/Text.h"

#include <new>
#include <utility>

namespace tvn2x::com {

Bstr::Bstr(std::wstring_view text) : text_(NewBstr(text)) {}

BSTR Bstr::Detach()
{
    return std::exchange(text_, nullptr);
}

BSTR* Bstr::Put()
{
    SysFreeString(Detach());
    return &text_;
}

std::wstring_view Bstr::View() const
{
    return ViewOf(text_);
}

std::wstring_view ViewOf(BSTR text)
{
    return {text ? text : L"", SysStringLen(text)};
}

std::wstring TextOf(REFGUID id)
{
    wchar_t text[40];
    StringFromGUID2(id, text, 40);
    return text;
}

BSTR NewBstr(std::wstring_view text)
{
    BSTR result = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    if (!result) {
        throw std::bad_alloc();
    }
    return result;
}

}  // namespace tvn2x::com
