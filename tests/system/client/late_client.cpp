// A channel from a program that knows no header of ours and calls every member by its name: SETUP NETWORK CHANNEL.
// Prints whether it is loaded, and the channel's frame synchronisation.

#include <windows.h>

#include <oleauto.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

/// What goes to a member and comes back of it; whatever it holds lives as long as the program.
struct Value : VARIANT
{
    Value() { VariantInit(this); }
    Value(const wchar_t* text) : Value()
    {
        vt = VT_BSTR;
        bstrVal = SysAllocString(text);
    }
    Value(long number) : Value()
    {
        vt = VT_I4;
        lVal = number;
    }
    Value(double number) : Value()
    {
        vt = VT_R8;
        dblVal = number;
    }
};

void Check(HRESULT result)
{
    if (FAILED(result)) {
        throw std::runtime_error("it fails with " + std::to_string(result));
    }
}

Value Invoke(const Value& object, const wchar_t* name, WORD kind, std::initializer_list<Value> arguments)
{
    IDispatch* const callee = object.pdispVal;
    auto* writable = const_cast<wchar_t*>(name);
    DISPID member, put = DISPID_PROPERTYPUT;
    Check(callee->GetIDsOfNames(IID_NULL, &writable, 1, LOCALE_USER_DEFAULT, &member));
    std::vector<VARIANT> reversed(arguments.begin(), arguments.end());
    std::reverse(reversed.begin(), reversed.end());
    const bool isPut = kind == DISPATCH_PROPERTYPUT;
    DISPPARAMS parameters{reversed.data(), isPut ? &put : nullptr, static_cast<UINT>(reversed.size()), isPut ? 1u : 0u};
    Value result;
    Check(callee->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters, &result, nullptr, nullptr));
    return result;
}

Value Get(const Value& object, const wchar_t* name, std::initializer_list<Value> arguments = {})
{
    return Invoke(object, name, DISPATCH_PROPERTYGET | DISPATCH_METHOD, arguments);
}

void Measure(wchar_t** words)
{
    CLSID id;
    Value setup;
    Check(CLSIDFromProgID(L"TVN2x.clsSetup", &id));
    Check(
        CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(&setup.pdispVal)));
    const Value loaded = Get(Get(setup, L"Setup"), L"Load", {L"TVN Host", words[1], L"2x", 4L});
    const Value simulator = Get(Get(setup, L"Driver"), L"Settings");
    Invoke(simulator, L"NetworkModel", DISPATCH_PROPERTYPUT, {words[2]});
    Invoke(simulator, L"TimeScale", DISPATCH_PROPERTYPUT, {0.01});
    const Value measurement = Get(setup, L"Measurement");
    const long channel = std::wcstol(words[3], nullptr, 10);
    Get(measurement, L"SetConfiguration");
    Get(measurement, L"ResetMeasurement", {0L});
    const Value measured = Get(measurement, L"Measure", {channel});
    const Value frame = Get(measurement, L"Result", {0L, 20L, channel});
    std::printf("%s %s %ls\n", loaded.boolVal ? "true" : "false", measured.boolVal ? "true" : "false", frame.bstrVal);
}

}  // namespace

int wmain(int, wchar_t** words)
{
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    try {
        Measure(words);
        return 0;
    } catch (const std::exception& error) {
        std::printf("%s\n", error.what());
        return 2;
    }
}
