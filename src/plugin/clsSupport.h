#pragma once

#include <windows.h>

#include <string>

#include "TVN2x.h"
#include "TVNINT.h"
#include "com/Object.h"

namespace tvn2x {

/// Tells the host whom to contact for support.
class clsSupport final : public com::Object<ISupport, ::clsSupport>
{
public:
    HRESULT STDMETHODCALLTYPE get_Address(BSTR* value) noexcept override { return Text(value, address_); }
    HRESULT STDMETHODCALLTYPE get_Email(BSTR* value) noexcept override { return Text(value, email_); }
    HRESULT STDMETHODCALLTYPE get_Fax(BSTR* value) noexcept override { return Text(value, fax_); }
    HRESULT STDMETHODCALLTYPE get_Phone(BSTR* value) noexcept override { return Text(value, phone_); }

private:
    static HRESULT Text(BSTR* out, const std::wstring& text) noexcept
    {
        return Get(out, [&]() -> std::wstring_view { return text; });
    }

    const std::wstring address_;
    const std::wstring email_ = L"support@tvn2x.example";
    const std::wstring fax_ = L"+44 1632 960961";
    const std::wstring phone_ = L"+44 1632 960960";
};

}  // namespace tvn2x
