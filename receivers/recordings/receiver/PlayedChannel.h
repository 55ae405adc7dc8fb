#pragma once

#include <complex>
#include <memory>
#include <optional>
#include <vector>

#include "receivers/recordings/demodulator/Demodulator.h"
#include "receivers/recordings/demodulator/SampleSource.h"
#include "receivers/recordings/receiver/PlayTime.h"
#include "receivers/recordings/source/Recording.h"

namespace tvn2x::recordings {

/// A channel of a recording, played to a demodulator from the recording's first sample on. It plays while it is asked
/// to: in its client's time where the machine keeps up, and then a little faster, so that a count is done when a client
/// that waits for its bits to arrive asks for the last time.
///
/// At the end of the recording it stays as it was: nothing is played again, because a signal that is repeated would be
/// taken for a longer one.
class PlayedChannel
{
public:
    /// `source` gives the channel's samples, at the demodulator's rate.
    PlayedChannel(Recording recording, std::unique_ptr<SampleSource> source, const SignalParameters& signal,
                  PlayTime& time);

    /// Plays what is due, but not for longer than a client that polls can wait. Raises what the source raises.
    void Play();
    /// While it rests no time passes for it.
    void Rest(bool rests);

    const Recording& Recorded() const { return recording_; }
    const DemodulatorState& State() const { return demodulator_.State(); }
    /// Reckoned anew at most every tenth of a second of the signal: a client asks for them one by one. Where the
    /// carrier has been locked for too short a time it plays on until they are there, as a reading of an instrument
    /// takes its time.
    const SignalReadings& Readings();
    std::vector<std::complex<float>> Constellation(size_t most) const { return demodulator_.Constellation(most); }

    double Seconds() const { return static_cast<double>(played_) / source_->Rate(); }  ///< of the signal, played so far
    bool IsOver() const { return isOver_; }
    /// Whether a packet failed within the last quarter of a second, long enough for a client that looks now and then.
    bool HasFailedLately() const;

private:
    void PlayBlock();

    Recording recording_;
    std::unique_ptr<SampleSource> source_;
    Demodulator demodulator_;
    PlayTime& time_;
    double began_;                   ///< when the first sample was due
    std::optional<double> resting_;  ///< since when
    uint64_t played_ = 0;            ///< samples
    bool isOver_ = false;
    std::optional<double> lastFailure_;  ///< of a packet, in seconds of the signal
    std::vector<std::complex<float>> block_;
    std::optional<SignalReadings> readings_;
    double readAt_ = 0;
};

}  // namespace tvn2x::recordings
