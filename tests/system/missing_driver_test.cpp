// What a client sees where the driver library is not registered. Takes the registration away while it runs.

#include <initguid.h>

#include "Client.h"

namespace tvn2x::client {
namespace {

class MissingDriver : public Apartment
{
protected:
    MissingDriver() { Call("DllUnregisterServer"); }
    ~MissingDriver() override { Call("DllRegisterServer"); }

private:
    static void Call(const char* entry)
    {
        const HMODULE library = LoadLibraryW(TVN_PRODUCT_FOLDER L"\\XKTR2x.dll");
        ASSERT_TRUE(library);
        const auto function =
            reinterpret_cast<HRESULT(STDMETHODCALLTYPE*)()>(reinterpret_cast<void*>(GetProcAddress(library, entry)));
        EXPECT_EQ(function(), S_OK);
        FreeLibrary(library);
    }
};

TEST_F(MissingDriver, EveryMemberThatNeedsItRaises429AndSaysWhy)
{
    const auto setup = Create<_clsSetup>(L"TVN2x.clsSetup");
    const auto driver = setup.As<IDriver>();
    const auto measure = setup.As<IMeasure>();
    const auto check = setup.As<ICheckHardware>();
    setup->put_ReferenceSource(1);
    ASSERT_EQ(measure->ResetMeasurement(0), S_OK);
    Bstr text;
    long mode = 0;
    VARIANT_BOOL flag;
    ComPtr<IDispatch> settings;
    const std::function<HRESULT()> members[] = {
        [&] { return driver->get_FirmwareVersion(text.Put()); },
        [&] { return driver->get_InstalledHardware(text.Put()); },
        [&] { return driver->get_SerialNumber(text.Put()); },
        [&] { return driver->get_Online(&flag); },
        [&] { return driver->put_Online(VARIANT_TRUE); },
        [&] { return driver->get_Settings(settings.Put()); },
        [&] { return measure->Measure(1, VARIANT{}, &flag); },
        [&] { return measure->GetConfiguration(); },
        [&] { return measure->SetConfiguration(); },
        [&] { return check->ExtRef(&flag); },
        [&] { return check->InputPort(&flag); },
        [&] { return check->Mode(&mode); },
        [&] { return check->SawFilterBw(&flag); },
    };
    const std::wstring why = L"ActiveX component can't create object: XKTR2x.clsReceiver is not registered for " +
                             std::to_wstring(8 * sizeof(void*)) + L"-bit programs";
    for (const auto& member : members) {
        EXPECT_EQ(member(), RuntimeError(429));
        EXPECT_EQ(LastError().description, why);
    }
}

TEST_F(MissingDriver, NobodyIsIdentifiedAndNoModeActivated)
{
    const auto setup = Create<_clsSetup>(L"TVN2x.clsSetup");
    BSTR texts[] = {Bstr(L"old").Detach(), Bstr(L"old").Detach()};
    long mode = 7;
    VARIANT_BOOL flag = VARIANT_TRUE;
    EXPECT_EQ(setup.As<IDriver>()->Test(&texts[0], &texts[1], &mode, &flag), S_OK);
    EXPECT_EQ(flag, VARIANT_FALSE);
    const Bstr identity = Bstr::Attach(texts[0]), hardware = Bstr::Attach(texts[1]);
    EXPECT_EQ(identity.View(), L"");
    EXPECT_EQ(hardware.View(), L"old");
    EXPECT_EQ(mode, 7);
    flag = VARIANT_TRUE;
    EXPECT_EQ(setup.As<ICheckHardware>()->ActivateMode(&flag), S_OK);
    EXPECT_EQ(flag, VARIANT_FALSE);
}

}  // namespace
}  // namespace tvn2x::client
