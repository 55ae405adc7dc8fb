#pragma once

#include <cstddef>
#include <optional>

namespace tvn2x::recordings {

/// What is measured of the received constellation (ETSI TR 101 290, clause 6.9), over the symbols received last. A
/// reading that could not be taken is empty.
struct SignalReadings
{
    size_t symbols = 0;  ///< that the readings were taken over

    std::optional<double> mer;                    ///< dB, clause 6.9.2
    std::optional<double> signalToNoise;          ///< dB, clause 6.9.10; an interferer counts as noise
    std::optional<double> carrierSuppression;     ///< dB, clause 6.9.4
    std::optional<double> amplitudeImbalance;     ///< per cent, not negative, clause 6.9.5
    std::optional<double> quadratureError;        ///< degrees, not negative, clause 6.9.6
    std::optional<double> phaseJitter;            ///< degrees RMS, clause 6.9.9
    std::optional<double> carrierToInterference;  ///< dB, clause 6.9.8; empty too where no interferer stands out
};

}  // namespace tvn2x::recordings
