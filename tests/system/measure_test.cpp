// Measuring and configuring through COM: plug-in and simulated receiver together, and a parent that calls back.

#include <initguid.h>

#include "Client.h"

namespace tvn2x::client {
namespace {

constexpr short status = 13, ber = 16, mer = 27;

/// A clean network of three 256-QAM channels.
class Measure : public PlugIn
{
protected:
    Measure()
    {
        EXPECT_EQ(simulator->put_NetworkModel(Bstr(TVN_TEST_DATA L"\\clean.ini").Get()), S_OK);
        for (const wchar_t* channel : {L"Channel 1", L"Channel 2"}) {
            Set(channel, L"Order of QAM", L"256");
        }
        simulator->put_OrderOfQam(256);
        setup->put_OrderOfQam(256);
        setup->put_BerSamples(1);
        Channels({466, 474, 482});
    }

    void Resize(long channels)
    {
        setup->put_ListSize(channels);
        EXPECT_EQ(measure->ResetMeasurement(0), S_OK);
    }

    void Channels(const std::vector<double>& frequencies)
    {
        const long count = static_cast<long>(frequencies.size());
        setup->put_ListSize(count);
        for (long channel = 1; channel <= count; ++channel) {
            setup->put_Frequency(channel, frequencies[static_cast<size_t>(channel - 1)]);
            setup->put_SymbolRate(channel, 6.9);
        }
        Resize(count);
    }
};

TEST_F(Measure, FillsTheRowWithTextsAndNumbers)
{
    setup->put_Parameter(0, MP_BER, VARIANT_TRUE);
    EXPECT_TRUE(Measured(2));
    EXPECT_EQ(Cell(1, status, 2), L"Done");
    for (const short lock : {18, 19, 20}) {
        EXPECT_EQ(Cell(0, lock, 2), L"OK");
    }
    const auto results = setup.As<IResults>();
    VARIANT value{};
    value.vt = VT_BSTR;
    EXPECT_EQ(results->get_Value(mer, 2, &value), S_OK);
    ASSERT_EQ(value.vt, VT_R8);
    EXPECT_NEAR(value.dblVal, _wtof(Cell(0, mer, 2).c_str()), 0.05 + 1e-9) << "the number that the text shows";
    EXPECT_EQ(results->get_Value(status, 2, &value), S_OK);
    EXPECT_EQ(value.vt, VT_EMPTY);
    EXPECT_THAT(Cell(0, ber, 2), testing::HasSubstr(L"E-"));
}

TEST_F(Measure, ParentMayCallBackInAnyWay)
{
    const std::function<void()> callbacks[] = {
        [&] { Resize(0); },
        [&] { Resize(500); },
        [&] { measure->putref_Parent(nullptr); },
        [&] {
            VARIANT_BOOL result;
            for (const HRESULT call :
                 {measure->Measure(1, VARIANT{}, &result), measure->GetConfiguration(), measure->SetConfiguration()}) {
                EXPECT_EQ(call, RuntimeError(5));
            }
            Bstr model;
            long mode = 0;
            setup.As<ISetup>()->Load(Bstr(L"x").Get(), Bstr(L"C:\\none.ini").Get(), model.Put(), &mode, &result);
            for (short parameter = 10; parameter <= 30; ++parameter) {
                Cell(0, parameter, 1);
            }
        },
    };
    VARIANT_BOOL result;
    const std::function<void()> operations[] = {
        [&] { measure->Measure(2, VARIANT{}, &result); },
        [&] { measure->SetConfiguration(); },
        [&] { measure->GetConfiguration(); },
    };
    for (const auto& callback : callbacks) {
        for (const wchar_t* when : {L"status", L"progress", L"cell", L"channel"}) {
            for (const auto& operation : operations) {
                SCOPED_TRACE(testing::Message() << &callback - callbacks << " in " << &operation - operations);
                Channels({466, 474, 482});
                measure->putref_Parent(&parent);
                parent.onNotice = [&, when](const std::wstring& notice) {
                    if (notice == when) {
                        callback();
                    }
                    return S_OK;
                };
                operation();
                measure->putref_Parent(nullptr);
                EXPECT_EQ(parent.references, 0u);
            }
        }
    }
    Channels({466, 474, 482});
    EXPECT_TRUE(Measured(3)) << "and the object is as good as before";
}

TEST_F(Measure, ParentMayReleaseThePlugInMeanwhile)
{
    VARIANT_BOOL result = VARIANT_FALSE;
    const std::pair<const wchar_t*, std::function<HRESULT(IMeasure*)>> operations[] = {
        {L"channel", [&](IMeasure* last) { return last->Measure(1, VARIANT{}, &result); }},
        {L"progress", [](IMeasure* last) { return last->SetConfiguration(); }},
    };
    for (const auto& [when, operation] : operations) {
        auto other = Create<_clsSetup>(L"TVN2x.clsSetup");
        other->put_MaxSettlingTime(1);
        auto held = other.As<IMeasure>();
        IMeasure* const last = held.Get();
        held->ResetMeasurement(0);
        held->putref_Parent(&parent);
        parent.onNotice = [&, when = when](const std::wstring& notice) {
            if (notice == when) {
                other.Reset();
                held.Reset();
            }
            return S_OK;
        };
        EXPECT_EQ(operation(last), S_OK);
        EXPECT_EQ(parent.references, 0u) << "the object is gone, and with it its parent reference";
    }
    EXPECT_THAT(parent.statuses, testing::Contains(L"Measuring at 213 MHz"));
}

TEST_F(Measure, MissingReferenceIsRaisedAndReported)
{
    const auto errors = Create<IErrorReport>(L"XKTR2x.clsErrorReport");
    Set(L"Network", L"Installed Options", L"KTR-H2,KTR-H4,KTR-H5");
    setup->put_ReferenceSource(1);
    EXPECT_EQ(static_cast<uint32_t>(measure->SetConfiguration()), 0x800407D5u);
    const RaisedError error = LastError();
    EXPECT_EQ(error.source, L"clsSetup.SetConfiguration");
    EXPECT_EQ(error.description, L"External 10MHz reference input is not fitted, internal reference will be used");
    EXPECT_EQ(Get(errors, &IErrorReport::get_Description), L"Let Setup10MhzRef not available");
}

TEST_F(Measure, ObjectThatIsNoParentIsRefused)
{
    const auto timeout = Create<IDispatch>(L"TVN2x.clsTimeout");
    EXPECT_EQ(measure->putref_Parent(timeout.Get()), RuntimeError(438));
    EXPECT_THAT(LastError().description, testing::HasSubstr(L"Status")) << "the name that it lacks";
    EXPECT_TRUE(Measured(1)) << "without a parent, as before";
}

}  // namespace
}  // namespace tvn2x::client
