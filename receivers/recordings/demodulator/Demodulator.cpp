#include "receivers/recordings/demodulator/Demodulator.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

#include "receivers/recordings/demodulator/ConstellationAnalysis.h"
#include "receivers/recordings/demodulator/LevelControl.h"
#include "receivers/recordings/demodulator/LockDetector.h"
#include "receivers/recordings/demodulator/MatchedInterpolator.h"
#include "receivers/recordings/demodulator/SignalSearch.h"
#include "receivers/recordings/demodulator/SymbolLoop.h"
#include "receivers/recordings/demodulator/TimingRecovery.h"

namespace tvn2x::recordings {
namespace {

constexpr size_t blockValues = TimingRecovery::blockValues;
constexpr size_t blockSymbols = blockValues / 2;
constexpr size_t chunkSamples = 4096;
constexpr size_t keptSymbols = 65536;

SignalParameters Checked(const SignalParameters& parameters, double rate)
{
    if (!(parameters.symbolRate >= 0.87e6 && parameters.symbolRate <= 7.5e6)) {
        throw std::invalid_argument("A symbol rate is between 0.87 and 7.5 MSymb/s.");
    }
    if (!(parameters.rollOff >= 0.1 && parameters.rollOff <= 0.25)) {
        throw std::invalid_argument("A roll-off is between 0.10 and 0.25.");
    }
    if (!(rate >= 1.3 * parameters.symbolRate && rate <= 64 * parameters.symbolRate)) {
        throw std::invalid_argument("The samples' rate is between 1.3 and 64 times the symbol rate.");
    }
    return parameters;
}

}  // namespace

/// The stages in their order, and the order of events: search, settle, adapt blindly, decide, track. Whatever loses the
/// signal goes back to the search.
class Demodulator::Chain
{
public:
    Chain(const SignalParameters& parameters, double rate, PacketSink* sink, const Kernels& kernels);

    void Process(std::span<const std::complex<float>> samples);
    const DemodulatorState& State() const { return state_; }
    SignalReadings Readings() const;
    std::vector<std::complex<float>> NewestSymbols(size_t most) const;

private:
    enum class Phase
    {
        search,  ///< for the carrier and the symbol rate
        settle,  ///< level and timing
        blind,   ///< equaliser
        decide,  ///< carrier, and the equaliser on decided points
        track
    };

    // Blocks of 1,024 symbols.
    static constexpr int settleBlocks = 3;
    static constexpr int leastBlindBlocks = 24;
    static constexpr int mostBlindBlocks = 96;
    static constexpr double mostTurning = 2e-3;  ///< turns a symbol that the matched filter may be off
    static constexpr int decideBlocks = 40;      ///< after as many without a lock, the search begins anew
    static constexpr int calmBlocks = 20;        ///< with a lock, until the loops become slow

    /// What is learnt of a signal from when it was found, and begins anew with the next one.
    struct Acquired
    {
        TimingRecovery timing;
        SymbolLoop loop;
        LockDetector timingLock{3, 3};
        LockDetector carrierLock{4, 4};
        int blocks = 0;            ///< of this phase
        double meanFrequency = 0;  ///< of the carrier loop, turns a symbol
        std::vector<std::complex<float>> blindSymbols = {};
    };

    /// The last symbols and the points that they were taken for, as a ring.
    struct Kept
    {
        std::vector<std::complex<float>> symbols;
        std::vector<Constellation::Cell> points;
        size_t next = 0;
    };

    Acquired Anew(double symbolRateOffset) const;
    void Search();
    void Begin(const SignalSearch::Found& found);
    void Abandon();
    bool Advance();
    void ProcessBlock();
    void FollowTiming();
    void BlindBlock();
    void DecideBlock();
    void TakeOutcome(const SymbolLoop::Outcome& outcome);
    void Keep();
    void Report();

    ComplexRow Values() { return {valuesRe_.data(), valuesIm_.data()}; }

    SignalParameters parameters_;
    double rate_;
    const Kernels* kernels_;
    recordings::Constellation constellation_;
    SignalSearch search_;
    CarrierSearch carrierSearch_;
    Mixer mixer_;
    MatchedInterpolator interpolator_;
    LevelControl level_;
    TransportDecoder decoder_;
    Acquired acquired_;

    Phase phase_ = Phase::search;
    int blindBlocks_ = leastBlindBlocks;
    std::vector<std::complex<float>> pending_;
    size_t taken_ = 0;  ///< of them
    std::vector<float> valuesRe_;
    std::vector<float> valuesIm_;
    std::vector<std::complex<float>> symbols_;
    std::vector<Constellation::Cell> points_;
    Kept kept_;
    DemodulatorState state_;
};

Demodulator::Chain::Chain(const SignalParameters& parameters, double rate, PacketSink* sink, const Kernels& kernels)
    : parameters_(Checked(parameters, rate)),
      rate_(rate),
      kernels_(&kernels),
      constellation_(parameters.order),
      search_(parameters, rate),
      carrierSearch_(constellation_),
      mixer_(rate, *kernels_),
      interpolator_(rate / parameters.symbolRate / 2, parameters.rollOff, *kernels_),
      level_(parameters.rollOff),
      decoder_(constellation_, sink),
      acquired_(Anew(0)),
      valuesRe_(Equaliser::history + blockValues),
      valuesIm_(Equaliser::history + blockValues),
      symbols_(blockSymbols),
      points_(blockSymbols)
{
    state_.acquisitions = 1;
}

void Demodulator::Chain::Process(std::span<const std::complex<float>> samples)
{
    state_.samples += samples.size();
    while (!samples.empty()) {
        const auto portion = samples.first(std::min(samples.size(), SignalSearch::searchSamples));
        samples = samples.subspan(portion.size());
        pending_.erase(pending_.begin(), pending_.begin() + static_cast<ptrdiff_t>(taken_));
        taken_ = 0;
        pending_.insert(pending_.end(), portion.begin(), portion.end());
        while (Advance()) {
        }
    }
    Report();
}

/// One step with the samples that are there; whether there were enough for it.
bool Demodulator::Chain::Advance()
{
    const size_t there = pending_.size() - taken_;
    if (there < (phase_ == Phase::search ? SignalSearch::searchSamples : chunkSamples)) {
        return false;
    }
    if (phase_ == Phase::search) {
        Search();
        return true;
    }
    interpolator_.Take({pending_.data() + taken_, chunkSamples}, mixer_);
    taken_ += chunkSamples;
    while (phase_ != Phase::search && interpolator_.Give(blockValues, Values().From(Equaliser::history)) > 0) {
        ProcessBlock();
        std::copy_n(valuesRe_.end() - Equaliser::history, Equaliser::history, valuesRe_.begin());
        std::copy_n(valuesIm_.end() - Equaliser::history, Equaliser::history, valuesIm_.begin());
    }
    return true;
}

void Demodulator::Chain::Search()
{
    const std::span<const std::complex<float>> samples(pending_.data() + taken_, SignalSearch::searchSamples);
    const std::optional<SignalSearch::Found> found = search_.Search(samples);
    if (found) {
        Begin(*found);
        return;
    }
    // No signal: what there is in the channel has a level all the same.
    interpolator_.Take(samples, mixer_);
    while (interpolator_.Give(blockValues, Values()) > 0) {
        level_.Process(Values(), blockValues);
    }
    taken_ += samples.size();
}

Demodulator::Chain::Acquired Demodulator::Chain::Anew(double symbolRateOffset) const
{
    return {TimingRecovery(parameters_.rollOff, symbolRateOffset), SymbolLoop(constellation_, *kernels_)};
}

/// The samples that the signal was found in go through the stages as the first ones.
void Demodulator::Chain::Begin(const SignalSearch::Found& found)
{
    mixer_.SetFrequency(found.frequency);
    acquired_ = Anew(found.symbolRateOffset);
    interpolator_.SetStretch(-found.symbolRateOffset * 1e-6);
    level_.Reset();
    phase_ = Phase::settle;
}

void Demodulator::Chain::Abandon()
{
    phase_ = Phase::search;
    ++state_.acquisitions;
    kept_ = {};
    interpolator_.SetGain(1);
    level_.Reset();
}

void Demodulator::Chain::ProcessBlock()
{
    FollowTiming();
    ++acquired_.blocks;
    switch (phase_) {
        case Phase::settle:
            if (acquired_.blocks == settleBlocks) {
                level_.Adjust();
                interpolator_.SetGain(level_.Gain());
                phase_ = Phase::blind;
                acquired_.blocks = -1;  // the block after this one has the old gain in its history
            }
            break;
        case Phase::blind:
            BlindBlock();
            break;
        case Phase::decide:
        case Phase::track:
            DecideBlock();
            break;
        case Phase::search:
            break;
    }
}

void Demodulator::Chain::FollowTiming()
{
    const ComplexRow values = Values().From(Equaliser::history);
    level_.Process(values, blockValues);
    const TimingRecovery::Correction correction = acquired_.timing.Process(values);
    interpolator_.Delay(correction.delay * rate_ / parameters_.symbolRate);
    interpolator_.SetStretch(correction.stretch);
    acquired_.timingLock.Take(acquired_.timing.Coherence() > 0.15, acquired_.timing.Coherence() < 0.06);
}

void Demodulator::Chain::BlindBlock()
{
    if (acquired_.blocks <= 0) {
        return;
    }
    acquired_.loop.SetBlindProgress(std::max(0.0, 1 - 1.3 * acquired_.blocks / blindBlocks_));
    acquired_.loop.Blind(Values(), symbols_);
    if (blindBlocks_ - acquired_.blocks < static_cast<int>(CarrierSearch::searchSymbols / blockSymbols)) {
        acquired_.blindSymbols.insert(acquired_.blindSymbols.end(), symbols_.begin(), symbols_.end());
    }
    if (acquired_.blocks < blindBlocks_) {
        return;
    }
    CarrierSearch::Turning turning = carrierSearch_.Search(acquired_.blindSymbols);
    if (std::abs(turning.frequency) > mostTurning) {
        // Echoes that ripple the spectrum's edges led the search astray: once more, with the filter where the signal
        // is.
        mixer_.SetFrequency(mixer_.Frequency() + turning.frequency * parameters_.symbolRate);
        acquired_.blindSymbols.clear();
        acquired_.blocks = -1;
        return;
    }
    turning.phase += turning.frequency * static_cast<double>(acquired_.blindSymbols.size());
    acquired_.loop.StartDeciding(turning);
    acquired_.meanFrequency = turning.frequency;
    phase_ = Phase::decide;
    acquired_.blocks = 0;
}

void Demodulator::Chain::DecideBlock()
{
    const SymbolLoop::Outcome outcome = acquired_.loop.Decide(Values(), symbols_, points_);
    acquired_.meanFrequency += (acquired_.loop.Carrier().Frequency() - acquired_.meanFrequency) / 16;
    TakeOutcome(outcome);
    const bool certain = acquired_.carrierLock.Locked();
    decoder_.Process(points_, certain);
    if (phase_ == Phase::track && certain) {
        Keep();
    }
}

void Demodulator::Chain::TakeOutcome(const SymbolLoop::Outcome& outcome)
{
    // Places that have nothing to do with the points lie 2/3 away in the mean; at a bit error ratio of 1e-3 it is 0.20
    // (16-QAM) to 0.23 (256-QAM). A lower order can lie on points of a higher one with the same power, 16-QAM times 4 +
    // i on those of 256-QAM; but then it uses few of them.
    const double power = outcome.power / constellation_.MeanPower();
    const bool allUsed = outcome.pointsUsed * 4 > constellation_.Order() * 3;
    const bool good = outcome.error < 0.36 && power > 0.9 && power < 1.1 && allUsed;
    const bool bad = !(outcome.error < 0.45) || !(power > 0.7 && power < 1.4);
    acquired_.carrierLock.Take(good, bad);
    acquired_.loop.HoldEqualiser(bad && phase_ == Phase::track);
    if (phase_ == Phase::decide && acquired_.carrierLock.Locked() && acquired_.blocks >= calmBlocks) {
        acquired_.loop.Settle();
        phase_ = Phase::track;
        blindBlocks_ = leastBlindBlocks;
    } else if (phase_ == Phase::decide && !acquired_.carrierLock.Locked() && acquired_.blocks >= decideBlocks) {
        // Perhaps there are strong echoes, for which the blind time was too short.
        blindBlocks_ = blindBlocks_ < mostBlindBlocks ? 2 * blindBlocks_ : leastBlindBlocks;
        Abandon();
    } else if (phase_ == Phase::track && !acquired_.carrierLock.Locked()) {
        Abandon();
    }
}

void Demodulator::Chain::Keep()
{
    if (kept_.symbols.size() < keptSymbols) {
        kept_.symbols.insert(kept_.symbols.end(), symbols_.begin(), symbols_.end());
        kept_.points.insert(kept_.points.end(), points_.begin(), points_.end());
        return;
    }
    std::copy(symbols_.begin(), symbols_.end(), kept_.symbols.begin() + static_cast<ptrdiff_t>(kept_.next));
    std::copy(points_.begin(), points_.end(), kept_.points.begin() + static_cast<ptrdiff_t>(kept_.next));
    kept_.next = (kept_.next + blockSymbols) % keptSymbols;
}

void Demodulator::Chain::Report()
{
    Locks& locks = state_.locks;
    locks.level = level_.Locked();
    locks.timing = phase_ != Phase::search && acquired_.timingLock.Locked();
    locks.equaliser = locks.timing && acquired_.carrierLock.Locked();
    locks.carrier = locks.equaliser;
    locks.frameSync = locks.carrier && decoder_.FrameLocked();
    locks.reedSolomon = locks.frameSync && decoder_.PacketsLocked();
    state_.counters = decoder_.Counters();
    state_.inverted = locks.frameSync && decoder_.Inverted();
    state_.channelPower = level_.SignalPower();
    state_.frequencyOffset = locks.timing ? mixer_.Frequency() + acquired_.meanFrequency * parameters_.symbolRate : 0;
    state_.symbolRateOffset = locks.timing ? acquired_.timing.SymbolRateOffset() : 0;
}

SignalReadings Demodulator::Chain::Readings() const
{
    std::vector<std::complex<float>> symbols = kept_.symbols;
    std::vector<Constellation::Cell> points = kept_.points;
    std::rotate(symbols.begin(), symbols.begin() + static_cast<ptrdiff_t>(kept_.next), symbols.end());
    std::rotate(points.begin(), points.begin() + static_cast<ptrdiff_t>(kept_.next), points.end());
    // The equaliser makes up for what the level has changed by since the gain was set.
    const double level = level_.SignalPower() * level_.Gain() * level_.Gain();
    const auto response = [this, level](double frequency) { return acquired_.loop.PowerResponse(frequency) * level; };
    return ConstellationAnalysis(constellation_)
        .Measure({symbols, points}, {response, acquired_.loop.CarrierPowerResponse()});
}

std::vector<std::complex<float>> Demodulator::Chain::NewestSymbols(size_t most) const
{
    const size_t count = std::min(most, kept_.symbols.size());
    std::vector<std::complex<float>> newest;
    newest.reserve(count);
    for (size_t i = kept_.symbols.size() - count; i < kept_.symbols.size(); ++i) {
        newest.push_back(kept_.symbols[(i + kept_.next) % kept_.symbols.size()]);
    }
    return newest;
}

Demodulator::Demodulator(const SignalParameters& parameters, double rate, PacketSink* sink, const Kernels& kernels)
    : chain_(std::make_unique<Chain>(parameters, rate, sink, kernels))
{
}

Demodulator::~Demodulator() = default;

void Demodulator::Process(std::span<const std::complex<float>> samples)
{
    chain_->Process(samples);
}

const DemodulatorState& Demodulator::State() const
{
    return chain_->State();
}

SignalReadings Demodulator::Readings() const
{
    return chain_->Readings();
}

std::vector<std::complex<float>> Demodulator::Constellation(size_t most) const
{
    return chain_->NewestSymbols(most);
}

}  // namespace tvn2x::recordings
