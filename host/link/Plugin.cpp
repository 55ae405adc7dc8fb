#include "host/link/Plugin.h"

#include <objbase.h>

#include "host/setup/Product.h"
#include "text/InputError.h"

#include "fmt/format.h"
#include "fmt/xchar.h"

namespace tvn2x {
namespace {

constexpr wchar_t pluginLibrary[] = L"TVN2x";
constexpr wchar_t driverLibrary[] = L"XKTR2x";

/// error 429 is what automation clients know a class by that cannot be created.
template <class Interface>
com::ComPtr<Interface> Create(REFCLSID classId, const wchar_t* library, const wchar_t* role)
{
    com::ComPtr<Interface> object;
    const HRESULT result = CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface),
                                            reinterpret_cast<void**>(object.Put()));
    if (FAILED(result)) {
        throw RaisedError(error::cannotCreateObject, L"tvnhost",
                          fmt::format(L"the {} {} cannot be created (0x{:08X}). Register its library as "
                                      L"administrator: regsvr32 {}.dll",
                                      role, library, static_cast<uint32_t>(result), library));
    }
    return object;
}

/// The driver's own settings object, of which nothing is known; it may be none.
com::ComPtr<IDispatch> DriverSettings(const Plugin& plugin)
{
    return com::ComPtr<IDispatch>::Attach(Get<IDispatch*>(plugin.driver, &IDriver::get_Settings));
}

template <class Interface, class Other>
com::ComPtr<Interface> Need(const com::ComPtr<Other>& object, const wchar_t* name)
{
    auto other = object.template As<Interface>();
    if (!other) {
        throw RaisedError(
            E_NOINTERFACE, L"tvnhost",
            fmt::format(L"the plug-in {} does not offer {}. Register the version that belongs to this host",
                        pluginLibrary, name));
    }
    return other;
}

}  // namespace

Plugin::Plugin()
    : document(Create<_clsSetup>(__uuidof(clsSetup), pluginLibrary, L"plug-in")),
      setup(Need<ISetup>(document, L"ISetup")),
      measure(Need<IMeasure>(document, L"IMeasure")),
      driver(Need<IDriver>(document, L"IDriver")),
      check(Need<ICheckHardware>(document, L"ICheckHardware")),
      results(Need<IResults>(document, L"IResults"))
{
}

void Plugin::Load(const std::wstring& path) const
{
    com::Bstr model(L"2x");
    BSTR modelArgument = model.Detach();
    long mode = 4;
    VARIANT_BOOL loaded = VARIANT_FALSE;
    const HRESULT result = com::Outside([&] {
        return setup->Load(com::Bstr(productName).Get(), com::Bstr(path).Get(), &modelArgument, &mode, &loaded);
    });
    *model.Put() = modelArgument;
    com::Check(result, setup.Get());
    if (!loaded) {
        RaiseInput(path +
                   L": the plug-in refuses the setup (it says no reason). Make one with: tvnhost import PLAN -o "
                   L"SETUP");
    }
    Call(setup, &ISetup::put_Mode, mode);
}

AttachedParent::AttachedParent(const Plugin& plugin, IDispatch* parent) : plugin_(plugin)
{
    Call(plugin_.measure, &IMeasure::putref_Parent, parent);
}

AttachedParent::~AttachedParent()
{
    plugin_.measure->putref_Parent(nullptr);
}

com::ComPtr<IRunControl> CreateRunControl()
{
    return Create<IRunControl>(__uuidof(clsRunControl), driverLibrary, L"instrument driver");
}

com::ComPtr<IErrorReport> CreateErrorReport()
{
    return Create<IErrorReport>(__uuidof(clsErrorReport), driverLibrary, L"instrument driver");
}

std::unique_ptr<DriverInstead> ChooseReceiver(const std::wstring& which)
{
    try {
        return which.empty() ? nullptr : std::make_unique<DriverInstead>(FindDriver(which, L"--receiver"));
    } catch (const RaisedError& error) {
        RaiseInput(error.description);
    }
}

com::ComPtr<IRecordingsSettings> RecordingsSettings(const Plugin& plugin)
{
    auto recordings = DriverSettings(plugin).As<IRecordingsSettings>();
    if (!recordings) {
        RaiseInput(
            L"--signals is for the receiver of recorded signals, and this one is another. Leave it out, or choose that "
            L"one: --receiver recordings");
    }
    return recordings;
}

com::ComPtr<IChannelDetails> ChannelDetailsOf(const Plugin& plugin)
{
    return DriverSettings(plugin).As<IChannelDetails>();
}

com::ComPtr<ISimulatorSettings> SimulatorSettings(const Plugin& plugin)
{
    auto simulator = DriverSettings(plugin).As<ISimulatorSettings>();
    if (!simulator) {
        RaiseInput(
            L"--network and --time-scale are for the simulated receiver, and this one is another. Leave them out, or "
            L"choose the simulated one: --receiver simulated");
    }
    return simulator;
}

std::wstring ErrorText(const RaisedError& raised)
{
    if (raised.number == unusableInput && raised.source == L"tvnhost") {
        return raised.description;
    }
    const bool isHresult = raised.number < 0 || raised.number > 65535;
    std::wstring text = fmt::format(
        L"error {}{}: {}",
        isHresult ? fmt::format(L"0x{:08X}", static_cast<uint32_t>(raised.number)) : std::to_wstring(raised.number),
        raised.source.empty() || raised.source == L"tvnhost" ? L"" : L" from " + raised.source, raised.description);
    if (raised.number == error::cannotCreateObject && raised.source != L"tvnhost" &&
        raised.description.starts_with(L"ActiveX")) {
        text +=
            fmt::format(L". Register the instrument driver library as administrator: regsvr32 {}.dll", driverLibrary);
    }
    return text;
}

}  // namespace tvn2x
