#include "com/Errors.h"

#include <windows.h>

#include <new>
#include <string>

#include "com/Call.h"
#include "com/ComPtr.h"
#include "com/Text.h"

namespace tvn2x::com {
namespace {

constexpr uint32_t runtimeErrors = 0x800A0000;  // the facility of numbered run-time errors

bool CanBeCarried(int32_t number)
{
    return number < 0 || (number >= 1 && number <= 65535);
}

/// A text of an error information object, which may be anybody's. What comes with a failure is not looked at.
std::wstring TextOf(IErrorInfo* info, HRESULT (STDMETHODCALLTYPE IErrorInfo::*text)(BSTR*))
{
    BSTR value = nullptr;
    if (FAILED((info->*text)(&value))) {
        return {};
    }
    return std::wstring(Bstr::Attach(value).View());
}

std::wstring TakeText(BSTR text)
{
    return std::wstring(Bstr::Attach(text).View());
}

}  // namespace

HRESULT HresultOf(int32_t number)
{
    // A number that reads as success would turn an error into none.
    if (!CanBeCarried(number)) {
        return E_FAIL;
    }
    return number < 0 ? number : static_cast<HRESULT>(runtimeErrors | static_cast<uint32_t>(number));
}

int32_t NumberOf(HRESULT result)
{
    const auto bits = static_cast<uint32_t>(result);
    return (bits & 0xFFFF0000) == runtimeErrors && bits != runtimeErrors ? static_cast<int32_t>(bits & 0xFFFF) : result;
}

std::wstring SystemText(HRESULT result)
{
    wchar_t text[512];
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                  static_cast<DWORD>(result), 0, text, 512, nullptr);
    while (length && (text[length - 1] == L'\n' || text[length - 1] == L'\r' || text[length - 1] == L' ')) {
        --length;
    }
    return length ? std::wstring(text, length) : L"Automation error";
}

HRESULT Report(const RaisedError& error, REFIID interfaceId) noexcept
try {
    const std::wstring description =
        CanBeCarried(error.number) ? error.description : std::to_wstring(error.number) + L": " + error.description;
    ComPtr<ICreateErrorInfo> create;
    if (SUCCEEDED(CreateErrorInfo(create.Put()))) {
        create->SetGUID(interfaceId);
        create->SetSource(const_cast<LPOLESTR>(error.source.c_str()));
        create->SetDescription(const_cast<LPOLESTR>(description.c_str()));
        create->SetHelpFile(const_cast<LPOLESTR>(error.helpFile.c_str()));
        create->SetHelpContext(error.helpContext);
        if (const auto info = create.As<IErrorInfo>()) {
            SetErrorInfo(0, info.Get());
        }
    }
    return HresultOf(error.number);
} catch (...) {
    return HresultOf(error.number);  // bare: there is no memory for words
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

void TakeErrorInfo(RaisedError& error)
{
    ComPtr<IErrorInfo> info;
    if (GetErrorInfo(0, info.Put()) != S_OK || !info) {
        return;
    }
    error.source = TextOf(info.Get(), &IErrorInfo::GetSource);
    const std::wstring description = TextOf(info.Get(), &IErrorInfo::GetDescription);
    if (!description.empty()) {
        error.description = description;
    }
    error.helpFile = TextOf(info.Get(), &IErrorInfo::GetHelpFile);
    DWORD context = 0;
    if (SUCCEEDED(info->GetHelpContext(&context))) {
        error.helpContext = context;
    }
}

void ThrowFailure(HRESULT result, IUnknown* callee, REFIID interfaceId)
{
    const OwnFloatingPointAfterwards after;
    RaisedError error(NumberOf(result), {}, SystemText(result));
    const auto support = ComPtr<IUnknown>(callee).As<ISupportErrorInfo>();
    if (support && support->InterfaceSupportsErrorInfo(interfaceId) == S_OK) {
        TakeErrorInfo(error);
    }
    throw error;
}

void ThrowInvokeFailure(HRESULT result, EXCEPINFO& info)
{
    if (result != DISP_E_EXCEPTION) {
        throw RaisedError(NumberOf(result), {}, SystemText(result));
    }
    // An object that cannot say what it has put off has said nothing that could be read or freed.
    if (info.pfnDeferredFillIn && FAILED(Outside([&] { return info.pfnDeferredFillIn(&info); }))) {
        throw RaisedError(E_FAIL, {}, SystemText(E_FAIL));
    }
    const int32_t ofStatus = info.scode ? NumberOf(info.scode) : E_FAIL;
    RaisedError error(info.wCode ? info.wCode : ofStatus, TakeText(info.bstrSource), TakeText(info.bstrDescription));
    error.helpFile = TakeText(info.bstrHelpFile);
    error.helpContext = info.dwHelpContext;
    if (error.description.empty()) {
        error.description = SystemText(HresultOf(error.number));
    }
    throw error;
}

}  // namespace tvn2x::com
