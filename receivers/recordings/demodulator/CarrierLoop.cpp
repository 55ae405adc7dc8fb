#include "receivers/recordings/demodulator/CarrierLoop.h"

#include <cmath>
#include <numbers>

namespace tvn2x::recordings {

using std::numbers::pi;

void CarrierLoop::Start(double frequency, double phase)
{
    frequency_ = static_cast<float>(2 * pi * frequency);
    const double angle = -2 * pi * (phase - std::floor(phase));
    turn_ = {static_cast<float>(std::cos(angle)), static_cast<float>(std::sin(angle))};
}

double CarrierLoop::Frequency() const
{
    return static_cast<double>(frequency_) / (2 * pi);
}

}  // namespace tvn2x::recordings
