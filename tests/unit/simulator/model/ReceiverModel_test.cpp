#include "simulator/model/ReceiverModel.h"

#include <gmock/gmock.h>

#include <cfenv>
#include <cmath>
#include <functional>

#include "dvbc/Impairments.h"
#include "dvbc/Qam.h"
#include "simulator/model/SimulatedTime.h"
#include "support/RaisedBy.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

constexpr const char* network =
    "[Network]\nReading Noise=0\n[Channel 1]\nFrequency (MHz)=474\n[Channel 2]\n"
    "Frequency (MHz)=602\nOrder of QAM=256\nLevel (dBuV)=66\n";

/// Time that passes only when it is told to.
class FakeTime : public SimulatedTime
{
public:
    double Seconds() override { return now; }
    void Wait(double seconds) override { now += seconds; }
    double Scale() const override { return scale; }
    double SecondsOfCalendar() override { return calendar; }

    double now = 1000;
    double scale = 1;
    double calendar = 0;
};

class ReceiverModelTest : public testing::Test
{
protected:
    ReceiverModelTest() { receiver.Physics().Network(NetworkModel::Parse(network, L"net.ini")); }

    using Values = std::vector<std::pair<const wchar_t*, const wchar_t*>>;
    void Set(const std::wstring& section, const Values& values)
    {
        NetworkModel model = receiver.Physics().Network();
        for (const auto& [key, value] : values) {
            model.Set(section, key, value);
        }
        receiver.Physics().Network(model);
    }

    void TuneTo(double megahertz, double wait = 0)
    {
        receiver.Frequency(megahertz * 1e6);
        time.now += wait;
    }

    /// A reading and its marker.
    using Shown = std::pair<double, std::wstring>;
    Shown Marked(double reading) { return {reading, receiver.ValueStatus()}; }

    /// The end of the wait for a lock of the transport stream, after 10 s at most; 0 where there is none.
    double SecondsToLock()
    {
        const double start = time.now;
        for (; time.now < start + 10; time.now += 0.001) {
            if (!receiver.TsError()) {
                return time.now - start;
            }
        }
        return 0;
    }

    /// "R" RF, "S" symbol clock, "C" carrier, "T" transport stream, for the locks that hold.
    std::string Locks()
    {
        return std::string(receiver.RfSignalPresent() ? "R" : "") + (receiver.SymbolClockUnlocked() ? "" : "S") +
               (receiver.CarrierUnlocked() ? "" : "C") + (receiver.TsError() ? "" : "T");
    }

    std::string LocksAfter(double seconds)
    {
        time.now += seconds;
        return Locks();
    }

    FakeTime time;
    ReceiverModel receiver{time};
};

TEST_F(ReceiverModelTest, LocksStepByStep)
{
    TuneTo(474);
    std::vector<std::string> seen;
    for (int i = 0; i < 1000; ++i) {
        const std::string locks = LocksAfter(0.001);
        if (seen.empty() || seen.back() != locks) {
            seen.push_back(locks);
        }
    }
    EXPECT_EQ(seen, (std::vector<std::string>{"", "R", "RS", "RSC", "RSCT"}));
}

TEST_F(ReceiverModelTest, TakesLongerForAWeakDenseSignal)
{
    TuneTo(474);
    const double strong = SecondsToLock();
    EXPECT_GT(strong, 0.2);
    EXPECT_LT(strong, 0.5);
    Set(L"Channel 2", {{L"Level (dBuV)", L"42.2"}});
    receiver.OrderOfQam(256);
    TuneTo(602);
    const double weak = SecondsToLock();
    EXPECT_GT(weak, 2 * strong);
    EXPECT_NEAR(weak, 2, 0.002);
    Set(L"Channel 2", {{L"Lock Time Factor", L"2"}});
    EXPECT_NEAR(SecondsToLock(), 2 * weak, 0.002);
}

TEST_F(ReceiverModelTest, NeverLocksToAWrongSymbolRateOrOrder)
{
    TuneTo(474);
    receiver.OrderOfQam(256);
    EXPECT_EQ(LocksAfter(100), "RS");
    receiver.OrderOfQam(64);
    receiver.SymbolRate(6.875e6);
    EXPECT_EQ(LocksAfter(100), "R");
    receiver.SymbolRate(6.9e6);
    EXPECT_EQ(LocksAfter(100), "RSCT");
    receiver.Mode(7);
    EXPECT_EQ(LocksAfter(100), "R");
}

TEST_F(ReceiverModelTest, LocksAsFarAsOffsetEchoAndLevelLetIt)
{
    const std::tuple<int, Values, const char*> rows[] = {
        {1, {{L"Frequency Offset (Hz)", L"169000"}}, "RSCT"},
        {1, {{L"Frequency Offset (Hz)", L"-171000"}}, "RS"},
        {1, {{L"Symbol Rate Offset (ppm)", L"-99"}}, "RSCT"},
        {1, {{L"Symbol Rate Offset (ppm)", L"101"}}, "R"},
        {1, {{L"Echo (dB)", L"12"}, {L"Echo Length (m)", L"1000"}}, "RS"},
        {2, {{L"Level (dBuV)", L"42"}}, "RSCT"},
        {2, {{L"Level (dBuV)", L"36"}}, "RSC"},
        {2, {{L"Level (dBuV)", L"30.5"}}, "RS"},
        {2, {{L"Level (dBuV)", L"29"}}, ""},
        {1, {{L"Echo (dB)", L"12"}, {L"Echo Length (m)", L"40"}}, "RSCT"},
    };
    for (const auto& [channel, values, locks] : rows) {
        receiver.Physics().Network(NetworkModel::Parse(network, L"net.ini"));
        Set(L"Channel " + std::to_wstring(channel), values);
        receiver.OrderOfQam(channel == 1 ? 64 : 256);
        TuneTo(channel == 1 ? 474 : 602);
        EXPECT_EQ(LocksAfter(5), locks) << testing::PrintToString(values);
    }
    receiver.Equaliser(0);
    EXPECT_EQ(LocksAfter(5), "RS") << "the last row's echo";
}

TEST_F(ReceiverModelTest, LosesWhatAnOutageTakesAndGetsItBack)
{
    Set(L"Channel 1", {{L"Outages", L"TS 10 1, carrier 20 1, RF 30 1, reference 40 1"}});
    receiver.ReferenceSource(1);
    TuneTo(474);
    const double start = time.now;
    const std::tuple<double, const char*, bool> rows[] = {
        {9.9, "RSCT", true}, {10.5, "RSC", true}, {15, "RSCT", true},    {20.5, "RS", true},     {25, "RSCT", true},
        {30.5, "", true},    {35, "RSCT", true},  {40.5, "RSCT", false}, {41.25, "RSCT", false}, {41.35, "RSCT", true}};
    for (const auto& [seconds, locks, reference] : rows) {
        time.now = start + seconds;
        EXPECT_EQ(Locks(), locks) << seconds;
        EXPECT_EQ(receiver.ReferenceLocked(), reference) << seconds;
    }
    time.now = start + 30.5;
    EXPECT_EQ(Marked(receiver.ReadRfLevel()).second, L"UNDER");
}

TEST_F(ReceiverModelTest, ReadsThePhysicsOfAChannel)
{
    Set(L"Channel 1", {{L"Frequency Offset (Hz)", L"-1500"}, {L"Carrier Suppression (dB)", L"35"}});
    TuneTo(474, 1);
    EXPECT_NEAR(receiver.ReadRfLevel(), 2, 0.01);
    EXPECT_NEAR(receiver.ReadFrequencyOffset(), -1500, 1e-6);
    EXPECT_NEAR(receiver.ReadCarrierSuppression(), 35, 1e-9);
    EXPECT_NEAR(receiver.ReadCarrierToInterference(), 52, 1e-9);
    EXPECT_NEAR(receiver.ReadPhaseJitter(), 0.3, 1e-9);
    EXPECT_NEAR(receiver.ReadIqImbalance(), 0.3, 1e-9);
    EXPECT_NEAR(receiver.ReadIqPhase(), 0.2, 1e-9);
    const double expected = dvbc::CombineRatios(std::array{
        62 - dvbc::NoiseFloor(6.9e6, 8), 43.0, 52.0, 35.0, dvbc::RatioOfErrorPower(dvbc::JitterPower(0.3)),
        dvbc::RatioOfErrorPower(dvbc::ImbalancePower(0.3)), dvbc::RatioOfErrorPower(dvbc::QuadraturePower(0.2))});
    EXPECT_NEAR(receiver.ReadMer(), expected, 0.01);
    EXPECT_NEAR(receiver.ReadMerPercent(), dvbc::MerPercent(expected), 0.01);
    EXPECT_GT(receiver.ReadSignalToNoise(), expected);
    receiver.LevelUnit(4);
    EXPECT_EQ(Marked(receiver.ReadRfLevel()).second, L"");
    Set(L"Network", {{L"Tilt (dB)", L"10"}});
    Set(L"Channel 2", {{L"Frequency (MHz)", L"862"}});
    TuneTo(862, 1);
    EXPECT_NEAR(receiver.ReadRfLevel(), 56, 0.01) << "less what the tilt takes";

    // Third-order products: 2 dB less of them for each dB below the intercept point of 115 dBµV.
    receiver.InputAttenuation(0);
    Set(L"Network", {{L"Tilt (dB)", L"0"}});
    const double weak = (TuneTo(474, 1), receiver.ReadMer());
    Set(L"Channel 1", {{L"Level (dBuV)", L"95"}});
    const double strong = (TuneTo(474, 1), receiver.ReadMer());
    EXPECT_NEAR(strong, dvbc::CombineRatios(std::array{weak, 2.0 * (115 - 95)}), 0.1);
}

TEST_F(ReceiverModelTest, MarksWhatIsOutsideItsRange)
{
    Set(L"Channel 1", {{L"C/I (dB)", L"70"}, {L"Phase Jitter (deg)", L"0"}});
    TuneTo(474);
    EXPECT_EQ(Marked(receiver.ReadMer()).second, L"---");
    time.now += 1;
    EXPECT_EQ(Marked(receiver.ReadCarrierToInterference()).second, L"OVER");
    EXPECT_EQ(Marked(receiver.ReadPhaseJitter()), Shown(0.05, L"UNDER"));
    Set(L"Network", {{L"Head-end MER (dB)", L"60"}});
    Set(L"Channel 1", {{L"Level (dBuV)", L"80"},
                       {L"Carrier Suppression (dB)", L"70"},
                       {L"I/Q Imbalance (%)", L"0"},
                       {L"Quadrature Error (deg)", L"0"}});
    time.now += 1;
    EXPECT_EQ(Marked(receiver.ReadMer()), Shown(45, L"OVER"));
    EXPECT_EQ(Marked(receiver.ReadMerPercent()).second, L"UNDER");
    receiver.Physics().Network({});
    TuneTo(500, 10);
    EXPECT_EQ(Marked(receiver.ReadRfLevel()), Shown(-30, L"UNDER")) << "without a network there is noise";
    EXPECT_EQ(Locks(), "");
}

TEST_F(ReceiverModelTest, HearsNeighboursThatNoSawFilterKeepsOut)
{
    Set(L"Channel 2", {{L"Frequency (MHz)", L"482"}, {L"Order of QAM", L"64"}, {L"Level (dBuV)", L"77"}});
    TuneTo(474, 1);
    const double filtered = receiver.ReadCarrierToInterference();
    receiver.SawBandwidth(0);
    time.now += 1;
    EXPECT_LT(receiver.ReadCarrierToInterference(), filtered - 15);
    receiver.SawBandwidth(2);
    EXPECT_EQ(LocksAfter(5), "RS");
}

TEST_F(ReceiverModelTest, AttenuatesInStepsOfTenDecibels)
{
    Set(L"Channel 1", {{L"Level (dBuV)", L"85"}});
    TuneTo(474, 1);
    const double automatic = receiver.ReadSignalToNoise();
    for (const auto& [attenuation, difference] : {std::pair(10, 0.0), {20, -0.2743}}) {
        receiver.InputAttenuation(attenuation);
        time.now += 1;
        EXPECT_NEAR(receiver.ReadSignalToNoise() - automatic, difference, 1e-4) << attenuation;
    }
}

TEST_F(ReceiverModelTest, CountsBitErrorsTowardsThePhysics)
{
    Set(L"Channel 1", {{L"C/I (dB)", L"24.5"}});
    receiver.BerSamples(20);
    TuneTo(474);
    EXPECT_EQ(receiver.BerState(), L"---");
    EXPECT_EQ(Marked(receiver.ReadBer()), Shown(0, L"---"));
    SecondsToLock();
    EXPECT_EQ(receiver.BerState(), L"0 of 20");
    receiver.ReadBer();
    time.now += 3.5 * 1e7 / (6.9e6 * 6);
    EXPECT_EQ(receiver.BerState(), L"3 of 20");
    time.now += 20 * 1e7 / (6.9e6 * 6);
    EXPECT_EQ(receiver.BerState(), L"Done");
    const double mer = receiver.ReadMer();
    const double expected = dvbc::BitErrorRatio(64, mer - 1);
    const double counted = receiver.ReadBer();
    EXPECT_NEAR(counted, expected, 4 * std::sqrt(expected / 2e8));
    EXPECT_EQ(receiver.ValueStatus(), L"");
    EXPECT_NEAR(std::stod(receiver.BerResult()), counted, 0.05 * counted);
    time.now += 100;
    EXPECT_EQ(receiver.ReadBer(), counted);
    receiver.SymbolRate(6.9e6);
    EXPECT_EQ(receiver.BerState(), L"0 of 20");
}

TEST_F(ReceiverModelTest, SaysWhatACountWithoutErrorsShows)
{
    TuneTo(474);
    SecondsToLock();
    receiver.ReadBer();
    time.now += 1e8 / (6.9e6 * 6) + 1e-6;
    EXPECT_EQ(receiver.BerResult(), L"<1.0E-8");
    EXPECT_EQ(Marked(receiver.ReadBer()), Shown(0, L"UNDER"));
    Set(L"Channel 1", {{L"Outages", L"TS 1 1"}});
    SecondsToLock();
    receiver.ReadBer();
    time.now += 5;
    EXPECT_EQ(receiver.BerResult(), L"---");
}

TEST_F(ReceiverModelTest, AddsUpErroredTime)
{
    Set(L"Channel 1", {{L"Outages", L"TS 10 2, carrier 10.5 0.5, TS 11.9 0.1"}});  // all within the first
    TuneTo(474);
    const double locking = SecondsToLock();
    time.now += 5;
    receiver.ResetErrorCounters();
    time.now += 1;
    const dvbc::ErroredTime clean = receiver.ErrorCounters();
    EXPECT_GT(clean.dataErrors, 0);
    EXPECT_LT(clean.dataErrors, 1e-5);
    EXPECT_GT(clean.syncErrors, 0);
    EXPECT_GT(clean.unavailable, 0);
    time.now += 10.001;
    const dvbc::ErroredTime outage = receiver.ErrorCounters();
    EXPECT_GT(outage.unavailable, 2);
    EXPECT_LT(outage.unavailable, 2 + locking);
    EXPECT_NEAR(outage.dataErrors, outage.unavailable, 1e-4);

    Set(L"Channel 1", {{L"C/I (dB)", L"23.3"}, {L"Outages", L""}});
    time.now += 2;
    receiver.ResetErrorCounters();
    time.now += 100;
    const dvbc::ErroredTime bad = receiver.ErrorCounters();
    EXPECT_NEAR(bad.syncErrors, std::round(bad.syncErrors), 2e-4) << "a second is errored or not";
    EXPECT_GT(bad.dataErrors, 90);
    EXPECT_LT(bad.syncErrors, 80);
    EXPECT_LT(bad.unavailable, 0.01);
    EXPECT_TRUE(receiver.TsError());
}

TEST_F(ReceiverModelTest, FreezesWhatItShowsOnHold)
{
    Set(L"Network", {{L"Reading Noise", L"1"}});
    TuneTo(474, 1);
    const double first = receiver.ReadMer();
    EXPECT_NE(receiver.ReadMer(), first);
    receiver.Hold(true);
    const double held = receiver.ReadMer();
    TuneTo(500);
    EXPECT_EQ(LocksAfter(1), "RSCT");
    EXPECT_EQ(receiver.ReadMer(), held);
    receiver.Hold(false);
    EXPECT_EQ(Locks(), "");
}

TEST_F(ReceiverModelTest, DrawsBySeedAndAnewWithEachTuningWhateverItWasTunedToBetween)
{
    const auto passes = [&](const wchar_t* seed, const std::vector<double>& frequencies) {
        Set(L"Network", {{L"Reading Noise", L"1"}, {L"Seed", seed}});  // begins anew
        std::vector<std::pair<double, double>> readings;
        for (const double frequency : frequencies) {
            TuneTo(frequency, 1);
            const std::pair both(receiver.ReadRfLevel(), receiver.ReadFrequencyOffset());
            if (frequency == 474) {
                readings.push_back(both);
            }
        }
        return readings;
    };
    const auto readings = passes(L"5", {474, 602, 474, 602, 474});
    EXPECT_NE(readings[0], readings[1]);
    EXPECT_NE(readings[1], readings[2]);
    EXPECT_EQ(passes(L"5", {602, 474, 474, 602, 474}), readings);
    EXPECT_NE(passes(L"6", {474, 602, 474, 602, 474}), readings);
}

TEST_F(ReceiverModelTest, LocksSoonerByTheTimeScaleAndReadsTheSame)
{
    const auto measure = [&](double scale) {
        receiver.Physics().Network(NetworkModel::Parse(network, L"net.ini"));
        Set(L"Channel 1", {{L"C/I (dB)", L"23.9"}, {L"Outages", L"TS 3 0.5"}});
        Set(L"Network", {{L"Reading Noise", L"1"}});
        time.scale = scale;
        TuneTo(474);
        const double start = time.now;
        while (receiver.CarrierUnlocked()) {
            time.now += 0.0001 * scale;
        }
        const double locking = time.now - start;
        receiver.ResetErrorCounters();
        receiver.ReadBer();
        time.now += 10;
        receiver.ReferenceSource(0);
        receiver.ReferenceSource(1);
        time.now += 0.29 * scale;
        const bool wasEarly = receiver.ReferenceLocked();
        time.now += 0.02 * scale;
        EXPECT_EQ(std::pair(wasEarly, receiver.ReferenceLocked()), std::pair(false, true)) << scale;
        return std::tuple(std::lround(locking / scale * 1000), receiver.BerResult(), receiver.ReadMer(),
                          std::lround(receiver.ErrorCounters().dataErrors * 100));
    };
    const auto inLife = measure(1);
    EXPECT_EQ(measure(0.01), inLife);
    EXPECT_EQ(measure(1e-6), inLife);
    receiver.Physics().SettlingTime(0.15);
    TuneTo(474, 0.2);
    EXPECT_TRUE(receiver.CarrierUnlocked()) << "the client has given up by then";
    receiver.Physics().SettlingTime(3);
    TuneTo(474, 0.2);
    EXPECT_FALSE(receiver.CarrierUnlocked());
}

TEST_F(ReceiverModelTest, DriftsWithTheWarmthOfTheDay)
{
    Set(L"Network", {{L"Tilt Drift (dB)", L"4"}, {L"Drift Period (h)", L"12"}});
    Set(L"Channel 2", {{L"Frequency (MHz)", L"862"}});
    receiver.LevelUnit(4);
    const auto levelAt = [&](double hour) {
        time.calendar = hour * 3600;
        TuneTo(862, 1);
        return receiver.ReadRfLevel();
    };
    EXPECT_NEAR(levelAt(3), levelAt(0) - 4, 0.01);
    EXPECT_NEAR(levelAt(9), levelAt(12) + 4, 0.01);
    time.calendar = 3 * 3600;
    receiver.SymbolRate(6.9e6);
    EXPECT_NEAR(receiver.ReadRfLevel(), levelAt(3), 0.01) << "without a tuning";
}

TEST_F(ReceiverModelTest, RefusesWhatItCannotBeSetTo)
{
    EXPECT_THAT(RaisedBy([&] { receiver.OrderOfQam(65); }),
                testing::EndsWith(L": Let OrderOfQam failed: 65 is none of 4, 16, 32, 64, 128 and 256"));
    const auto whole = [&](void (ReceiverModel::*set)(int32_t)) {
        return [&, set](double value) { (receiver.*set)(static_cast<int32_t>(value)); };
    };
    const std::tuple<std::function<void(double)>, double, double> settings[] = {
        {whole(&ReceiverModel::BerSamples), 1, 10000},
        {whole(&ReceiverModel::RollOffFactor), 12, 35},
        {[&](double value) { receiver.SymbolRate(value); }, 0.1e6, 8e6},
        {whole(&ReceiverModel::ReferenceSource), 0, 1},
        {whole(&ReceiverModel::LevelUnit), 0, 5},
        {[&](double value) { receiver.Frequency(value); }, 30e6, 1200e6},
        {whole(&ReceiverModel::InputAttenuation), 0, 70},
        {whole(&ReceiverModel::DemodulatorGainControl), 0, 1},
        {whole(&ReceiverModel::Equaliser), 0, 1},
    };
    for (const auto& [set, low, high] : settings) {
        EXPECT_NO_THROW(set(low));
        EXPECT_NO_THROW(set(high));
        EXPECT_THROW(set(low - 1), RaisedError);
        EXPECT_THROW(set(high + 1), RaisedError);
    }
    EXPECT_THAT(RaisedBy([&] { receiver.SymbolRate(std::nan("")); }),
                testing::EndsWith(L": Let SymbolRate failed: it must be from 100000 to 8000000 symbols per second"));
    Set(L"Network", {{L"Installed Options", L"KTR-H2,KTR-H8 (not H9),RB"}});
    EXPECT_THAT(RaisedBy([&] { receiver.InputRoute(75); }), testing::HasSubstr(L"needs the option KTR-H5"));
    EXPECT_EQ(std::tuple(receiver.Mode(), receiver.SawBandwidth(), receiver.InputRoute()), std::tuple(4, 0, 4));
    receiver.SawBandwidth(7);
    EXPECT_EQ(receiver.SawBandwidth(), 6);
    EXPECT_FALSE(receiver.ReferenceLocked());
    const std::pair<void (ReceiverModel::*)(int32_t), std::vector<int32_t>> lacking[] = {
        {&ReceiverModel::InputRoute, {2, 50}},
        {&ReceiverModel::SawBandwidth, {2, 8}},
        {&ReceiverModel::Mode, {6, 7, 8, 13, 14}}};
    for (const auto& [set, values] : lacking) {
        for (const int32_t value : values) {
            EXPECT_THROW((receiver.*set)(value), RaisedError) << value;
        }
    }
}

TEST_F(ReceiverModelTest, GoesBackToItsBasicState)
{
    receiver.OrderOfQam(16);
    receiver.SymbolRate(5e6);
    receiver.BerSamples(100);
    receiver.InputRoute(4);
    receiver.Hold(true);
    receiver.Initialise();
    EXPECT_EQ(std::tuple(64, 6.9e6, 10, 75, false),
              std::tuple(receiver.OrderOfQam(), receiver.SymbolRate(), receiver.BerSamples(), receiver.InputRoute(),
                         receiver.Hold()));
}

TEST_F(ReceiverModelTest, CountsOperationsTakesLatencyAndFailsByScript)
{
    const int32_t before = receiver.Operations();
    receiver.Latency(0.01);
    const double start = time.now;
    receiver.Faults().FailAt(L"get Frequency", 2, RaisedError(50001, L"script", L"enough"));
    receiver.Faults().FailAt(L"*", 5, RaisedError(7, L"script", L"any"));
    receiver.Faults().FailAt(L"let Mode", 1, RaisedError(8, L"script", L"half"));
    receiver.Frequency(474e6);
    receiver.Frequency();
    receiver.TsError();
    EXPECT_THROW(receiver.Frequency(), RaisedError);
    EXPECT_THROW(receiver.TsError(), RaisedError);
    receiver.TsError();
    EXPECT_EQ(receiver.Operations() - before, 6);
    EXPECT_NEAR(time.now - start, 0.06, 1e-9);
    EXPECT_EQ(receiver.Mode(), 4);
    EXPECT_THROW(receiver.Mode(7), RaisedError);
    EXPECT_THROW(receiver.Faults().FailAt(L"Frequenzy", 1, RaisedError(1, L"", L"")), RaisedError);
    EXPECT_THROW(receiver.Faults().FailAt(L"*", 0, RaisedError(1, L"", L"")), RaisedError);
}

TEST_F(ReceiverModelTest, TakesTheNearestFilterWhereTheModelSaysSo)
{
    Set(L"Network", {{L"Installed Options", L"KTR-H6,KTR-H8"}, {L"Swaps SAW Filters", L"Yes"}});
    for (const auto& [wanted, taken] : {std::pair{8, 6}, {7, 6}, {2, 2}, {3, 2}, {0, 0}}) {
        receiver.SawBandwidth(wanted);
        EXPECT_EQ(receiver.SawBandwidth(), taken) << wanted;
    }
    Set(L"Network", {{L"Installed Options", L""}});
    receiver.SawBandwidth(8);
    EXPECT_EQ(receiver.SawBandwidth(), 0) << "no filter at all";
}

TEST(NetworkModelFile, IsNamedWhenItCannotBeRead)
{
    EXPECT_THAT([] { NetworkModel::Load(SystemFiles(), FromUtf8(TVN_TEST_DATA) + L"/missing.ini"); },
                testing::Throws<ModelError>(testing::Field(
                    &ModelError::description, testing::HasSubstr(L"missing.ini: the network model cannot be read: "))));
}

/// A host may have unmasked these: then they would end its program.
TEST_F(ReceiverModelTest, DividesByNothing)
{
    std::feclearexcept(FE_ALL_EXCEPT);
    for (const int32_t route : {input_route::receiver75, input_route::intermediate}) {
        for (const double frequency : {474.0, 602.0, 300.0}) {
            receiver.InputRoute(route);
            TuneTo(frequency, 10);
            receiver.ReadRfLevel();
            receiver.ReadCarrierToInterference();
            receiver.ReadMer();
            receiver.ReadBer();
            receiver.ErrorCounters();
            Locks();
        }
    }
    EXPECT_FALSE(std::fetestexcept(FE_DIVBYZERO | FE_INVALID));
}

}  // namespace
}  // namespace tvn2x
