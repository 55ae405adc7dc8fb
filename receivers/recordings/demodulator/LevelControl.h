#pragma once

#include <cstddef>

#include "receivers/recordings/demodulator/Kernels.h"

namespace tvn2x::recordings {

/// Brings the signal to a mean power of 1: once, as the reception begins. From there on the equaliser follows the
/// level, so that the gain's own fluctuation adds nothing to the constellation.
class LevelControl
{
public:
    explicit LevelControl(double rollOff);

    /// Takes in values behind the matched filter, as they are after the gain; a multiple of 8.
    void Process(ComplexRow values, size_t count);
    /// Sets the gain by the values taken in last.
    void Adjust();
    void Reset();

    double Gain() const { return gain_; }
    /// Of the signal ahead of the gain, smoothed; full scale is 1.
    double SignalPower() const { return power_; }
    bool Locked() const { return power_ > leastPower; }

private:
    static constexpr double leastPower = 1e-9;

    double matchedShare_;  ///< of a signal's power, behind the matched filter
    double gain_ = 1;
    double power_ = 0;
    int blocks_ = 0;
};

}  // namespace tvn2x::recordings
