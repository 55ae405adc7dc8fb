#pragma once

#include <span>

/// What spoils a channel's modulation, as power of the error relative to that of the signal (linear, 0 is none) or as
/// the MER that it leaves when it is the only one (dB, +infinity is none). Error vector measures follow the definitions
/// of ETSI TR 101 290.
namespace tvn2x::dvbc {

double JitterPower(double degreesRms);
double ImbalancePower(double percent);   ///< amplitude imbalance
double QuadraturePower(double degrees);  ///< of either sign

double RatioOfErrorPower(double power);
double ErrorPowerOfRatio(double ratio);

/// One ratio out of several independent ones: their error powers add up.
double CombineRatios(std::span<const double> ratios);

/// The phase jitter in degrees RMS, and the amplitude imbalance in per cent, that leave a MER of `ratio` dB.
double JitterOfRatio(double ratio);
double ImbalanceOfRatio(double ratio);

/// The MER as per cent of the signal's amplitude.
double MerPercent(double mer);

}  // namespace tvn2x::dvbc
