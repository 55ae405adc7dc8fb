// Scans a network with the plug-in from C++: loads a setup, checks and configures the receiver, measures every channel,
// prints a line for each.
//
//     example_scan SETUP [NETWORK]
//
// NETWORK is a network model for the simulated receiver; leave it out with a real one. Exit codes: 0 every channel
// synchronised, 1 some channel not, 2 the setup cannot be loaded or the receiver cannot do it.
//
// Needs the headers of the developers' kit (the build makes them of interfaces/*.idl, in build/win64/contracts), and
// nothing else of this product:
//
//     x86_64-w64-mingw32-g++-posix -std=c++20 -municode -static -I include examples/scan.cpp
//         -o scan.exe -lole32 -loleaut32 -luuid

#include <windows.h>

#include <oleauto.h>

#include <initguid.h>

#include "TVN2x.h"
#include "TVNINT.h"
#include "XKTR2x.h"

#include <cstdio>
#include <cwchar>
#include <stdexcept>
#include <string>

namespace {

constexpr wchar_t productName[] = L"TVN Host";

/// Counts one reference.
template <class Interface>
class Reference
{
public:
    Reference() = default;
    Reference(const Reference&) = delete;
    Reference& operator=(const Reference&) = delete;
    ~Reference()
    {
        if (pointer_) {
            pointer_->Release();
        }
    }
    Interface* operator->() const { return pointer_; }
    Interface** Put() { return &pointer_; }
    void** PutVoid() { return reinterpret_cast<void**>(&pointer_); }

private:
    Interface* pointer_ = nullptr;
};

class Text
{
public:
    explicit Text(const wchar_t* text = L"") : text_(SysAllocString(text)) {}
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    ~Text() { SysFreeString(text_); }
    BSTR Get() const { return text_; }
    BSTR* InOut() { return &text_; }
    BSTR* Out()
    {
        SysFreeString(text_);
        text_ = nullptr;
        return &text_;
    }
    const wchar_t* Characters() const { return text_ ? text_ : L""; }

private:
    BSTR text_;
};

std::string ToUtf8(const wchar_t* text)
{
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::string result(size > 0 ? static_cast<size_t>(size) : 1, '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, result.data(), size, nullptr, nullptr);
    result.pop_back();
    return result;
}

/// A failed call leaves number, source and description behind.
void Check(HRESULT result)
{
    if (SUCCEEDED(result)) {
        return;
    }
    Text source, description;
    Reference<IErrorInfo> info;
    if (GetErrorInfo(0, info.Put()) == S_OK) {
        info->GetSource(source.Out());
        info->GetDescription(description.Out());
    }
    char number[24];
    std::snprintf(number, sizeof number, "error 0x%08lX", static_cast<unsigned long>(result));
    throw std::runtime_error(std::string(number) + " from " + ToUtf8(source.Characters()) + ": " +
                             ToUtf8(description.Characters()));
}

/// The plug-in tells this object what it does. It offers the plug-in's own interface, so that nothing is looked up by
/// name; it lives on the stack, longer than the plug-in's object.
class ScanParent final : public IMeasureParent
{
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) noexcept override
    {
        const bool isOurs = id == IID_IUnknown || id == IID_IDispatch || id == IID_IMeasureParent;
        *out = isOurs ? this : nullptr;
        return isOurs ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return 2; }
    ULONG STDMETHODCALLTYPE Release() noexcept override { return 1; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override { return *count = 0, S_OK; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) noexcept override
    {
        return E_NOTIMPL;
    }

    HRESULT STDMETHODCALLTYPE Status(BSTR text) noexcept override
    {
        std::fprintf(stderr, "  %s\n", ToUtf8(text ? text : L"").c_str());
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Progress(double, VARIANT) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE CellChanged(LONG, SHORT) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE ChannelStart(double, VARIANT) noexcept override { return S_OK; }
};

/// The one object of the plug-in by the interfaces that a scan needs.
struct Plugin
{
    Plugin()
    {
        Check(CoCreateInstance(CLSID_clsSetup, nullptr, CLSCTX_INPROC_SERVER, IID__clsSetup, document.PutVoid()));
        Check(document->QueryInterface(IID_ISetup, setup.PutVoid()));
        Check(document->QueryInterface(IID_IMeasure, measure.PutVoid()));
        Check(document->QueryInterface(IID_IDriver, driver.PutVoid()));
        Check(document->QueryInterface(IID_ICheckHardware, check.PutVoid()));
    }

    Reference<_clsSetup> document;
    Reference<ISetup> setup;
    Reference<IMeasure> measure;
    Reference<IDriver> driver;
    Reference<ICheckHardware> check;
};

void Load(const Plugin& plugin, const wchar_t* path)
{
    // The plug-in takes a file's folder from its path.
    wchar_t full[MAX_PATH];
    const DWORD length = GetFullPathNameW(path, MAX_PATH, full, nullptr);
    if (length == 0 || length >= MAX_PATH) {
        throw std::runtime_error("the path is too long: " + ToUtf8(path));
    }
    Text model(L"2x");
    LONG mode = 4;
    VARIANT_BOOL loaded = VARIANT_FALSE;
    Check(plugin.setup->Load(Text(productName).Get(), Text(full).Get(), model.InOut(), &mode, &loaded));
    if (!loaded) {
        throw std::runtime_error("the setup cannot be loaded: " + ToUtf8(full));
    }
    Check(plugin.setup->put_Mode(mode));
}

void UseNetwork(const Plugin& plugin, const wchar_t* path)
{
    Reference<IDispatch> settings;
    Reference<ISimulatorSettings> simulator;
    Check(plugin.driver->get_Settings(settings.Put()));
    Check(settings->QueryInterface(IID_ISimulatorSettings, simulator.PutVoid()));
    Check(simulator->put_NetworkModel(Text(path).Get()));
}

/// Can this receiver do what the setup asks for?
void RequireReceiver(const Plugin& plugin)
{
    LONG mode = 0;
    VARIANT_BOOL reference = VARIANT_FALSE, input = VARIANT_FALSE, filter = VARIANT_FALSE;
    Check(plugin.check->Mode(&mode));
    Check(plugin.check->ExtRef(&reference));
    Check(plugin.check->InputPort(&input));
    Check(plugin.check->SawFilterBw(&filter));
    const std::string missing = std::string(mode ? "" : " operating mode") + (reference ? "" : " external reference") +
                                (input ? "" : " input port") + (filter ? "" : " SAW filter");
    if (!missing.empty()) {
        Text serialNumber;
        Check(plugin.driver->get_SerialNumber(serialNumber.Out()));
        throw std::runtime_error("receiver " + ToUtf8(serialNumber.Characters()) +
                                 " has not got the setup's:" + missing);
    }
}

std::string Result(const Plugin& plugin, MP_TYPES parameter, LONG channel)
{
    Text cell;
    Check(plugin.measure->get_Result(0, static_cast<SHORT>(parameter), channel, cell.Out()));
    return ToUtf8(cell.Characters());
}

/// Measures a channel and prints it; true where it is synchronised.
bool Measure(const Plugin& plugin, LONG channel)
{
    Text label, unit;
    double frequency = 0;
    VARIANT_BOOL good = VARIANT_FALSE;
    Check(plugin.measure->Measure(channel, VARIANT{}, &good));
    Check(plugin.document->get_UserField(channel, label.Out()));
    Check(plugin.document->get_LevelUnit(unit.Out()));
    Check(plugin.document->get_Frequency(channel, &frequency));
    const std::string frame = Result(plugin, MP_DATA, channel);
    std::printf("%s  %g MHz  level %s %s  MER %s dB  BER %s  frame %s\n", ToUtf8(label.Characters()).c_str(), frequency,
                Result(plugin, MP_RFLEV, channel).c_str(), ToUtf8(unit.Characters()).c_str(),
                Result(plugin, MP_MER, channel).c_str(), Result(plugin, MP_BER, channel).c_str(), frame.c_str());
    return frame == "OK";
}

int Scan(const Plugin& plugin, ScanParent& parent)
{
    Check(plugin.measure->putref_Parent(&parent));
    Check(plugin.measure->SetConfiguration());
    Check(plugin.measure->ResetMeasurement(0));
    LONG channels = 0, synchronised = 0;
    Check(plugin.document->get_ListSize(&channels));
    for (LONG channel = 1; channel <= channels; ++channel) {
        synchronised += Measure(plugin, channel) ? 1 : 0;
    }
    Check(plugin.measure->putref_Parent(nullptr));
    std::printf("%ld of %ld channels synchronised\n", synchronised, channels);
    return synchronised == channels ? 0 : 1;
}

int Run(int count, wchar_t** words)
{
    ScanParent parent;  // outlives the plug-in's object, whatever ends the scan
    const Plugin plugin;
    Load(plugin, words[1]);
    if (count > 2) {
        UseNetwork(plugin, words[2]);
    }
    RequireReceiver(plugin);
    return Scan(plugin, parent);
}

}  // namespace

int wmain(int count, wchar_t** words)
{
    if (count < 2) {
        std::fputs("usage: example_scan SETUP [NETWORK]\n", stderr);
        return 2;
    }
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    int exitCode = 2;
    try {
        exitCode = Run(count, words);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "example_scan: %s\n", error.what());
    }
    CoUninitialize();
    return exitCode;
}
