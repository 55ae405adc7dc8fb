// A measurement through COM: plug-in and simulated receiver together, and a parent that calls back.

#include <initguid.h>

#include "Client.h"

namespace tvn2x::client {
namespace {

constexpr short userField = 10, status = 13, ber = 16, mer = 27;

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
            setup->put_UserField(channel, Bstr(L"channel " + std::to_wstring(channel)).Get());
        }
        Resize(count);
    }
};

TEST_F(Measure, FillsTheRowAndTellsTheParent)
{
    measure->putref_Parent(&parent);
    setup->put_Parameter(0, MP_BER, VARIANT_TRUE);
    EXPECT_TRUE(Measured(2));
    EXPECT_THAT(parent.statuses, testing::ElementsAre(L"Synchronising at 474 MHz", L"Measuring at 474 MHz"));
    EXPECT_GT(parent.cells, 18);
    EXPECT_EQ(Cell(1, status, 2), L"Done");
    EXPECT_EQ(Cell(1, userField, 2), L"channel 2");
    for (const short lock : {18, 19, 20}) {
        EXPECT_EQ(Cell(0, lock, 2), L"OK");
    }
    EXPECT_GT(_wtof(Cell(0, mer, 2).c_str()), 30) << "a clean channel";
    EXPECT_THAT(Cell(0, ber, 2), testing::HasSubstr(L"E-"));
    EXPECT_EQ(Cell(1, status, 1), L"Un-measured");
    measure->putref_Parent(nullptr);
    EXPECT_EQ(parent.references, 0u);
}

TEST_F(Measure, ParentMayCallBackInAnyWay)
{
    const std::function<void()> callbacks[] = {
        [&] { Resize(0); },
        [&] { Resize(500); },
        [&] { measure->putref_Parent(nullptr); },
        [&] {
            VARIANT_BOOL result;
            EXPECT_EQ(measure->Measure(1, VARIANT{}, &result), RuntimeError(5));
            Bstr model;
            long mode = 0;
            setup.As<ISetup>()->Load(Bstr(L"x").Get(), Bstr(L"C:\\none.ini").Get(), model.Put(), &mode, &result);
            for (short parameter = 10; parameter <= 30; ++parameter) {
                Cell(0, parameter, 1);
            }
        },
    };
    for (const auto& callback : callbacks) {
        for (const wchar_t* when : {L"status", L"progress", L"cell", L"channel"}) {
            SCOPED_TRACE(testing::Message() << &callback - callbacks);
            Channels({466, 474, 482});
            measure->putref_Parent(&parent);
            parent.onNotice = [&, when](const std::wstring& notice) {
                if (notice == when) {
                    callback();
                }
                return S_OK;
            };
            VARIANT_BOOL result;
            measure->Measure(2, VARIANT{}, &result);
            measure->putref_Parent(nullptr);
            EXPECT_EQ(parent.references, 0u);
        }
    }
    Channels({466, 474, 482});
    EXPECT_TRUE(Measured(3)) << "and the object is as good as before";
}

TEST_F(Measure, ParentMayReleaseThePlugInDuringTheScan)
{
    IMeasure* last = measure.Get();
    measure->putref_Parent(&parent);
    parent.onNotice = [&](const std::wstring& notice) {
        if (notice == L"channel") {
            setup.Reset();
            measure.Reset();
            driver.Reset();
        }
        return S_OK;
    };
    VARIANT_BOOL result = VARIANT_FALSE;
    EXPECT_EQ(last->Measure(1, VARIANT{}, &result), S_OK);
    EXPECT_EQ(parent.references, 0u) << "the object is gone, and with it its parent reference";
    EXPECT_EQ(parent.statuses.back(), L"Measuring at 466 MHz");
}

TEST_F(Measure, ObjectThatIsNoParentAndIndexOutsideTheListAreRefused)
{
    const auto timeout = Create<IDispatch>(L"TVN2x.clsTimeout");
    EXPECT_EQ(measure->putref_Parent(timeout.Get()), RuntimeError(438));
    EXPECT_THAT(LastError().description, testing::HasSubstr(L"Status")) << "the name that it lacks";
    EXPECT_TRUE(Measured(1)) << "without a parent, as before";
    VARIANT_BOOL result;
    Bstr text;
    for (const HRESULT call :
         {measure->Measure(4, VARIANT{}, &result), measure->Measure(0, VARIANT{}, &result),
          measure->get_Result(3, status, 1, text.Put()), measure->get_Result(0, 9, 1, text.Put())}) {
        EXPECT_EQ(call, RuntimeError(9));
    }
}

TEST_F(Measure, ResultHasTheNumberThatItsTextShows)
{
    const auto results = setup.As<IResults>();
    const auto valueOf = [&](short parameter, long channel) {
        VARIANT value{};
        value.vt = VT_BSTR;
        EXPECT_EQ(results->get_Value(parameter, channel, &value), S_OK);
        EXPECT_THAT(value.vt, testing::AnyOf(VT_R8, VT_EMPTY));
        return value.vt == VT_R8 ? std::optional(value.dblVal) : std::nullopt;
    };
    EXPECT_EQ(valueOf(mer, 1), std::nullopt);
    EXPECT_TRUE(Measured(1));
    ASSERT_TRUE(valueOf(mer, 1).has_value());
    EXPECT_NEAR(*valueOf(mer, 1), std::stod(Cell(0, mer, 1)), 0.05 + 1e-9);
    EXPECT_EQ(valueOf(status, 1), std::nullopt);
    EXPECT_EQ(results->put_Result(0, mer, 1, Bstr(Cell(0, mer, 1)).Get()), S_OK);
    EXPECT_EQ(valueOf(mer, 1), std::nullopt) << "a text that was put back";
    EXPECT_EQ(results->get_Value(mer, 1, nullptr), E_POINTER);
}

}  // namespace
}  // namespace tvn2x::client
