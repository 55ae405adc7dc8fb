#include "receivers/recordings/receiver/RecordedReceiver.h"

#include <gmock/gmock.h>

#include <cmath>
#include <filesystem>
#include <fstream>

#include "receivers/recordings/source/RecordingError.h"
#include "support/RaisedBy.h"
#include "support/ReceiverSession.h"
#include "support/sender/Transmitter.h"
#include "util/Encoding.h"

namespace tvn2x::recordings {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

/// Each look at it takes a millisecond, so that a loop comes to its end.
class LookedAtTime final : public PlayTime
{
public:
    double Seconds() override { return now += 0.001; }
    void Wait(double seconds) override { now += seconds; }

    double now = 100;
};

constexpr double rate = 2e6;

/// A channel of 0.87 MSymb/s, 16-QAM, at 100 MHz: 0.4 s of it.
std::vector<std::complex<float>> Sent(double noise)
{
    const sender::Signal signal{.order = 16, .symbolRate = 0.87e6, .rate = rate, .frequency = 12e3, .noise = noise};
    return sender::Transmitter(signal).Send(static_cast<size_t>(0.4 * rate));
}

const std::vector<std::complex<float>>& Samples()
{
    static const auto samples = Sent(30);
    return samples;
}

/// A receiver with a folder that has it.
class PlayingReceiver
{
protected:
    void Put(std::vector<std::complex<float>> samples, const std::string& calibration = "")
    {
        std::filesystem::remove_all(folder_);
        std::filesystem::create_directories(folder_);
        std::ofstream(folder_ / "a.sigmf-meta") << R"({"global":{"core:datatype":"cf32_le","core:sample_rate":2e6)"
                                                << calibration << R"(},"captures":[{"core:frequency":100e6}]})";
        std::ofstream(folder_ / "a.sigmf-data", std::ios::binary)
            .write(reinterpret_cast<const char*>(samples.data()),
                   static_cast<std::streamsize>(samples.size() * sizeof samples[0]));
        receiver_.Initialise();
        receiver_.OrderOfQam(16);
        receiver_.Signals(folder_.wstring());
        Tune(100e6);
    }
    /// Without a signal from one second to another.
    void PutSilent(double from, double to)
    {
        std::vector<std::complex<float>> samples = Samples();
        std::fill(samples.begin() + std::lround(from * rate), samples.begin() + std::lround(to * rate), 0.0F);
        Put(samples);
    }
    void Tune(double frequency)
    {
        receiver_.Frequency(frequency);
        receiver_.SymbolRate(0.87e6);
    }
    void Ask(int times)
    {
        while (times-- > 0) {
            receiver_.RfSignalPresent();
        }
    }
    bool Locks()
    {
        for (int i = 0; i < 400; ++i) {
            if (!receiver_.TsError()) {
                return true;
            }
        }
        return false;
    }

    const std::filesystem::path folder_ =
        testing::TempDir() + "played." + testing::UnitTest::GetInstance()->current_test_info()->name();
    LookedAtTime time_;
    RecordedReceiver receiver_{time_};
};

class RecordedReceiverTest : public testing::Test, protected PlayingReceiver
{
};

/// Deeds and sights beside the receiver's operations: a recording is put into the folder, with more of its metadata or
/// noise; time passes; the client asks for a lock so many times, or until there is one.
class Session : public ReceiverSession, private PlayingReceiver
{
public:
    const Deeds deeds = With(receiver_, Deeds{
                                            {"put", [this] { Put(Samples(), Bytes()); }},
                                            {"put-noisy", [this] { Put(Sent(Value(0))); }},
                                            {"put-silent", [this] { PutSilent(Value(0), Value(1)); }},
                                            {"wait", [this] { time_.now += Value(0); }},
                                            {"ask", [this] { Ask(Number(0)); }},
                                            {"lock", [this] { EXPECT_TRUE(Locks()); }},
                                        });
    const Sights sights =
        With(receiver_,
             Sights{
                 {"remark", [this] { return receiver_.Remark(); }},
                 {"symbols", [this] { return Told(receiver_.Constellation(static_cast<size_t>(Number(0))).size()); }},
                 {"error-of", [this] { return ErrorOf(*this, std::string(rest)); }},
             });
};

TEST(RecordedReceiverSessions, AnswerAsEachExpects)
{
    PlaySessions("recording-sessions.txt", [](const std::string&) { return std::make_unique<Session>(); });
}

TEST_F(RecordedReceiverTest, MeasuresARecordingAndStaysAtItsEnd)
{
    Put(Samples(), R"(,"tvn2x:full_scale_dbuv":100)");
    EXPECT_TRUE(receiver_.CarrierUnlocked()) << "locks take their time";
    ASSERT_TRUE(Locks()) << ToUtf8(receiver_.Remark());
    receiver_.LevelUnit(4);
    EXPECT_NEAR(receiver_.ReadRfLevel(), 80, 0.3) << "the sender's level is 20 dB below full scale";
    EXPECT_EQ(receiver_.ValueStatus(), L"");
    EXPECT_NEAR(receiver_.ReadMer(), 30, 1);
    EXPECT_NEAR(receiver_.ReadFrequencyOffset(), 12e3, 50);
    receiver_.ResetErrorCounters();
    receiver_.ReadBer();
    EXPECT_EQ(receiver_.ValueStatus(), L"UNDER") << "there is no error at 30 dB";
    EXPECT_EQ(receiver_.BerState(), L"0 of 10");
    EXPECT_LT(receiver_.ErrorCounters().dataErrors, 1e-3);
    EXPECT_FALSE(receiver_.Constellation(100).empty());

    receiver_.Hold(true);
    const std::wstring held = receiver_.BerResult();
    Ask(100);
    EXPECT_EQ(receiver_.BerResult(), held);
    receiver_.Hold(false);

    Ask(1000);
    EXPECT_FALSE(receiver_.TsError()) << "the locks are those of the end";
    EXPECT_NEAR(receiver_.ReadMer(), 30, 1);
    EXPECT_EQ(receiver_.BerState(), L"0 of 10, the recording is over");
    EXPECT_THAT(receiver_.BerResult(), StartsWith(L"<"));
    EXPECT_TRUE(std::isnan(receiver_.ErrorCounters().syncErrors)) << "nobody knows the seconds after it";
    EXPECT_THAT(receiver_.Remark(), HasSubstr(L"a.sigmf-data, 0.4 of 0.4 s: it ended before"));
    receiver_.SymbolRate(0.87e6);
    EXPECT_TRUE(receiver_.TsError()) << "the next measurement plays it from its beginning";
}

TEST_F(RecordedReceiverTest, TellsNoLevelWithoutACalibration)
{
    Put(Samples());
    ASSERT_TRUE(Locks());
    EXPECT_EQ(receiver_.ReadRfLevel(), 0);
    EXPECT_EQ(receiver_.ValueStatus(), L"---");
    EXPECT_FALSE(receiver_.IsCalibrated());
    EXPECT_NEAR(*receiver_.LevelBelowFullScale(), -20, 0.3);
    EXPECT_THAT(receiver_.Remark(), HasSubstr(L"dB of full scale (not calibrated, not judged)"));
}

TEST_F(RecordedReceiverTest, NamesWhatKeepsItFromReceiving)
{
    EXPECT_THAT(RaisedBy([&] { receiver_.RfSignalPresent(); }), HasSubstr(L"There are no recordings"));
    std::vector<std::complex<float>> damaged(Samples().begin(), Samples().begin() + 100000);
    damaged[50000] = std::nanf("");
    Put(damaged);
    EXPECT_THAT(RaisedBy([&] { Ask(100); }), HasSubstr(L"a.sigmf-data, byte 400000: the sample there is no number"));
    EXPECT_THAT(RaisedBy([&] { receiver_.ReadMer(); }), HasSubstr(L"byte 400000")) << "it stays so";
    Tune(101e6);
    EXPECT_THAT(
        RaisedBy([&] { receiver_.RfSignalPresent(); }),
        HasSubstr(L"No recording holds the channel at 101.000 MHz with its 1.00 MHz. There is: a.sigmf-data 99 to "
                  L"101 MHz"));
    EXPECT_THAT(receiver_.Remark(), StartsWith(L"No recording holds"));
    Tune(100e6);
    EXPECT_EQ(RaisedBy([&] { receiver_.RfSignalPresent(); }), L"");
}

TEST(MachineTime, PassesWhileSomebodyWaits)
{
    MachineTime time;
    const double before = time.Seconds();
    time.Wait(0.002);
    EXPECT_GE(time.Seconds() - before, 0.002);
}

TEST(ErroredSeconds, CountsASecondFromItsBeginningToItsEnd)
{
    ErroredSeconds counted;
    DemodulatorState state;
    state.locks.frameSync = state.locks.reedSolomon = true;
    counted.Add(10.19, state);
    counted.Add(10.2, state);
    counted.Reset();
    counted.Add(10.9, state);
    EXPECT_GT(counted.Time().dataErrors, 0) << "counters that stand still are those of no stream";
    EXPECT_LT(counted.Time().dataErrors, 1e-5);
    state.counters.failedPackets = 1;
    counted.Add(11.5, state);  // begins in the second before
    EXPECT_NEAR(counted.Time().dataErrors, 1.3, 1e-5);
    EXPECT_LT(counted.Time().syncErrors, 1e-5);
    counted.Add(12.7, state);
    EXPECT_NEAR(counted.Time().dataErrors, 1.8, 1e-5) << "to the end of its second";
    counted.Reset();
    state.counters.failedPackets = 2;
    counted.Add(12.8, state);
    EXPECT_NEAR(counted.Time().dataErrors, 0.1, 1e-5) << "and not from before a reset";
    state.locks.reedSolomon = false;
    counted.Add(14.3, state);
    EXPECT_NEAR(counted.Time().unavailable, 1.5, 1e-5);
    EXPECT_NEAR(counted.Time().syncErrors, 1.5, 1e-5);
    state.locks.reedSolomon = true;
    state.counters.failedPackets = 9;
    counted.Add(14.4, state);
    EXPECT_NEAR(counted.Time().dataErrors, 1.7, 1e-5);
    counted.Add(14.9, state);
    EXPECT_NEAR(counted.Time().dataErrors, 1.7, 1e-5) << "a stream that has come is not errored for the time before it";
}

}  // namespace
}  // namespace tvn2x::recordings
