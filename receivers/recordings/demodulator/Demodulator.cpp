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
    TimingRecovery timing_;
    SymbolLoop loop_;
    TransportDecoder decoder_;
    LockDetector timingLock_{3, 3};
    LockDetector carrierLock_{4, 4};

    Phase phase_ = Phase::search;
    int blocks_ = 0;  ///< of this phase
    int blindBlocks_ = leastBlindBlocks;
    double meanFrequency_ = 0;  ///< of the carrier loop, turns a symbol
    std::vector<std::complex<float>> pending_;
    size_t taken_ = 0;  ///< of them
    std::vector<float> valuesRe_;
    std::vector<float> valuesIm_;
    std::vector<std::complex<float>> symbols_;
    std::vector<Constellation::Cell> points_;
    std::vector<std::complex<float>> blindSymbols_;
    std::vector<std::complex<float>> keptSymbols_;
    std::vector<Constellation::Cell> keptPoints_;
    size_t nextKept_ = 0;
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
      timing_(parameters.rollOff, 0),
      loop_(constellation_, *kernels_),
      decoder_(constellation_, sink),
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

/// The samples that the signal was found in go through the stages as the first ones.
void Demodulator::Chain::Begin(const SignalSearch::Found& found)
{
    mixer_.SetFrequency(found.frequency);
    timing_ = TimingRecovery(parameters_.rollOff, found.symbolRateOffset);
    interpolator_.SetStretch(-found.symbolRateOffset * 1e-6);
    level_.Reset();
    loop_ = SymbolLoop(constellation_, *kernels_);
    timingLock_.Reset();
    carrierLock_.Reset();
    blindSymbols_.clear();
    phase_ = Phase::settle;
    blocks_ = 0;
    meanFrequency_ = 0;
}

void Demodulator::Chain::Abandon()
{
    phase_ = Phase::search;
    ++state_.acquisitions;
    keptSymbols_.clear();
    keptPoints_.clear();
    nextKept_ = 0;
    interpolator_.SetGain(1);
    level_.Reset();
}

void Demodulator::Chain::ProcessBlock()
{
    FollowTiming();
    ++blocks_;
    switch (phase_) {
        case Phase::settle:
            if (blocks_ == settleBlocks) {
                level_.Adjust();
                interpolator_.SetGain(level_.Gain());
                phase_ = Phase::blind;
                blocks_ = -1;  // the block after this one has the old gain in its history
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
    const TimingRecovery::Correction correction = timing_.Process(values);
    interpolator_.Delay(correction.delay * rate_ / parameters_.symbolRate);
    interpolator_.SetStretch(correction.stretch);
    timingLock_.Take(timing_.Coherence() > 0.15, timing_.Coherence() < 0.06);
}

void Demodulator::Chain::BlindBlock()
{
    if (blocks_ <= 0) {
        return;
    }
    loop_.SetBlindProgress(std::max(0.0, 1 - 1.3 * blocks_ / blindBlocks_));
    loop_.Blind(Values(), symbols_);
    if (blindBlocks_ - blocks_ < static_cast<int>(CarrierSearch::searchSymbols / blockSymbols)) {
        blindSymbols_.insert(blindSymbols_.end(), symbols_.begin(), symbols_.end());
    }
    if (blocks_ < blindBlocks_) {
        return;
    }
    CarrierSearch::Turning turning = carrierSearch_.Search(blindSymbols_);
    if (std::abs(turning.frequency) > mostTurning) {
        // Echoes that ripple the spectrum's edges led the search astray: once more, with the filter where the signal
        // is.
        mixer_.SetFrequency(mixer_.Frequency() + turning.frequency * parameters_.symbolRate);
        blindSymbols_.clear();
        blocks_ = -1;
        return;
    }
    turning.phase += turning.frequency * static_cast<double>(blindSymbols_.size());
    loop_.StartDeciding(turning);
    meanFrequency_ = turning.frequency;
    phase_ = Phase::decide;
    blocks_ = 0;
}

void Demodulator::Chain::DecideBlock()
{
    const SymbolLoop::Outcome outcome = loop_.Decide(Values(), symbols_, points_);
    meanFrequency_ += (loop_.Carrier().Frequency() - meanFrequency_) / 16;
    TakeOutcome(outcome);
    const bool certain = carrierLock_.Locked();
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
    carrierLock_.Take(good, bad);
    loop_.HoldEqualiser(bad && phase_ == Phase::track);
    if (phase_ == Phase::decide && carrierLock_.Locked() && blocks_ >= calmBlocks) {
        loop_.Settle();
        phase_ = Phase::track;
        blindBlocks_ = leastBlindBlocks;
    } else if (phase_ == Phase::decide && !carrierLock_.Locked() && blocks_ >= decideBlocks) {
        // Perhaps there are strong echoes, for which the blind time was too short.
        blindBlocks_ = blindBlocks_ < mostBlindBlocks ? 2 * blindBlocks_ : leastBlindBlocks;
        Abandon();
    } else if (phase_ == Phase::track && !carrierLock_.Locked()) {
        Abandon();
    }
}

void Demodulator::Chain::Keep()
{
    if (keptSymbols_.size() < keptSymbols) {
        keptSymbols_.insert(keptSymbols_.end(), symbols_.begin(), symbols_.end());
        keptPoints_.insert(keptPoints_.end(), points_.begin(), points_.end());
        return;
    }
    std::copy(symbols_.begin(), symbols_.end(), keptSymbols_.begin() + static_cast<ptrdiff_t>(nextKept_));
    std::copy(points_.begin(), points_.end(), keptPoints_.begin() + static_cast<ptrdiff_t>(nextKept_));
    nextKept_ = (nextKept_ + blockSymbols) % keptSymbols;
}

void Demodulator::Chain::Report()
{
    Locks& locks = state_.locks;
    locks.level = level_.Locked();
    locks.timing = phase_ != Phase::search && timingLock_.Locked();
    locks.equaliser = locks.timing && carrierLock_.Locked();
    locks.carrier = locks.equaliser;
    locks.frameSync = locks.carrier && decoder_.FrameLocked();
    locks.reedSolomon = locks.frameSync && decoder_.PacketsLocked();
    state_.counters = decoder_.Counters();
    state_.inverted = locks.frameSync && decoder_.Inverted();
    state_.channelPower = level_.SignalPower();
    state_.frequencyOffset = locks.timing ? mixer_.Frequency() + meanFrequency_ * parameters_.symbolRate : 0;
    state_.symbolRateOffset = locks.timing ? timing_.SymbolRateOffset() : 0;
}

SignalReadings Demodulator::Chain::Readings() const
{
    std::vector<std::complex<float>> symbols = keptSymbols_;
    std::vector<Constellation::Cell> points = keptPoints_;
    std::rotate(symbols.begin(), symbols.begin() + static_cast<ptrdiff_t>(nextKept_), symbols.end());
    std::rotate(points.begin(), points.begin() + static_cast<ptrdiff_t>(nextKept_), points.end());
    // The equaliser makes up for what the level has changed by since the gain was set.
    const double level = level_.SignalPower() * level_.Gain() * level_.Gain();
    const auto response = [this, level](double frequency) { return loop_.PowerResponse(frequency) * level; };
    return ConstellationAnalysis(constellation_).Measure({symbols, points}, {response, loop_.CarrierPowerResponse()});
}

std::vector<std::complex<float>> Demodulator::Chain::NewestSymbols(size_t most) const
{
    const size_t count = std::min(most, keptSymbols_.size());
    std::vector<std::complex<float>> newest;
    newest.reserve(count);
    for (size_t i = keptSymbols_.size() - count; i < keptSymbols_.size(); ++i) {
        newest.push_back(keptSymbols_[(i + nextKept_) % keptSymbols_.size()]);
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
