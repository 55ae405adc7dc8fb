// The stages of the demodulator, each against what it is by definition. What they make together of known signals is in
// tests/reception.

#include <cfenv>
#include <cmath>
#include <numbers>
#include <random>
#include <set>

#include "receivers/recordings/demodulator/ConstellationAnalysis.h"
#include "receivers/recordings/demodulator/Demodulator.h"
#include "receivers/recordings/demodulator/LockDetector.h"
#include "receivers/recordings/demodulator/MatchedInterpolator.h"
#include "support/sender/Mapper.h"
#include "support/sender/Transmitter.h"

namespace tvn2x::recordings {
namespace {

using std::numbers::pi;

std::vector<std::complex<double>> RandomPoints(int order, size_t count)
{
    std::mt19937 random(7);
    std::vector<uint8_t> bytes(count * 2);
    for (uint8_t& byte : bytes) {
        byte = static_cast<uint8_t>(random());
    }
    std::vector<std::complex<double>> points;
    sender::Mapper(order).Map(bytes, points);
    points.resize(count);
    return points;
}

std::complex<float> Nearest(const Constellation& constellation, std::complex<float> place)
{
    float i = place.real();
    float q = place.imag();
    constellation.Decide(i, q);
    return {i, q};
}

TEST(Constellation, DecidesForTheNearestPoint)
{
    for (const int order : {16, 32, 64, 128, 256}) {
        const Constellation constellation(order);
        EXPECT_NEAR(constellation.MeanPower(), sender::Mapper::MeanPower(order), 1e-9);
        std::set<std::pair<double, double>> points;
        for (const std::complex<double>& point : RandomPoints(order, 4000)) {
            points.insert({point.real(), point.imag()});
        }
        ASSERT_EQ(points.size(), static_cast<size_t>(order));
        double squares = 0, fourth = 0, neighbours = 0;
        for (const auto& [i, q] : points) {
            const std::complex<double> point(i, q);
            squares += std::norm(point) * std::norm(point) / order;
            fourth += std::pow(point, 4).real() / order;
            const std::pair<double, double> all[] = {{i + 2, q}, {i - 2, q}, {i, q + 2}, {i, q - 2}};
            for (const auto& beside : all) {
                neighbours += static_cast<double>(points.count(beside)) / order;
            }
        }
        EXPECT_NEAR(constellation.Dispersion(), squares / constellation.MeanPower(), 1e-9);
        EXPECT_NEAR(constellation.MeanFourthPower(), fourth, 1e-6);
        EXPECT_NEAR(constellation.Neighbours(), neighbours, 1e-9);
        std::mt19937 random(3);
        std::uniform_real_distribution<float> place(-18, 18);
        for (int number = 0; number < 500; ++number) {
            const std::complex<float> at(place(random), place(random));
            float least = 1000;
            for (const auto& [i, q] : points) {
                least =
                    std::min(least, std::hypot(at.real() - static_cast<float>(i), at.imag() - static_cast<float>(q)));
            }
            const std::complex<float> decided = Nearest(constellation, at);
            ASSERT_NEAR(std::abs(at - decided), least, 1e-4) << order << at;
            const Constellation::Cell cell = Constellation::CellOf(decided.real(), decided.imag());
            ASSERT_EQ(decided, std::complex<float>(Constellation::I(cell), Constellation::Q(cell)));
        }
    }
    // What is no number is somebody's nearest point, too: the search among the missing corners ends.
    const float nan = std::nanf("");
    EXPECT_EQ(Nearest(Constellation(32), {nan, nan}).real(), 5);
    EXPECT_EQ(Nearest(Constellation(32), {5, nan}).imag(), 3);
    EXPECT_THROW(Constellation(100), std::invalid_argument);
}

/// Symbols with known errors, as the points that they are nearest to.
SignalReadings Measured(int order, double noise, double jitter, std::complex<double> origin)
{
    const Constellation constellation(order);
    std::mt19937 random(11);
    std::normal_distribution<double> gaussian;
    const double power = constellation.MeanPower();
    const double deviation = std::sqrt(power / 2 / std::pow(10, noise / 10));
    std::vector<std::complex<float>> symbols;
    std::vector<Constellation::Cell> cells;
    for (const std::complex<double>& point : RandomPoints(order, 65536)) {
        const std::complex<double> symbol = point * std::polar(1.0, gaussian(random) * jitter * pi / 180) +
                                            origin * std::sqrt(power) +
                                            std::complex<double>(gaussian(random), gaussian(random)) * deviation;
        symbols.emplace_back(symbol);
        const std::complex<float> nearest = Nearest(constellation, symbols.back());
        cells.push_back(Constellation::CellOf(nearest.real(), nearest.imag()));
    }
    return ConstellationAnalysis(constellation).Measure({symbols, cells}, {[](double) { return 1; }});
}

TEST(ConstellationAnalysis, PutsBackWhatDecisionsFlatterAndRefusesWhereTheySayNothing)
{
    for (const auto& [order, noise] : {std::pair{16, 15.0}, {128, 24.0}, {256, 27.0}}) {
        EXPECT_NEAR(Measured(order, noise, 0, 0).mer.value_or(0), noise, 0.2) << order;
        EXPECT_FALSE(Measured(order, noise - 3, 0, 0).mer) << order;
    }
    EXPECT_FALSE(Measured(16, 20, 0.5, 0).phaseJitter);
    EXPECT_EQ(Measured(64, 36, 0, 0).phaseJitter, 0);
    const SignalReadings readings = Measured(64, 40, 0.7, std::polar(0.01, 1.0));
    EXPECT_NEAR(readings.phaseJitter.value_or(0), 0.7, 0.02);
    EXPECT_NEAR(readings.carrierSuppression.value_or(0), 40, 0.3);
    EXPECT_NEAR(readings.signalToNoise.value_or(0), 40, 0.1);
    EXPECT_NEAR(readings.mer.value_or(0), -10 * std::log10(2e-4 + std::pow(0.7 * pi / 180, 2)), 0.1);
    EXPECT_FALSE(readings.carrierToInterference);
}

TEST(MatchedInterpolator, HasTheSendersPulse)
{
    for (const double rollOff : {0.1, 0.15, 0.25}) {
        const double pole = 1 / (4 * rollOff);
        for (const double time : {-5.5, -pole, 0.0, 1e-10, 0.3, 1.0, pole, pole + 1e-7, 17.25}) {
            EXPECT_NEAR(RootRaisedCosine(time, rollOff), sender::Pulse(time, rollOff), 1e-6) << rollOff << " " << time;
        }
    }
}

TEST(LockDetector, NeedsSeveralBlocksEitherWay)
{
    LockDetector lock(3, 2);
    std::string locked;
    for (const char block : std::string("ggbgggbgb?gbb?g")) {
        lock.Take(block == 'g', block == 'b');
        locked += lock.Locked() ? '1' : '0';
    }
    EXPECT_EQ(locked, "000001111111000");
}

TEST(Kernels, OfBothKindsReckonAsComplexNumbersDo)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<float> uniform(-1, 1);
    std::vector<float> re(80);
    std::vector<float> im(80);
    std::generate(re.begin(), re.end(), [&] { return uniform(random); });
    std::generate(im.begin(), im.end(), [&] { return uniform(random); });
    for (const Kernels& kernels : {baselineKernels, HasWideKernels() ? wideKernels : baselineKernels}) {
        std::vector<float> a(64, 1);
        std::vector<float> b(64, 2);
        const float factor[2] = {0.25F, -0.5F};
        kernels.adapt({a.data(), b.data()}, {re.data(), im.data()}, 64, 0.5F, factor);
        ComplexGroup sums;
        kernels.products({a.data(), b.data()}, {re.data(), im.data()}, 2, 64, sums);
        for (size_t place = 0; place < ComplexGroup::size; ++place) {
            std::complex<float> sum;
            for (size_t i = 0; i < 64; ++i) {
                const std::complex<float> adapted =
                    std::complex<float>(0.5F, 1) + std::complex<float>(0.25F, -0.5F) * std::complex(re[i], -im[i]);
                ASSERT_NEAR(std::abs(std::complex(a[i], b[i]) - adapted), 0, 1e-5) << kernels.name;
                sum += adapted * std::complex(re[2 * place + i], im[2 * place + i]);
            }
            EXPECT_NEAR(std::abs(sums[place] - sum), 0, 1e-4) << kernels.name;
        }
    }
}

TEST(Demodulator, RefusesWhatItCannotReceiveAndGetsOverWhatIsNoNumber)
{
    EXPECT_THROW(Demodulator({100, 6.9e6, 0.15}, 10e6), std::invalid_argument);
    EXPECT_THROW(Demodulator({64, 0.5e6, 0.15}, 10e6), std::invalid_argument);
    EXPECT_THROW(Demodulator({64, 6.9e6, 0.5}, 10e6), std::invalid_argument);
    EXPECT_THROW(Demodulator({64, 6.9e6, 0.15}, 8e6), std::invalid_argument);
    Demodulator demodulator({64, 6.9e6, 0.15}, 10e6);
    EXPECT_FALSE(demodulator.State().locks.level);
    const float nan = std::nanf("");
    demodulator.Process(std::vector<std::complex<float>>(40000, {nan, nan}));
    EXPECT_FALSE(demodulator.State().locks.timing);
    EXPECT_FALSE(demodulator.Readings().mer);
    EXPECT_TRUE(demodulator.Constellation(100).empty());
}

TEST(Demodulator, TellsTheLevelOfWhatIsNoSignalOfItsKind)
{
    Demodulator demodulator({64, 6.9e6, 0.15}, 10e6);
    std::feclearexcept(FE_ALL_EXCEPT);
    for (const size_t samples : {100U, 100000U}) {
        demodulator.Process(std::vector<std::complex<float>>(samples));
        EXPECT_FALSE(demodulator.State().locks.level);
    }
    EXPECT_FALSE(std::fetestexcept(FE_DIVBYZERO | FE_INVALID)) << "a host may have unmasked them";
    std::mt19937 random(4);
    std::normal_distribution<float> gaussian(0, 0.1F);
    std::vector<std::complex<float>> noise(1000000);
    std::generate(noise.begin(), noise.end(), [&] { return std::complex(gaussian(random), gaussian(random)); });
    demodulator.Process(noise);
    EXPECT_TRUE(demodulator.State().locks.level);
    EXPECT_NEAR(demodulator.State().channelPower, 0.0143, 0.0003);
}

/// What was received before a signal was lost is no matter for the next one.
TEST(Demodulator, ReceivesAnotherSignalAfterOneThatHasGone)
{
    const sender::Signal plain{.order = 256, .noise = 34, .inverted = true};
    sender::Signal before = plain;
    before.level = 0.02;
    before.noise = 40;
    before.frequency = 100e3;
    before.symbolRatePpm = 60;
    before.echoes = {{0.5e-6, -4, 1}};
    before.inverted = false;
    Demodulator demodulator({256, 6.9e6, 0.15}, 10e6);
    for (const auto& [signal, samples] : {std::pair(before, 450000U), {plain, 300000U}}) {
        const int acquisitions = demodulator.State().acquisitions;
        demodulator.Process(sender::Transmitter(signal).Send(samples));
        EXPECT_LE(demodulator.State().acquisitions, acquisitions + 1) << "one may begin in the silence before";
        EXPECT_EQ(demodulator.State().inverted, signal.inverted);
        EXPECT_NEAR(demodulator.State().frequencyOffset, signal.frequency, 50);
        EXPECT_NEAR(demodulator.State().symbolRateOffset, signal.symbolRatePpm, 0.5);
        const double power = demodulator.State().channelPower / signal.level / signal.level;
        EXPECT_NEAR(power, signal.echoes.empty() ? 1 : 1.35, 0.02);
        EXPECT_EQ(demodulator.Readings().symbols, 65536U);
        EXPECT_NEAR(demodulator.Readings().mer.value_or(0), *signal.noise, signal.echoes.empty() ? 0.2 : 1.5);
        demodulator.Process(std::vector<std::complex<float>>(100000));
        EXPECT_FALSE(demodulator.State().locks.carrier);
        EXPECT_FALSE(demodulator.State().inverted);
        EXPECT_EQ(demodulator.Readings().symbols, 0U);
    }
}

TEST(Demodulator, TakesSamplesInBlocksOfAnySize)
{
    const std::vector<std::complex<float>> samples = sender::Transmitter({.noise = 30}).Send(200000);
    Demodulator whole({64, 6.9e6, 0.15}, 10e6);
    Demodulator pieces({64, 6.9e6, 0.15}, 10e6);
    whole.Process(samples);
    std::mt19937 random(2);
    for (std::span<const std::complex<float>> left(samples); !left.empty();) {
        const size_t size = std::min<size_t>(random() % 50000, left.size());
        pieces.Process(left.first(size));
        left = left.subspan(size);
    }
    EXPECT_GT(whole.State().counters.packets, 20U);
    EXPECT_EQ(whole.State().counters.packets, pieces.State().counters.packets);
    EXPECT_EQ(whole.Readings().mer, pieces.Readings().mer);
    EXPECT_EQ(whole.Constellation(100000), pieces.Constellation(100000));
}

}  // namespace
}  // namespace tvn2x::recordings
