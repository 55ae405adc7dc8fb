#pragma once

#include <cstdint>

#include "util/Clock.h"

namespace tvn2x {

enum tmoStates : int32_t
{
    tmoReady = 0,
    tmoRunning = 1,
    tmoExpired = 2
};

/// Answers one question: has a number of seconds passed since Start? Nobody is called back; the owner polls State.
///
/// The marks are seconds since local midnight in single precision (about 8 ms of resolution late in the day), and wrap
/// once, so a wait may cross midnight but cannot be longer than a day.
class clsTimeout
{
public:
    explicit clsTimeout(Clock& clock) : clock_(clock) {}

    float Interval() const { return interval_; }
    /// Stores the interval; a running timer goes on with the one it was started with.
    void Interval(float seconds) { interval_ = seconds; }

    /// Starts, or restarts, the timer. 0 keeps the present interval.
    void Start(float seconds);
    /// Reading the state is what lets a running timer expire.
    tmoStates State();
    void Clear() { state_ = tmoReady; }

private:
    float Now() const;

    Clock& clock_;
    float interval_ = 0;
    float start_ = 0;
    float end_ = 0;
    tmoStates state_ = tmoReady;
};

}  // namespace tvn2x
