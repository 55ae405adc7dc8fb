#include "receiver_model/ReceiverModel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "FakeTime.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

constexpr const char* network =
    "[Network]\nReading Noise=0\n[Channel 1]\nFrequency (MHz)=474\n[Channel 2]\n"
    "Frequency (MHz)=602\nOrder of QAM=256\nLevel (dBuV)=66\n";

class ReceiverModelTest : public testing::Test
{
protected:
    ReceiverModelTest() { receiver.Network(NetworkModel::Parse(network, L"net.ini")); }

    void Set(const wchar_t* section, const wchar_t* key, const wchar_t* value)
    {
        NetworkModel model = receiver.Network();
        model.Set(section, key, value);
        receiver.Network(model);
    }

    void TuneTo(double megahertz) { receiver.Frequency(megahertz * 1e6); }

    /// The end of the wait for a lock of the transport stream, after 10 s at most; 0 where there is none.
    double SecondsToLock()
    {
        const double start = time.now;
        for (; time.now < start + 10; time.now += 0.001) {
            if (!receiver.TsError())
                return time.now - start;
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
        if (seen.empty() || seen.back() != locks)
            seen.push_back(locks);
    }
    EXPECT_EQ(seen, (std::vector<std::string>{"", "R", "RS", "RSC", "RSCT"}));
}

TEST_F(ReceiverModelTest, TakesLongerForAWeakDenseSignal)
{
    TuneTo(474);
    const double strong = SecondsToLock();
    EXPECT_GT(strong, 0.2);
    EXPECT_LT(strong, 0.5);
    Set(L"Channel 2", L"Level (dBuV)", L"42.2");
    receiver.OrderOfQam(256);
    TuneTo(602);
    const double weak = SecondsToLock();
    EXPECT_GT(weak, 2 * strong);
    EXPECT_LE(weak, 2.001);
    Set(L"Channel 2", L"Lock Time Factor", L"2");
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

TEST_F(ReceiverModelTest, CapturesOffsetsWithinItsReachOnly)
{
    struct Row
    {
        const wchar_t* key;
        const wchar_t* value;
        const char* locks;
    };
    for (const Row& row :
         {Row{L"Frequency Offset (Hz)", L"169000", "RSCT"}, Row{L"Frequency Offset (Hz)", L"-171000", "RS"},
          Row{L"Frequency Offset (Hz)", L"0", "RSCT"}, Row{L"Symbol Rate Offset (ppm)", L"-99", "RSCT"},
          Row{L"Symbol Rate Offset (ppm)", L"101", "R"}}) {
        Set(L"Channel 1", row.key, row.value);
        TuneTo(474);
        EXPECT_EQ(LocksAfter(5), row.locks) << testing::PrintToString(row.value);
    }
}

TEST_F(ReceiverModelTest, LosesWhatAnOutageTakesAndGetsItBack)
{
    Set(L"Channel 1", L"Outages", L"TS 10 1, carrier 20 1, RF 30 1, reference 40 1");
    receiver.ReferenceSource(1);
    TuneTo(474);
    const double start = time.now;
    struct Row
    {
        double seconds;
        const char* locks;
        bool reference;
    };
    for (const Row& row : {Row{9.9, "RSCT", true}, Row{10.5, "RSC", true}, Row{15, "RSCT", true}, Row{20.5, "RS", true},
                           Row{25, "RSCT", true}, Row{30.5, "", true}, Row{35, "RSCT", true}, Row{40.5, "RSCT", false},
                           Row{45, "RSCT", true}}) {
        time.now = start + row.seconds;
        EXPECT_EQ(Locks(), row.locks) << row.seconds;
        EXPECT_EQ(receiver.ReferenceLocked(), row.reference) << row.seconds;
    }
    time.now = start + 30.5;
    receiver.ReadRfLevel();
    EXPECT_EQ(receiver.ValueStatus(), L"UNDER");
}

TEST_F(ReceiverModelTest, LosesLockBelowTheThresholdOfItsOrder)
{
    receiver.OrderOfQam(256);
    TuneTo(602);
    Set(L"Channel 2", L"Level (dBuV)", L"42");
    EXPECT_EQ(LocksAfter(5), "RSCT");
    Set(L"Channel 2", L"Level (dBuV)", L"36");
    EXPECT_EQ(LocksAfter(5), "RSC");
    Set(L"Channel 2", L"Level (dBuV)", L"31");
    EXPECT_EQ(LocksAfter(5), "RS");
    Set(L"Channel 2", L"Level (dBuV)", L"29");
    EXPECT_EQ(LocksAfter(5), "");
}

TEST_F(ReceiverModelTest, ReadsThePhysicsOfAChannel)
{
    Set(L"Channel 1", L"Frequency Offset (Hz)", L"-1500");
    Set(L"Channel 1", L"Carrier Suppression (dB)", L"35");
    TuneTo(474);
    time.now += 1;
    EXPECT_NEAR(receiver.ReadRfLevel(), 2, 0.01);
    EXPECT_NEAR(receiver.ReadFrequencyOffset(), -1500, 1e-6);
    EXPECT_NEAR(receiver.ReadCarrierSuppression(), 35, 1e-9);
    EXPECT_NEAR(receiver.ReadCarrierToInterference(), 52, 1e-9);
    EXPECT_NEAR(receiver.ReadPhaseJitter(), 0.3, 1e-9);
    EXPECT_NEAR(receiver.ReadIqImbalance(), 0.3, 1e-9);
    EXPECT_NEAR(receiver.ReadIqPhase(), 0.2, 1e-9);
    const double expected =
        qam::Combine(std::array{62 - qam::NoiseFloor(6.9e6, 8), 43.0, 52.0, 35.0, qam::JitterRatio(0.3),
                                qam::ImbalanceRatio(0.3), qam::QuadratureRatio(0.2)});
    EXPECT_NEAR(receiver.ReadMer(), expected, 0.01);
    EXPECT_NEAR(receiver.ReadMerPercent(), qam::MerPercent(expected), 0.01);
    EXPECT_GT(receiver.ReadSignalToNoise(), expected);
    receiver.LevelUnit(4);
    EXPECT_NEAR(receiver.ReadRfLevel(), 62, 0.01);
    EXPECT_EQ(receiver.ValueStatus(), L"");
}

TEST_F(ReceiverModelTest, MarksWhatIsOutsideItsRange)
{
    Set(L"Channel 1", L"C/I (dB)", L"70");
    Set(L"Channel 1", L"Phase Jitter (deg)", L"0");
    TuneTo(474);
    receiver.ReadMer();
    EXPECT_EQ(receiver.ValueStatus(), L"---");
    time.now += 1;
    receiver.ReadCarrierToInterference();
    EXPECT_EQ(receiver.ValueStatus(), L"OVER");
    EXPECT_EQ(receiver.ReadPhaseJitter(), 0.05);
    EXPECT_EQ(receiver.ValueStatus(), L"UNDER");
    Set(L"Network", L"Head-end MER (dB)", L"60");
    Set(L"Channel 1", L"Level (dBuV)", L"80");
    Set(L"Channel 1", L"Carrier Suppression (dB)", L"70");
    Set(L"Channel 1", L"I/Q Imbalance (%)", L"0");
    Set(L"Channel 1", L"Quadrature Error (deg)", L"0");
    time.now += 1;
    EXPECT_EQ(receiver.ReadMer(), 45);
    EXPECT_EQ(receiver.ValueStatus(), L"OVER");
    receiver.ReadMerPercent();
    EXPECT_EQ(receiver.ValueStatus(), L"UNDER");
    TuneTo(500);
    EXPECT_EQ(receiver.ReadRfLevel(), -30);
    EXPECT_EQ(receiver.ValueStatus(), L"UNDER");
}

TEST_F(ReceiverModelTest, HearsNeighboursThatNoSawFilterKeepsOut)
{
    NetworkModel model = NetworkModel::Parse(
        "[Channel 1]\nFrequency (MHz)=474\n[Channel 2]\nFrequency (MHz)=482\n"
        "Level (dBuV)=77\n",
        L"net.ini");
    model.Set(L"Network", L"Reading Noise", L"0");
    receiver.Network(model);
    time.now += 1;
    const double filtered = receiver.ReadCarrierToInterference();
    receiver.SawBandwidth(0);
    time.now += 1;
    EXPECT_LT(receiver.ReadCarrierToInterference(), filtered - 15);
    receiver.SawBandwidth(2);
    EXPECT_EQ(LocksAfter(5), "RS");
}

TEST_F(ReceiverModelTest, EqualisesAnEchoWithinItsReach)
{
    Set(L"Channel 1", L"Echo (dB)", L"12");
    Set(L"Channel 1", L"Echo Length (m)", L"40");
    EXPECT_EQ(LocksAfter(5), "RSCT");
    receiver.Equaliser(0);
    EXPECT_EQ(LocksAfter(5), "RS");
    receiver.Equaliser(1);
    Set(L"Channel 1", L"Echo Length (m)", L"1000");
    EXPECT_EQ(LocksAfter(5), "RS");
}

TEST_F(ReceiverModelTest, LosesTheLevelThatTheTiltTakes)
{
    Set(L"Network", L"Tilt (dB)", L"10");
    Set(L"Channel 2", L"Frequency (MHz)", L"862");
    TuneTo(862);
    time.now += 1;
    EXPECT_NEAR(receiver.ReadRfLevel(), -4, 0.01);
}

TEST_F(ReceiverModelTest, CountsBitErrorsTowardsThePhysics)
{
    Set(L"Channel 1", L"C/I (dB)", L"24.5");
    receiver.BerSamples(20);
    TuneTo(474);
    EXPECT_EQ(receiver.BerState(), L"---");
    SecondsToLock();
    EXPECT_EQ(receiver.BerState(), L"0 of 20");
    receiver.ReadBer();
    time.now += 3.5 * 1e7 / (6.9e6 * 6);
    EXPECT_EQ(receiver.BerState(), L"3 of 20");
    time.now += 20 * 1e7 / (6.9e6 * 6);
    EXPECT_EQ(receiver.BerState(), L"Done");
    const double mer = receiver.ReadMer();
    const double expected = qam::BitErrorRatio(64, mer - 1);
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
    EXPECT_EQ(receiver.ReadBer(), 0);
    time.now += 1e8 / (6.9e6 * 6) + 1e-6;
    EXPECT_EQ(receiver.BerResult(), L"<1.0E-8");
    receiver.ReadBer();
    EXPECT_EQ(receiver.ValueStatus(), L"UNDER");
    Set(L"Channel 1", L"Outages", L"TS 1 1");
    SecondsToLock();
    receiver.ReadBer();
    time.now += 5;
    EXPECT_EQ(receiver.BerResult(), L"---");
}

TEST_F(ReceiverModelTest, AddsUpErroredTime)
{
    Set(L"Channel 1", L"Outages", L"TS 10 2");
    TuneTo(474);
    const double locking = SecondsToLock();
    time.now += 5;
    receiver.ResetErrorCounters();
    time.now += 1;
    const ErroredTime clean = receiver.ErrorCounters();
    time.now += 1e-3;
    const ErroredTime later = receiver.ErrorCounters();
    EXPECT_GT(clean.dataErrors, 0);
    EXPECT_LT(clean.dataErrors, 1e-5);
    EXPECT_GT(later.dataErrors, clean.dataErrors);
    EXPECT_GT(later.syncErrors, clean.syncErrors);
    EXPECT_GT(later.unavailable, clean.unavailable);
    time.now += 10;
    const ErroredTime outage = receiver.ErrorCounters();
    EXPECT_GT(outage.unavailable, 2);
    EXPECT_LT(outage.unavailable, 2 + locking);
    EXPECT_NEAR(outage.dataErrors, outage.unavailable, 1e-4);

    Set(L"Channel 1", L"C/I (dB)", L"23.3");
    Set(L"Channel 1", L"Outages", L"");
    time.now += 2;
    receiver.ResetErrorCounters();
    time.now += 100;
    const ErroredTime bad = receiver.ErrorCounters();
    EXPECT_GT(bad.dataErrors, 90);
    EXPECT_LT(bad.syncErrors, 80);
    EXPECT_LT(bad.unavailable, 0.01);
    EXPECT_TRUE(receiver.TsError());
}

TEST_F(ReceiverModelTest, FreezesWhatItShowsOnHold)
{
    Set(L"Network", L"Reading Noise", L"1");
    TuneTo(474);
    time.now += 1;
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

TEST_F(ReceiverModelTest, RepeatsItsReadingsBySeed)
{
    const auto readings = [&](const wchar_t* seed) {
        FakeTime ownTime;
        ReceiverModel own(ownTime);
        NetworkModel model = NetworkModel::Parse(network, L"net.ini");
        model.Set(L"Network", L"Reading Noise", L"1");
        model.Set(L"Network", L"Seed", seed);
        own.Network(model);
        own.Frequency(474e6);
        ownTime.now += 1;
        return std::vector{own.ReadRfLevel(), own.ReadMer(), own.ReadMer(), own.ReadFrequencyOffset()};
    };
    EXPECT_EQ(readings(L"5"), readings(L"5"));
    EXPECT_NE(readings(L"5"), readings(L"6"));
}

TEST_F(ReceiverModelTest, RefusesWhatItCannotBeSetTo)
{
    const auto refusal = [](auto set) {
        try {
            set();
        } catch (const RaisedError& error) {
            return error.description;
        }
        return std::wstring(L"accepted");
    };
    EXPECT_EQ(refusal([&] { receiver.OrderOfQam(65); }),
              L"Let OrderOfQam failed: 65 is none of 4, 16, 32, 64, 128 and 256");
    EXPECT_EQ(refusal([&] { receiver.SymbolRate(std::nan("")); }),
              L"Let SymbolRate failed: it must be from 100000 to 8000000 symbols per second");
    Set(L"Network", L"Installed Options", L"KTR-H2,KTR-H8 (not H9),RB");
    EXPECT_THAT(refusal([&] { receiver.Mode(7); }), testing::HasSubstr(L"Let Mode failed"));
    EXPECT_THAT(refusal([&] { receiver.SawBandwidth(8); }), testing::HasSubstr(L"Let StatusSawFilterBW failed"));
    EXPECT_THAT(refusal([&] { receiver.ReferenceSource(1); }), testing::HasSubstr(L"Let Setup10MhzRef not available"));
    EXPECT_THAT(refusal([&] { receiver.InputRoute(75); }), testing::HasSubstr(L"needs the option KTR-H5"));
    receiver.SawBandwidth(7);
    EXPECT_EQ(receiver.SawBandwidth(), 6);
    EXPECT_EQ(receiver.InputRoute(), 4);
    EXPECT_FALSE(receiver.ReferenceLocked());
}

TEST_F(ReceiverModelTest, GoesBackToItsBasicState)
{
    receiver.OrderOfQam(16);
    receiver.SymbolRate(5e6);
    receiver.BerSamples(100);
    receiver.InputRoute(4);
    receiver.Hold(true);
    receiver.Initialise();
    EXPECT_EQ(receiver.OrderOfQam(), 64);
    EXPECT_EQ(receiver.SymbolRate(), 6.9e6);
    EXPECT_EQ(receiver.BerSamples(), 10);
    EXPECT_EQ(receiver.InputRoute(), 75);
    EXPECT_EQ(receiver.SawBandwidth(), 8);
    EXPECT_EQ(receiver.LevelUnit(), 0);
    EXPECT_EQ(receiver.Mode(), 4);
    EXPECT_FALSE(receiver.Hold());
}

TEST_F(ReceiverModelTest, CountsOperationsTakesLatencyAndFailsByScript)
{
    const int32_t before = receiver.Operations();
    receiver.Latency(0.01);
    const double start = time.now;
    receiver.Faults().FailAt(L"get Frequency", 2, RaisedError(50001, L"script", L"enough"));
    receiver.Faults().FailAt(L"*", 5, RaisedError(7, L"script", L"any"));
    receiver.Frequency(474e6);
    receiver.Frequency();
    receiver.TsError();
    EXPECT_THROW(receiver.Frequency(), RaisedError);
    EXPECT_THROW(receiver.TsError(), RaisedError);
    receiver.TsError();
    EXPECT_EQ(receiver.Operations() - before, 6);
    EXPECT_NEAR(time.now - start, 0.06, 1e-9);
    EXPECT_THROW(receiver.Faults().FailAt(L"Frequenzy", 1, RaisedError(1, L"", L"")), RaisedError);
    EXPECT_THROW(receiver.Faults().FailAt(L"*", 0, RaisedError(1, L"", L"")), RaisedError);
}

TEST_F(ReceiverModelTest, AnswersNothingWhenItIsNotConnected)
{
    receiver.Online(true);
    EXPECT_TRUE(receiver.Online());
    Set(L"Network", L"Receiver Connected", L"No");
    EXPECT_FALSE(receiver.Online());
    EXPECT_THROW(receiver.Mode(), RaisedError);
}

/// The locks that hold five seconds after tuning to each channel of a model file, with the order that is sent there.
std::vector<std::string> LocksOnEachChannel(const wchar_t* file)
{
    FakeTime time;
    ReceiverModel receiver(time);
    receiver.Network(NetworkModel::Load(SystemFiles(), FromUtf8(TVN_TEST_DATA) + file));
    std::vector<std::string> locks;
    for (const ChannelModel& channel : receiver.Network().Channels()) {
        receiver.OrderOfQam(channel.order);
        receiver.SymbolRate(channel.symbolRate * 1e6);
        receiver.Frequency(channel.frequency * 1e6);
        time.now += 5.6;
        locks.push_back(std::string(receiver.RfSignalPresent() ? "R" : "") + (receiver.CarrierUnlocked() ? "" : "C") +
                        (receiver.TsError() ? "" : "T"));
    }
    return locks;
}

TEST(ReceiverModel, ReceivesTheNetworksOfTheModelFiles)
{
    EXPECT_EQ(LocksOnEachChannel(L"/clean.ini"), (std::vector<std::string>(3, "RCT")));
    EXPECT_EQ(LocksOnEachChannel(L"/impaired.ini"),
              (std::vector<std::string>{"RC", "RCT", "RCT", "RCT", "RCT", "R", "RCT", "RCT"}));
}

TEST(NetworkModelFile, IsNamedWhenItCannotBeRead)
{
    try {
        NetworkModel::Load(SystemFiles(), FromUtf8(TVN_TEST_DATA) + L"/missing.ini");
        FAIL();
    } catch (const ModelError& error) {
        EXPECT_THAT(error.description, testing::HasSubstr(L"missing.ini: the network model cannot be read: "));
        EXPECT_EQ(error.line, 0);
    }
}

TEST(ReceiverModel, SeesNoiseWithoutANetwork)
{
    FakeTime time;
    ReceiverModel receiver(time);
    receiver.Frequency(474e6);
    time.now += 10;
    EXPECT_FALSE(receiver.RfSignalPresent());
    EXPECT_TRUE(receiver.CarrierUnlocked());
    receiver.ReadRfLevel();
    EXPECT_EQ(receiver.ValueStatus(), L"UNDER");
    receiver.ReadBer();
    EXPECT_EQ(receiver.BerState(), L"---");
    EXPECT_NEAR(receiver.ErrorCounters().unavailable, 10, 1e-6);
}

}  // namespace
}  // namespace tvn2x
