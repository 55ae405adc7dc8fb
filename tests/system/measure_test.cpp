// A measurement through COM: plug-in and simulated receiver together, and a parent that calls back.

#include <initguid.h>

#include <cstdio>

#include "Client.h"

namespace tvn2x::client {
namespace {

constexpr short userField = 10, status = 13, rfLevel = 15, ber = 16, mer = 27;

/// A clean network of three 256-QAM channels, scanned a hundred times as fast as in life, without the long BER count.
class Measure : public Apartment
{
protected:
    Measure()
    {
        setup = Create<_clsSetup>(L"TVN2x.clsSetup");
        measure = setup.As<IMeasure>();
        ComPtr<IDispatch> object;
        EXPECT_EQ(setup.As<IDriver>()->get_Settings(object.Put()), S_OK);
        settings = object.As<ISimulatorSettings>();
        EXPECT_TRUE(settings);
        EXPECT_EQ(settings->put_NetworkModel(Bstr(TVN_TEST_DATA L"\\clean.ini").Get()), S_OK);
        for (const wchar_t* channel : {L"Channel 1", L"Channel 2"})
            EXPECT_EQ(settings->put_Value(Bstr(channel).Get(), Bstr(L"Order of QAM").Get(), Bstr(L"256").Get()), S_OK);
        settings->put_TimeScale(0.01);
        settings->put_OrderOfQam(256);
        setup->put_OrderOfQam(256);
        setup->put_BerSamples(1);
        setup->put_Parameter(0, ber, VARIANT_FALSE);
        setup->put_MaxSettlingTime(1);
        Channels({466, 474, 482});
        run = Create<IRunControl>(L"XKTR2x.clsRunControl");
        run->put_StopFlag(VARIANT_FALSE);
    }

    void Channels(const std::vector<double>& frequencies)
    {
        setup->put_ListSize(static_cast<long>(frequencies.size()));
        for (size_t i = 0; i < frequencies.size(); ++i) {
            const long channel = static_cast<long>(i + 1);
            setup->put_Frequency(channel, frequencies[i]);
            setup->put_SymbolRate(channel, 6.9);
            setup->put_UserField(channel, Bstr(L"channel " + std::to_wstring(channel)).Get());
        }
        EXPECT_EQ(measure->ResetMeasurement(0), S_OK);
    }

    /// Whether the channel ended well; a failed call fails the test.
    bool Scan(long channel)
    {
        VARIANT_BOOL result = VARIANT_FALSE;
        EXPECT_EQ(measure->Measure(channel, VARIANT{}, &result), S_OK);
        return result != VARIANT_FALSE;
    }

    ComPtr<_clsSetup> setup;
    ComPtr<IMeasure> measure;
    ComPtr<ISimulatorSettings> settings;
    ComPtr<IRunControl> run;
    Parent parent;  // outlives the plug-in's reference, which the body of a test gives up
};

TEST_F(Measure, FillsTheRowAndTellsTheParent)
{
    measure->putref_Parent(&parent);
    setup->put_Parameter(0, ber, VARIANT_TRUE);
    EXPECT_TRUE(Scan(2));
    EXPECT_THAT(parent.statuses, testing::ElementsAre(L"Synchronising at 474 MHz", L"Measuring at 474 MHz"));
    EXPECT_GT(parent.cells, 18);
    EXPECT_EQ(Cell(measure.Get(), 1, status, 2), L"Done");
    EXPECT_EQ(Cell(measure.Get(), 1, userField, 2), L"channel 2");
    EXPECT_EQ(Cell(measure.Get(), 0, 18, 2), L"OK");
    EXPECT_EQ(Cell(measure.Get(), 0, 19, 2), L"OK");
    EXPECT_EQ(Cell(measure.Get(), 0, 20, 2), L"OK");
    EXPECT_GT(_wtof(Cell(measure.Get(), 0, mer, 2).c_str()), 30) << "a clean channel";
    EXPECT_THAT(Cell(measure.Get(), 0, ber, 2), testing::HasSubstr(L"E-"));
    VARIANT_BOOL measured = VARIANT_FALSE;
    measure->get_Measured(2, &measured);
    EXPECT_EQ(measured, VARIANT_TRUE);
    measure->get_Measured(1, &measured);
    EXPECT_EQ(measured, VARIANT_FALSE);
    EXPECT_EQ(Cell(measure.Get(), 1, status, 1), L"Un-measured");
    measure->putref_Parent(nullptr);
    EXPECT_EQ(parent.references, 0u);
}

TEST_F(Measure, WrongOrderOfQamNeverSynchronises)
{
    settings->put_OrderOfQam(64);
    setup->put_Parameter(0, ber, VARIANT_TRUE);
    EXPECT_TRUE(Scan(1));
    EXPECT_EQ(Cell(measure.Get(), 0, 19, 1), L"UNSYNC");
    EXPECT_EQ(Cell(measure.Get(), 0, 20, 1), L"UNSYNC");
    EXPECT_EQ(Cell(measure.Get(), 0, ber, 1), L"---");
    EXPECT_EQ(Cell(measure.Get(), 0, 29, 1), L"100.0");
    EXPECT_EQ(Cell(measure.Get(), 1, status, 1), L"Done");
}

TEST_F(Measure, ErrorOfTheReceiverEndsTheChannelAndNotTheScan)
{
    settings->FailAt(Bstr(L"ReadRfLevel").Get(), 1, 1234, Bstr(L"receiver").Get(), Bstr(L"no answer").Get());
    EXPECT_FALSE(Scan(1));
    EXPECT_EQ(Cell(measure.Get(), 1, status, 1), L"Control Error");
    EXPECT_EQ(Cell(measure.Get(), 0, rfLevel, 1), L"---");
    EXPECT_EQ(Cell(measure.Get(), 0, mer, 1), L"---");
    EXPECT_TRUE(Scan(2)) << "the fault was a single one";
    EXPECT_EQ(Cell(measure.Get(), 1, status, 2), L"Done");
}

TEST_F(Measure, StopFlagOfTheThreadEndsTheChannel)
{
    measure->putref_Parent(&parent);
    parent.onNotice = [&](const std::wstring& notice) {
        return notice == L"channel" ? run->put_StopFlag(VARIANT_TRUE) : S_OK;
    };
    EXPECT_TRUE(Scan(1)) << "a stop is no error";
    EXPECT_EQ(Cell(measure.Get(), 1, status, 1), L"Done");
    EXPECT_EQ(Cell(measure.Get(), 0, mer, 1), L"---");
    EXPECT_EQ(Cell(measure.Get(), 0, 19, 1), L"UNSYNC");
    measure->putref_Parent(nullptr);
}

TEST_F(Measure, ParentMayCallBackInAnyWay)
{
    const std::pair<const char*, std::function<void()>> callbacks[] = {
        {"read results",
         [&] {
             for (short parameter = 10; parameter <= 30; ++parameter)
                 Cell(measure.Get(), 0, parameter, 1);
         }},
        {"reset the table", [&] { measure->ResetMeasurement(0); }},
        {"shrink the list", [&] { setup->put_ListSize(1); }},
        {"empty the list and the table",
         [&] {
             setup->put_ListSize(0);
             measure->ResetMeasurement(0);
         }},
        {"grow the list",
         [&] {
             setup->put_ListSize(500);
             measure->ResetMeasurement(0);
         }},
        {"set another parent", [&] { measure->putref_Parent(nullptr); }},
        {"measure again",
         [&] {
             VARIANT_BOOL result;
             EXPECT_TRUE(FAILED(measure->Measure(1, VARIANT{}, &result)));
         }},
        {"load a file that is none",
         [&] {
             Bstr model;
             long mode = 0;
             VARIANT_BOOL result;
             setup.As<ISetup>()->Load(Bstr(L"x").Get(), Bstr(L"C:\\none.ini").Get(), model.Put(), &mode, &result);
         }},
    };
    for (const auto& [what, callback] : callbacks) {
        for (const wchar_t* when : {L"status", L"progress", L"cell", L"channel"}) {
            SCOPED_TRACE(what);
            Channels({466, 474, 482});
            measure->putref_Parent(&parent);
            parent.onNotice = [&, when](const std::wstring& notice) {
                if (notice == when)
                    callback();
                return S_OK;
            };
            VARIANT_BOOL result;
            measure->Measure(2, VARIANT{}, &result);
            measure->putref_Parent(nullptr);
            EXPECT_EQ(parent.references, 0u);
        }
    }
    Channels({466, 474, 482});
    EXPECT_TRUE(Scan(3)) << "and the object is as good as before";
}

TEST_F(Measure, ParentMayReleaseThePlugInDuringTheScan)
{
    IMeasure* last = measure.Get();
    measure->putref_Parent(&parent);
    parent.onNotice = [&](const std::wstring& notice) {
        if (notice == L"channel") {
            setup.Reset();
            measure.Reset();
        }
        return S_OK;
    };
    VARIANT_BOOL result = VARIANT_FALSE;
    EXPECT_EQ(last->Measure(1, VARIANT{}, &result), S_OK);
    EXPECT_EQ(parent.references, 0u) << "the object is gone, and with it its parent reference";
    EXPECT_EQ(parent.statuses.back(), L"Measuring at 466 MHz");
}

TEST_F(Measure, ParentThatRaisesAnErrorAtAnyNoticeLeavesADefinedChannel)
{
    for (int failing = 0;; ++failing) {
        ASSERT_LT(failing, 500);
        Channels({466, 474, 482});
        measure->putref_Parent(&parent);
        int notices = 0;
        parent.onNotice = [&](const std::wstring&) { return notices++ == failing ? RuntimeError(1004) : S_OK; };
        VARIANT_BOOL result = VARIANT_FALSE;
        EXPECT_EQ(measure->Measure(1, VARIANT{}, &result), S_OK);
        measure->putref_Parent(nullptr);
        const bool unhurt = notices <= failing;
        EXPECT_EQ(result != VARIANT_FALSE, unhurt) << "notice " << failing;
        EXPECT_THAT(Cell(measure.Get(), 1, status, 1), testing::AnyOf(L"Done", L"Control Error"));
        if (unhurt)
            break;
    }
}

TEST_F(Measure, ObjectThatIsNoParentIsRefusedByTheNameItLacks)
{
    const auto timeout = Create<IDispatch>(L"TVN2x.clsTimeout");
    EXPECT_EQ(measure->putref_Parent(timeout.Get()), RuntimeError(438));
    EXPECT_THAT(LastError().description, testing::HasSubstr(L"Status"));
    EXPECT_TRUE(Scan(1)) << "without a parent, as before";
}

TEST_F(Measure, IndexOutsideTheListRaisesNine)
{
    VARIANT_BOOL result;
    EXPECT_EQ(measure->Measure(4, VARIANT{}, &result), RuntimeError(9));
    EXPECT_EQ(measure->Measure(0, VARIANT{}, &result), RuntimeError(9));
    Bstr text;
    EXPECT_EQ(measure->get_Result(3, status, 1, text.Put()), RuntimeError(9));
    EXPECT_EQ(measure->get_Result(0, 9, 1, text.Put()), RuntimeError(9));
}

/// The bytes of a file, nothing where there is none.
std::string ContentOf(const std::wstring& path)
{
    std::string content(100000, '\0');
    std::FILE* const file = _wfopen(path.c_str(), L"rb");
    content.resize(file != nullptr ? std::fread(content.data(), 1, content.size(), file) : 0);
    if (file != nullptr)
        std::fclose(file);
    return content;
}

class ResultFile : public Measure
{
protected:
    ResultFile()
    {
        wchar_t folder[MAX_PATH];
        GetTempPathW(MAX_PATH, folder);
        path = std::wstring(folder) + L"result file test.csv";
        DeleteFileW(path.c_str());
    }
    ~ResultFile() override { DeleteFileW(path.c_str()); }

    /// As a script calls it. Nobody is there to close a message box, so none may appear.
    bool Save(const std::wstring& to)
    {
        VARIANT_BOOL result = VARIANT_FALSE;
        EXPECT_EQ(measure->Save(Bstr(to).Get(), &result), S_OK);
        return result != VARIANT_FALSE;
    }

    std::wstring path;
};

TEST_F(ResultFile, HoldsSettingsRowsAndNotesAndIsReplacedByTheNextOne)
{
    using testing::HasSubstr;
    measure->put_Notes(Bstr(L"cold morning").Get());
    EXPECT_TRUE(Save(path));
    EXPECT_THAT(ContentOf(path), testing::Not(HasSubstr("Done")));
    EXPECT_TRUE(Scan(2));
    EXPECT_TRUE(Save(path));
    const std::string content = ContentOf(path);
    EXPECT_THAT(content, testing::StartsWith("\xEF\xBB\xBF"));
    EXPECT_THAT(content, HasSubstr("Receiver (75 ohm)\r\n"));
    EXPECT_THAT(content, HasSubstr("channel 2"));
    EXPECT_THAT(content, HasSubstr("Done"));
    EXPECT_THAT(content, testing::EndsWith("\r\n\r\nNotes\r\ncold morning\r\n"));
}

TEST_F(ResultFile, FailureIsFalseAndLeavesTheFileThatWasThere)
{
    EXPECT_TRUE(Save(path));
    const std::string before = ContentOf(path);
    EXPECT_FALSE(Save(L""));
    EXPECT_FALSE(Save(L"C:\\no such folder\\results.csv"));
    EXPECT_FALSE(Save(L"C:\\windows"));
    setup->put_ListSize(5);
    const HANDLE held = CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_FALSE(Save(path)) << "somebody holds it open";
    CloseHandle(held);
    EXPECT_EQ(ContentOf(path), before);
}

}  // namespace
}  // namespace tvn2x::client
