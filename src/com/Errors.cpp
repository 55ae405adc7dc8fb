#include "com/Errors.h"

#include <windows.h>

#include <new>
#include <string>

#include "com/ComPtr.h"
#include "com/Text.h"

namespace tvn2x::com {
namespace {

constexpr uint32_t runtimeErrors = 0x800A0000;  // the facility of numbered run-time errors

std::wstring SystemText(HRESULT result)
{
    wchar_t text[512];
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                  static_cast<DWORD>(result), 0, text, 512, nullptr);
    while (length && (text[length - 1] == L'\n' || text[length - 1] == L'\r' || text[length - 1] == L' '))
        --length;
    return length ? std::wstring(text, length) : L"Automation error";
}

}  // namespace

HRESULT HresultOf(int32_t number)
{
    if (number >= 1 && number <= 65535)
        return static_cast<HRESULT>(runtimeErrors | static_cast<uint32_t>(number));
    // A number that reads as success would turn an error into none.
    return number < 0 ? number : E_FAIL;
}

int32_t NumberOf(HRESULT result)
{
    const auto bits = static_cast<uint32_t>(result);
    return (bits & 0xFFFF0000) == runtimeErrors ? static_cast<int32_t>(bits & 0xFFFF) : result;
}

HRESULT Report(const RaisedError& error, REFIID interfaceId) noexcept
{
    ComPtr<ICreateErrorInfo> create;
    if (SUCCEEDED(CreateErrorInfo(create.Put()))) {
        create->SetGUID(interfaceId);
        create->SetSource(const_cast<LPOLESTR>(error.source.c_str()));
        create->SetDescription(const_cast<LPOLESTR>(error.description.c_str()));
        if (const auto info = create.As<IErrorInfo>())
            SetErrorInfo(0, info.Get());
    }
    return HresultOf(error.number);
}

HRESULT Refuse(HRESULT result) noexcept
{
    SetErrorInfo(0, nullptr);
    return result;
}

HRESULT ReportCurrentException(REFIID interfaceId) noexcept
{
    // Error information of an earlier call must not be taken for this failure's.
    SetErrorInfo(0, nullptr);
    try {
        throw;
    } catch (const RaisedError& error) {
        return Report(error, interfaceId);
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

void ThrowFailure(HRESULT result, IUnknown* callee, REFIID interfaceId)
{
    Bstr source, description;
    ComPtr<IErrorInfo> info;
    const auto support = ComPtr<IUnknown>(callee).As<ISupportErrorInfo>();
    if (support && support->InterfaceSupportsErrorInfo(interfaceId) == S_OK && GetErrorInfo(0, info.Put()) == S_OK) {
        info->GetSource(source.Put());
        info->GetDescription(description.Put());
    }
    std::wstring text(description.View());
    throw RaisedError(NumberOf(result), std::wstring(source.View()), text.empty() ? SystemText(result) : text);
}

void ThrowInvokeFailure(HRESULT result, EXCEPINFO& info)
{
    if (result != DISP_E_EXCEPTION)
        throw RaisedError(NumberOf(result), {}, SystemText(result));
    if (info.pfnDeferredFillIn)
        info.pfnDeferredFillIn(&info);
    const std::wstring source(ViewOf(info.bstrSource)), description(ViewOf(info.bstrDescription));
    SysFreeString(info.bstrSource);
    SysFreeString(info.bstrDescription);
    SysFreeString(info.bstrHelpFile);
    throw RaisedError(info.wCode ? info.wCode : NumberOf(info.scode), source, description);
}

}  // namespace tvn2x::com
