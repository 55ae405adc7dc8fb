#include "measure/ChannelScan.h"

#include <gtest/gtest.h>

#include <cmath>

#include "TestScan.h"
#include "setup/catalogue/Parameters.h"
#include "support/RaisedBy.h"
#include "support/TestFiles.h"
#include "util/modFormat.h"

namespace tvn2x {
namespace {

/// The calls of a run, one line a step, with the check of all four locks folded into one word.
std::string Steps(const std::vector<std::string>& calls)
{
    const std::string locks = "RfSignalPresent, ReferenceLocked, SymbolClockUnlocked, CarrierUnlocked, TsError, ";
    std::string text;
    for (const std::string& call : calls) {
        text += call + (call.starts_with("Progress") || &call == &calls.back() ? "\n" : ", ");
        if (text.ends_with(locks)) {
            text.replace(text.size() - locks.size(), locks.size(), "Locks, ");
        }
    }
    return text;
}

TEST(ChannelScan, CallsReceiverAndParentInThisOrder)
{
    TestScan test;
    test.receiver.answers.Hold = true;
    test.log.Once("ReadBer", [&] { test.clock.Advance(60); });
    EXPECT_TRUE(test.Measure());
    EXPECT_EQ(Steps(test.log.calls), TestFile("scan-calls.txt"));
}

TEST(ChannelScan, FillsTheRowInTheUsersLocale)
{
    TestScan test(CommaLocale());
    test.document.Frequency(1, 213.125);
    test.receiver.answers.BerResult = L"  1.25E-8 ";
    EXPECT_TRUE(test.Measure());
    EXPECT_EQ(test.log.calls.front(), "Status Synchronising at 213,125 MHz");
    for (const auto& [name, column, reading] : readings) {
        const bool isRatio = column == MP_BER;
        const double read = test.receiver.answers.*reading;
        EXPECT_EQ(test.Cell(column),
                  isRatio ? L"1,25E-8" : FormatNumber(read, DisplayFormat(column), true, test.locale));
        EXPECT_EQ(test.Value(column), read) << "as it was read, unrounded, whatever its text";
    }
    EXPECT_EQ(test.Cell(MP_TIMESTAMP, 1).substr(0, 14), L"2024-03-15 10:");
}

TEST(ChannelScan, UnwantedParametersAreNotReadButCountAsProgress)
{
    TestScan test;
    test.WantOnly({MP_MER});
    test.table.Result(0, MP_RFLEV, 1, L"kept");
    EXPECT_TRUE(test.Measure());
    EXPECT_EQ(test.log.Count("Read") + test.log.Count("ResetErrorCounters"), 1);
    EXPECT_EQ(test.log.Count("Progress"), 26);
    EXPECT_EQ(test.Cell(MP_RFLEV), L"kept");
    EXPECT_EQ(test.Cell(MP_DATA), L"");
    EXPECT_TRUE(test.scan.Measure(2, test.receiver, test.host, nullptr));  // without a parent nobody is told
    EXPECT_EQ(test.log.Count("Progress"), 26);
    EXPECT_EQ(test.Status(2), L"Done");
}

TEST(ChannelScan, SameFrequencyIsNotTunedAgainUnlessForgotten)
{
    TestScan test;
    const auto tunings = [&](int32_t channel) {
        EXPECT_TRUE(test.Measure(channel));
        EXPECT_EQ(test.log.Count("SymbolRate"), 1);
        EXPECT_EQ(test.log.Count("Hold 0"), 0);
        return test.log.Count("Frequency");
    };
    EXPECT_EQ(tunings(1), 1);
    EXPECT_EQ(tunings(1), 0);
    EXPECT_EQ(tunings(2), 1);
    EXPECT_EQ(tunings(1), 1);
    test.scan.ForgetTuning();
    test.document.Frequency(1, -1);
    EXPECT_EQ(tunings(1), 1) << "none is no frequency at all";
    EXPECT_EQ(tunings(1), 0);
    test.document.Frequency(1, std::nan(""));
    EXPECT_EQ(tunings(1), 1);
    EXPECT_EQ(tunings(1), 1) << "nobody knows where that has led";
}

TEST(ChannelScan, ReferenceIsWatchedOnlyWhereItIsExternalAndFitted)
{
    const std::tuple<int32_t, const wchar_t*, bool> cases[] = {
        {1, L"DVBC,EXTREF", true}, {1, L"DVBC,ExtRef", false}, {1, L"", false}, {0, L"EXTREF", false}};
    for (const auto& [source, options, watched] : cases) {
        TestScan test;
        test.document.ReferenceSource(source);
        test.receiver.answers.InstalledOptions = options;
        test.receiver.answers.ReferenceLocked = false;
        EXPECT_TRUE(test.Measure());
        EXPECT_EQ(test.log.Count("ReferenceLocked") > 0, watched) << options;
        EXPECT_EQ(test.Cell(MP_REF), watched ? L"UNSYNC" : L"OK");
        EXPECT_EQ(test.Cell(MP_DATA), watched ? L"UNSYNC" : L"OK");
        EXPECT_NE(test.Cell(MP_MER), L"---");
    }
}

TEST(ChannelScan, WithoutRfSignalTheLaterWaitsAreSkippedAndTheRestIsRead)
{
    TestScan test;
    test.document.ReferenceSource(0);
    test.receiver.answers.RfSignalPresent = false;
    EXPECT_TRUE(test.Measure());
    EXPECT_EQ(test.log.Count("CarrierUnlocked") + test.log.Count("TsError"), 0);
    EXPECT_EQ(test.log.Count("ReadRfLevel") + test.log.Count("ReadBer"), 0);
    EXPECT_EQ(test.log.Count("Progress"), 26);
    EXPECT_EQ(std::tuple(L"---", L"---", L"OK", L"UNSYNC", L"UNSYNC", L"100.0", L"100.0"),
              std::tuple(test.Cell(MP_RFLEV), test.Cell(MP_BER), test.Cell(MP_REF), test.Cell(MP_SYNC),
                         test.Cell(MP_DATA), test.Cell(MP_SY), test.Cell(MP_DE)));
    EXPECT_NE(test.Cell(MP_MER), L"---");
    EXPECT_EQ(test.Status(), L"Done");

    // A signal that comes after all is too late for the locks, but has a level.
    test.log.Once("Status Measuring", [&] { test.receiver.answers.RfSignalPresent = true; });
    EXPECT_TRUE(test.Measure());
    EXPECT_NE(test.Cell(MP_RFLEV), L"---");
    EXPECT_EQ(test.Cell(MP_SYNC), L"UNSYNC");
}

TEST(ChannelScan, AllWaitsShareOneSettlingTimeAndEveryOneEnds)
{
    TestScan test;
    test.receiver.answers.CarrierUnlocked = true;
    for (const double wallSet : {0, -3600, 3600}) {  // once in each of the scan's calls
        test.log.onCall = [&](const std::string& call) {
            test.clock.Advance(call == "RfSignalPresent" && test.log.Count(call) == 1 ? 9 : 0);
            test.clock.SetWallBy(wallSet);
        };
        test.clock.Set(0);
        EXPECT_TRUE(test.Measure());
        EXPECT_EQ(test.Cell(MP_SYNC), L"UNSYNC");
        EXPECT_GT(test.clock.SteadySeconds(), 10);
        EXPECT_LT(test.clock.SteadySeconds(), 13);
    }
    test.log.onCall = {};

    test.receiver.answers.RfSignalPresent = false;
    test.clock.step = 300;
    for (const int32_t seconds : {0, -1, INT32_MIN, INT32_MAX}) {
        test.document.MaxSettlingTime(seconds);
        EXPECT_TRUE(test.Measure());
        EXPECT_EQ(test.Cell(MP_DATA), L"UNSYNC");
    }
}

TEST(ChannelScan, LockThatGoesWhileMeasuringReadsIntermittentEvenWhenItComesBack)
{
    const std::tuple<bool ReceiverAnswers::*, MP_TYPES> cases[] = {{&ReceiverAnswers::ReferenceLocked, MP_REF},
                                                                   {&ReceiverAnswers::SymbolClockUnlocked, MP_SYNC},
                                                                   {&ReceiverAnswers::CarrierUnlocked, MP_SYNC},
                                                                   {&ReceiverAnswers::TsError, MP_DATA}};
    for (const auto& [flag, lost] : cases) {
        for (const char* when : {"ReadRfLevel", "ReadMer"}) {
            TestScan test;
            const auto toggle = [&, flag = flag] { test.receiver.answers.*flag = !(test.receiver.answers.*flag); };
            test.log.Once(when, [&] {
                toggle();
                test.log.Once("Progress 23", toggle);
            });
            EXPECT_TRUE(test.Measure());
            for (const MP_TYPES indicator : lockIndicators) {
                EXPECT_EQ(test.Cell(indicator), indicator == lost ? L"INTERMITTENT" : L"OK") << indicator << when;
            }
        }
    }
}

TEST(ChannelScan, RangeMarkersStandInPlaceOfTheValue)
{
    // Any piece of the markers counts, so that a receiver may cut or pad them.
    const std::pair<std::wstring, bool> cases[] = {
        {L"---", true}, {L"UNDER", true}, {L" OVER ", true}, {L"O", true},       {L" ", true},
        {L"", false},   {L"over", false}, {L"  ", false},    {{L'O', 0}, false}, {std::wstring(100000, L'-'), false}};
    for (const auto& [marker, shown] : cases) {
        TestScan test;
        test.receiver.markers["ReadMer"] = marker;
        EXPECT_TRUE(test.Measure());
        EXPECT_EQ(test.Cell(MP_MER) == marker, shown) << marker;
        EXPECT_EQ(test.Value(MP_MER).has_value(), !shown) << marker;
        EXPECT_NE(test.Cell(MP_MERPCT), marker);
    }
}

TEST(ChannelScan, ReadingThatNobodyCanHaveTakenReadsDashesInItsOwnCellOnly)
{
    TestScan sound;
    EXPECT_TRUE(sound.Measure());
    const double beyond = std::nextafter(1e15, 1e16);
    for (const auto& [name, parameter, reading] : readings) {
        for (const double value : {std::nan(""), double{INFINITY}, double{-INFINITY}, 1e300, beyond, -beyond}) {
            TestScan test;
            test.receiver.answers.*reading = value;
            EXPECT_TRUE(test.Measure());
            EXPECT_EQ(test.Status(), L"Done");
            for (const MP_TYPES column : valueColumns) {
                EXPECT_EQ(test.Cell(column), column == parameter ? L"---" : sound.Cell(column)) << name << column;
                EXPECT_EQ(test.Value(column).has_value(), column != parameter) << name << column;
            }
        }
    }
    TestScan test;
    for (const auto& [value, marker, text] : {std::tuple(1e15, L"", L"1000000000000000.0"),
                                              {-1e15, L"", L"-1000000000000000.0"},
                                              {std::nan(""), L"OVER", L"OVER"}}) {
        test.receiver.answers.ReadMer = value;
        test.receiver.markers["ReadMer"] = marker;
        EXPECT_TRUE(test.Measure());
        EXPECT_EQ(test.Cell(MP_MER), text);
    }
}

TEST(ChannelScan, LevelInMillivoltsShowsFourSignificantDigits)
{
    TestScan test(CommaLocale());
    const std::tuple<const wchar_t*, double, const wchar_t*> cases[] = {
        {L"mV", 0.0446684, L"0,04467"}, {L"mV", 0.251189, L"0,2512"}, {L"mV", 1, L"1,000"},
        {L"mV", -31.6228, L"-31,62"},   {L"mV", 0, L"0,000"},         {L"dB\u00B5V", 33.04, L"33,0"},
        {L"dBmV", -27, L"-27,0"},       {L"MV", 1, L"1,0"},
    };
    for (const auto& [unit, value, text] : cases) {
        test.document.LevelUnit(unit);
        test.receiver.answers.ReadRfLevel = value;
        EXPECT_TRUE(test.Measure());
        EXPECT_EQ(test.Cell(MP_RFLEV), text) << unit << value;
        EXPECT_EQ(test.Cell(MP_MER), L"38,5");
    }
}

TEST(ChannelScan, BerIsIntegratedForItsSamplesOrReadsDashes)
{
    TestScan test;
    test.document.BerSamples(100);  // 10^9 bits at 6.9 MSymb/s and 6 bits a symbol: 24.15 s
    test.clock.step = 0;
    test.receiver.markers["ReadBer"] = L"UNDER";
    test.log.onCall = [&](const std::string& call) {
        if (call == "ReadBer") {
            test.clock.Advance(1);
            test.receiver.answers.BerResult = std::to_wstring(test.log.Count("ReadBer")) + L".0E-8";
        }
    };
    EXPECT_TRUE(test.Measure());
    EXPECT_EQ(test.log.Count("Cell 1,16"), 25);
    EXPECT_EQ(test.Cell(MP_BER, 0), L"25.0E-8");
    EXPECT_EQ(test.Cell(MP_BER, 1), L"RUN");
    EXPECT_EQ(test.Cell(MP_BER, 2), L"UNDER");
    EXPECT_EQ(test.Value(MP_BER), std::nullopt) << "no error yet: the text is a bound";

    test.receiver.answers.BerState = L"---";
    EXPECT_TRUE(test.Measure());
    EXPECT_EQ(test.log.Count("BerResult"), 0);
    EXPECT_EQ(test.Cell(MP_BER, 0), L"---");
    EXPECT_EQ(test.Cell(MP_BER, 1), L"");

    test.log.Once("Status Measuring", [&] { test.receiver.answers.TsError = true; });
    EXPECT_TRUE(test.Measure());
    EXPECT_EQ(test.log.Count("ReadBer"), 0);
    EXPECT_EQ(test.Cell(MP_BER), L"---");
}

TEST(ChannelScan, BerTextsAreCleanedAndNeverLongerThanADisplay)
{
    const std::pair<std::wstring, std::wstring> cases[] = {{L"\t <1.25E-8\r\n", L"<1.25E-8"},
                                                           {std::wstring(L"1.0\0E\x1B", 6), L"1.0 E"},
                                                           {std::wstring(64, L'1'), std::wstring(64, L'1')},
                                                           {std::wstring(65, L'1'), L"---"},
                                                           {std::wstring(1000000, L'\0'), L"---"},
                                                           {L" \x7F\x85 ", L"---"}};
    for (const auto& [text, cell] : cases) {
        TestScan test;
        test.receiver.answers.BerResult = text;
        EXPECT_TRUE(test.Measure());
        EXPECT_EQ(test.Cell(MP_BER), cell);
        EXPECT_EQ(test.Value(MP_BER).has_value(), cell != L"---");
    }
    TestScan test;
    test.receiver.answers.BerState = std::wstring(L"7\0of\t10", 7);
    test.receiver.markers["ReadBer"] = std::wstring(1000000, L'x');
    EXPECT_TRUE(test.Measure());
    EXPECT_EQ(test.Cell(MP_BER, 1), L"7 of 10");
    EXPECT_EQ(test.Cell(MP_BER, 2), L"---");
    EXPECT_EQ(test.Cell(MP_BER, 0), L"1.0E-8");
}

TEST(ChannelScan, BerIntegrationEndsWhateverItsTime)
{
    const std::tuple<int32_t, int32_t, double> cases[] = {{10, 1, 6.9}, {10, 0, 6.9},  {10, -4, 6.9}, {10, 64, 0},
                                                          {0, 64, 0},   {-1, 64, 6.9}, {0, 64, 6.9}};
    TestScan test;
    for (const auto& [samples, order, symbolRate] : cases) {
        test.document.BerSamples(samples);
        test.document.OrderOfQam(order);
        test.document.SymbolRate(1, symbolRate);
        EXPECT_TRUE(test.Measure());
        EXPECT_EQ(test.log.Count("ReadBer"), 1) << samples << " " << order << " " << symbolRate;
    }
    test.Prepare();
    test.document.BerSamples(INT32_MAX);  // years
    test.log.Once("ReadBer", [&] { test.clock.step = 300; });
    EXPECT_TRUE(test.Measure());
    EXPECT_GT(test.log.Count("ReadBer"), 100);
}

/// A channel that is measured while its counters go on from 7 and 8 s by `errors`, in `seconds` from half past a
/// second.
struct CountedScan : TestScan
{
    CountedScan(double seconds, dvbc::ErroredTime errors)
    {
        clock.Set(36000.5);
        clock.step = 0;
        receiver.answers.ErrorCounters = {7, 8, 9};
        WantOnly({MP_SY, MP_DE, MP_MER});
        log.Once("ReadMer", [this, seconds, errors] {
            clock.Advance(seconds);
            clock.SetWallBy(-3600);
            receiver.answers.ErrorCounters = {7 + errors.syncErrors, 8 + errors.dataErrors, 9 + errors.unavailable};
            receiver.answers.TsError = true;  // a stream that was lost on the way has its rates all the same
        });
    }
};

TEST(ChannelScan, ErrorRatesArePartsOfTheTimeSinceTheFirstReading)
{
    const std::tuple<double, dvbc::ErroredTime, const wchar_t*, const wchar_t*> cases[] = {
        {20, {5, 1, 9}, L"25.0", L"5.0"},
        {20, {0, 0.5, 9}, L"100.0", L"2.5"},
        {1, {0.25, 1, 0}, L"25.0", L"100.0"},
        {0.9375, {0.25, 0, 0}, L"---", L"100.0"},  // the full second in between makes no time of it
        {0, {3, 0, 9}, L"---", L"100.0"},
        {86400, {864, 0, 0}, L"1.0", L"100.0"},
    };
    for (const auto& [seconds, errors, sync, data] : cases) {
        CountedScan test(seconds, errors);
        EXPECT_TRUE(test.Measure());
        EXPECT_EQ(test.Cell(MP_SY), sync) << seconds;
        EXPECT_EQ(test.Value(MP_SY).has_value(), test.Cell(MP_SY) != L"---") << seconds;
        EXPECT_EQ(test.Cell(MP_DE), data) << seconds;
        EXPECT_EQ(test.Cell(MP_TIMESTAMP, 1).substr(0, 13), seconds < 80000 ? L"2024-03-15 09" : L"2024-03-16 09");
    }
    CountedScan one(20, {0, 5, 0});
    one.WantOnly({MP_DE, MP_MER});
    EXPECT_TRUE(one.Measure());
    EXPECT_EQ(one.Cell(MP_DE), L"25.0") << "counted for one of the two alone";
    TestScan late;  // wanted only after the first reading would have been due
    late.WantOnly({MP_MER});
    late.receiver.answers.ErrorCounters.dataErrors = 5;
    late.log.Once("ReadMer", [&] { late.document.Parameter(0, MP_DE, true); });
    EXPECT_TRUE(late.Measure());
    EXPECT_EQ(late.Cell(MP_DE), L"---");
}

TEST(ChannelScan, CountersThatTellNoTimeOrRunBackReadDashes)
{
    for (const double odd : {std::nan(""), double{INFINITY}, double{-INFINITY}, 1e300, -1e300, 9e14, -0.5}) {
        CountedScan test(20, {odd, 5, 0});
        EXPECT_TRUE(test.Measure());
        EXPECT_EQ(test.Cell(MP_SY), L"---") << odd;
        EXPECT_EQ(test.Cell(MP_DE), L"25.0") << odd;
        EXPECT_EQ(test.Status(), L"Done");
    }
}

TEST(ChannelScan, ChannelThatDoesNotFitIsRefusedBeforeAnythingIsSent)
{
    TestScan test;
    const auto expectRefused = [&](int32_t channel) {
        EXPECT_EQ(RaisedBy([&] { test.Measure(channel); }), L"9 clsSetup.Measure: Subscript out of range") << channel;
        EXPECT_TRUE(test.log.calls.empty());
    };
    for (const int32_t channel : {-1, 0, 3}) {
        expectRefused(channel);
    }
    test.document.ListSize(3);
    expectRefused(1);
    test.document.ListSize(0);
    test.table.Reset(test.document, test.locale);
    expectRefused(0);
    test.document.ListSize(1);
    test.table = ResultTable();
    expectRefused(1);
}

}  // namespace
}  // namespace tvn2x
