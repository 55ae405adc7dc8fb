#include <gmock/gmock.h>

#include <cfenv>
#include <cmath>

#include "TestReceiver.h"
#include "dvbc/Qam.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

class ReceiverModelTest : public testing::Test, protected TestReceiver
{
protected:
    void TuneTo(double megahertz, double wait = 0)
    {
        receiver.Frequency(megahertz * 1e6);
        time.now += wait;
    }
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
};

TEST_F(ReceiverModelTest, CountsBitErrorsTowardsThePhysics)
{
    Set(L"Channel 1", L"C/I (dB)=24.5");
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

TEST_F(ReceiverModelTest, AddsUpErroredTime)
{
    Set(L"Channel 1", L"Outages=TS 10 2, carrier 10.5 0.5, TS 11.9 0.1");  // all within the first
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

    Set(L"Channel 1", L"C/I (dB)=23.3");
    Set(L"Channel 1", L"Outages=");
    time.now += 2;
    receiver.ResetErrorCounters();
    time.now += 100;
    const dvbc::ErroredTime bad = receiver.ErrorCounters();
    EXPECT_NEAR(bad.syncErrors, std::round(bad.syncErrors), 2e-4) << "a second is errored or not";
    EXPECT_GT(bad.dataErrors, 90);
    EXPECT_LT(bad.syncErrors, 80);
    EXPECT_LT(bad.unavailable, 0.01);
    time.now += 0.25;
    EXPECT_LE(receiver.ErrorCounters().dataErrors, bad.dataErrors + 0.2501) << "a part of a second is no whole one";
    EXPECT_TRUE(receiver.TsError());
}

TEST_F(ReceiverModelTest, DrawsBySeedAndAnewWithEachTuningWhateverItWasTunedToBetween)
{
    const auto passes = [&](const wchar_t* seed, const std::vector<double>& frequencies) {
        Set(L"Network", L"Reading Noise=1");
        Set(L"Network", seed);  // begins anew
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
    const auto readings = passes(L"Seed=5", {474, 602, 474, 602, 474});
    EXPECT_NE(readings[0], readings[1]);
    EXPECT_NE(readings[1], readings[2]);
    EXPECT_EQ(passes(L"Seed=5", {602, 474, 474, 602, 474}), readings);
    EXPECT_NE(passes(L"Seed=6", {474, 602, 474, 602, 474}), readings);
}

TEST_F(ReceiverModelTest, LocksSoonerByTheTimeScaleAndReadsTheSame)
{
    const auto measure = [&](double scale) {
        Renew();
        Set(L"Channel 1", L"C/I (dB)=23.9");
        Set(L"Channel 1", L"Outages=TS 3 0.5");
        Set(L"Network", L"Reading Noise=1");
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
