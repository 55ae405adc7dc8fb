#include "util/clsTimeout.h"

namespace tvn2x {

void clsTimeout::Start(float seconds)
{
    constexpr float day = 86400.0F;
    if (seconds != 0)
        interval_ = seconds;
    start_ = Now();
    end_ = start_ + interval_;
    // On the same day the start goes above every clock value; across midnight it bars the rest of the first day.
    if (end_ < day)
        start_ += day;
    else
        end_ -= day;
    state_ = tmoRunning;
}

tmoStates clsTimeout::State()
{
    if (state_ == tmoRunning) {
        const bool endPassed = Now() > end_;
        const bool beforeStart = Now() < start_;
        if (endPassed && beforeStart)
            state_ = tmoExpired;
    }
    return state_;
}

float clsTimeout::Now() const
{
    return static_cast<float>(clock_.SecondsSinceMidnight());
}

}  // namespace tvn2x
