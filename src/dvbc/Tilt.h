#pragma once

#include <optional>
#include <vector>

/// The loss of coaxial cable grows with the square root of the frequency: over it, the levels of a network lie on a
/// straight line. Frequencies are in MHz, levels in dBµV.
namespace tvn2x::dvbc {

/// How far a frequency lies between two others over that root: 0 at the lower one, 1 at the upper one, beyond outside.
double TiltPosition(double frequency, double lower, double upper);

/// The level at a frequency.
struct LevelPoint
{
    double frequency;
    double level;
};

/// A straight line through levels: its ends and what the levels spread round it.
struct LevelTilt
{
    double lowestFrequency;
    double highestFrequency;
    double atLowest;  ///< of the line
    double atHighest;
    double spread;  ///< dB, standard deviation of the levels from the line

    double At(double frequency) const;
    double Tilt() const { return atHighest - atLowest; }
};

/// The line with the least squares. Nothing with fewer than three levels, or with all of them at one frequency;
/// frequencies that are not above 0 do not count.
std::optional<LevelTilt> FitTilt(std::vector<LevelPoint> points);

}  // namespace tvn2x::dvbc
