#include "util/clsTimeout.h"

#include <cmath>
#include <limits>

#include "util/RaisedError.h"

namespace tvn2x {
namespace {

constexpr float day = 86400.0F;

void RequireAnEnd(float seconds, const wchar_t* source)
{
    const bool ends = seconds < std::numeric_limits<float>::infinity();
    if (!ends) {
        throw RaisedError(error::invalidPropertyValue, source, L"Invalid property value");
    }
}

}  // namespace

void clsTimeout::Interval(float seconds)
{
    RequireAnEnd(seconds, L"clsTimeout.Interval");
    interval_ = seconds;
}

void clsTimeout::Start(float seconds)
{
    RequireAnEnd(seconds, L"clsTimeout.Start");
    if (seconds != 0) {
        interval_ = seconds;
    }
    end_ = Now();
    end_.seconds += interval_;
    if (interval_ < 0) {
        end_.seconds = -1;  // a short one would be lost in the mark's precision
    } else if (end_.seconds >= day) {
        end_.seconds -= day;
        end_.day += 1;
    }
    state_ = tmoRunning;
}

tmoStates clsTimeout::State()
{
    if (state_ == tmoRunning) {
        const Mark now = Now();
        if (now.day > end_.day || (now.day == end_.day && now.seconds > end_.seconds)) {
            state_ = tmoExpired;
        }
    }
    return state_;
}

clsTimeout::Mark clsTimeout::Now() const
{
    const double now = clock_.SteadySeconds();
    const double days = std::floor(now / day);
    return {days, static_cast<float>(now - days * day)};
}

}  // namespace tvn2x
