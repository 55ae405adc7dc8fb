#include "receivers/recordings/receiver/PlayedChannel.h"

#include <algorithm>

#include "receivers/recordings/demodulator/ConstellationAnalysis.h"

namespace tvn2x::recordings {
namespace {

constexpr double haste = 1.25;        // seconds of the signal in a second
constexpr double longestTurn = 0.03;  // seconds that one call plays for
constexpr double nap = 0.002;         // seconds to wait where nothing is due
constexpr double blockSeconds = 0.005;

}  // namespace

PlayedChannel::PlayedChannel(Recording recording, std::unique_ptr<SampleSource> source, const SignalParameters& signal,
                             PlayTime& time)
    : recording_(std::move(recording)),
      source_(std::move(source)),
      demodulator_(signal, source_->Rate()),
      time_(time),
      began_(time.Seconds()),
      block_(static_cast<size_t>(std::max(1.0, source_->Rate() * blockSeconds)))
{
}

void PlayedChannel::Play()
{
    if (resting_) {
        return;
    }
    const double start = time_.Seconds();
    double now = start;
    if (isOver_ || Seconds() >= (now - began_) * haste) {
        time_.Wait(nap);
        return;
    }
    while (!isOver_ && Seconds() < (now - began_) * haste && now - start < longestTurn) {
        PlayBlock();
        now = time_.Seconds();
    }
}

void PlayedChannel::PlayBlock()
{
    const bool wasLocked = State().locks.reedSolomon;
    const uint64_t failedBefore = State().counters.failedPackets;
    const size_t count = source_->Read(block_);
    isOver_ = count == 0;
    demodulator_.Process(std::span(block_).first(count));
    played_ += count;
    if (wasLocked && State().counters.failedPackets != failedBefore) {
        lastFailure_ = Seconds();
    }
}

void PlayedChannel::Rest(bool rests)
{
    if (rests && !resting_) {
        resting_ = time_.Seconds();
    } else if (!rests && resting_) {
        began_ += time_.Seconds() - *resting_;
        resting_.reset();
    }
}

const SignalReadings& PlayedChannel::Readings()
{
    constexpr double fresh = 0.1;  // seconds
    constexpr size_t enough = ConstellationAnalysis::leastSymbols;
    constexpr int mostTurns = 10;
    if (!readings_ || Seconds() >= readAt_ + fresh) {
        readings_ = demodulator_.Readings();
        for (int turn = 0;
             turn < mostTurns && readings_->symbols < enough && State().locks.carrier && !isOver_ && !resting_;
             ++turn) {
            Play();
            readings_ = demodulator_.Readings();
        }
        readAt_ = Seconds();
    }
    return *readings_;
}

bool PlayedChannel::HasFailedLately() const
{
    constexpr double lately = 0.25;
    return lastFailure_ && Seconds() < *lastFailure_ + lately;
}

}  // namespace tvn2x::recordings
