#pragma once

#include <cstdint>

#include "util/Clock.h"

namespace tvn2x {

/// The states of a timer, with the values under which the type library publishes them.
enum tmoStates : int32_t
{
    tmoReady = 0,
    tmoRunning = 1,
    tmoExpired = 2
};

/// Answers one question: has a number of seconds passed since Start? Nobody is called back; the owner polls State.
///
/// The time is the clock's even one, so setting the clock on the wall moves no end. The marks are seconds since
/// midnight in single precision (about 8 ms of resolution late in the day), each with its day, so that a wait crosses
/// midnight however seldom the state is read. The end wraps once only: a wait that would end later is over when the day
/// after the start's ends. An interval below 0, -infinity too, is over at the first reading of the state.
class clsTimeout
{
public:
    explicit clsTimeout(Clock& clock) : clock_(clock) {}

    float Interval() const { return interval_; }
    /// Stores the interval; a running timer goes on with the one it was started with. NaN and +infinity, which no wait
    /// reaches, raise 380 here and in Start, and all stays as it was.
    void Interval(float seconds);

    /// Starts, or restarts, the timer. 0 keeps the present interval.
    void Start(float seconds);
    /// Reading the state is what lets a running timer expire.
    tmoStates State();
    void Clear() { state_ = tmoReady; }

private:
    /// A moment.
    struct Mark
    {
        double day;     ///< in days of the clock
        float seconds;  ///< since midnight
    };

    Mark Now() const;

    Clock& clock_;
    float interval_ = 0;
    Mark end_{};
    tmoStates state_ = tmoReady;
};

}  // namespace tvn2x
