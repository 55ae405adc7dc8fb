// What one channel costs outside the driver's own operations, through COM: the registered plug-in, a parent attached,
// and a driver of this program's own whose operations answer at once.

#include <initguid.h>
#include <windows.h>

#include "NullDriver.h"
#include "Race.h"
#include "TVN2x.h"
#include "com/ComPtr.h"

namespace {

using namespace tvn2x;
using namespace tvn2x::bench;
using com::ComPtr;

template <class Object>
class Factory final : public Lasting<IClassFactory>
{
public:
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID id, void** out) noexcept override
    {
        return object_.QueryInterface(id, out);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) noexcept override { return S_OK; }

private:
    Object object_;
};

/// Answers for a class of this process before the registry is asked.
void Serve(REFCLSID classId, IUnknown* factory)
{
    DWORD cookie;
    if (FAILED(CoRegisterClassObject(classId, factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie))) {
        ExitProcess(1);
    }
}

}  // namespace

int main(int argc, char** argv)
{
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    static Factory<NullDriver> drivers;
    static Factory<NullRun> runControls;
    static NullHost parent;
    Serve(CLSID_clsReceiver, &drivers);
    Serve(CLSID_clsRunControl, &runControls);

    constexpr long channels = 100;
    ComPtr<_clsSetup> setup;
    if (FAILED(CoCreateInstance(CLSID_clsSetup, nullptr, CLSCTX_INPROC_SERVER, __uuidof(_clsSetup),
                                reinterpret_cast<void**>(setup.Put())))) {
        return 1;
    }
    const auto measure = setup.As<IMeasure>();
    setup->put_ListSize(channels);
    for (long channel = 1; channel <= channels; ++channel) {
        setup->put_Frequency(channel, 100 + 8 * channel);
        setup->put_SymbolRate(channel, 6.9);
    }
    measure->ResetMeasurement(0);
    measure->putref_Parent(&parent);

    bool good = true;
    Race race("One channel, through COM", channels);
    race.Add("IMeasure::Measure", [&] {
        for (long channel = 1; channel <= channels; ++channel) {
            VARIANT_BOOL result = VARIANT_FALSE;
            good = measure->Measure(channel, VARIANT{}, &result) == S_OK && result != VARIANT_FALSE && good;
        }
    });
    race.Run(9, 20);
    return good ? Finish(argc, argv) : 1;
}
