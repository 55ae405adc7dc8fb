#pragma once

#include <cstdint>

namespace tvn2x {

/// The control words of the x87 and the SSE unit as the calling thread has them: which exceptions are masked, how
/// results are rounded, whether tiny numbers count as zero.
///
/// They belong to the thread, and so to whoever runs on it: some languages' run-time systems unmask exceptions, some
/// set the words when their library is loaded. What this product computes is defined in one state only.
struct FloatingPointWords
{
    uint16_t x87;
    uint32_t sse;

    static FloatingPointWords Now() noexcept
    {
        FloatingPointWords now;
        asm volatile("fnstcw %0" : "=m"(now.x87));
        asm volatile("stmxcsr %0" : "=m"(now.sse));
        return now;
    }

    /// Makes these the thread's words. No exception that is pending fires, now or later.
    void Load() const noexcept
    {
        const FloatingPointWords now = Now();
        if (now.x87 != x87) {
            // Loading the word waits for pending exceptions, and would raise those that it unmasks.
            asm volatile("fnclex\n\tfldcw %0" : : "m"(x87) : "memory");
        }
        if (now.sse != sse) {
            asm volatile("ldmxcsr %0" : : "m"(sse) : "memory");
        }
    }

    /// Whether both compute alike. The SSE word also holds what has happened so far, which makes no difference.
    bool ComputesLike(const FloatingPointWords& other) const noexcept
    {
        constexpr uint32_t history = 0x3F;
        return x87 == other.x87 && ((sse ^ other.sse) & ~history) == 0;
    }
};

/// All exceptions masked, rounded to nearest, the x87 unit in its full precision, tiny numbers kept.
constexpr FloatingPointWords ownFloatingPoint{0x037F, 0x1F80};

/// Makes the thread compute in our own state, whatever came before.
inline void TakeOwnFloatingPoint() noexcept
{
    if (!FloatingPointWords::Now().ComputesLike(ownFloatingPoint)) {
        ownFloatingPoint.Load();
    }
}

/// Our own state while it lives, and the caller's again afterwards. Stands in every function that somebody else calls.
class OwnFloatingPoint
{
public:
    OwnFloatingPoint() noexcept { TakeOwnFloatingPoint(); }
    OwnFloatingPoint(const OwnFloatingPoint&) = delete;
    OwnFloatingPoint& operator=(const OwnFloatingPoint&) = delete;
    ~OwnFloatingPoint() { callers_.Load(); }

    const FloatingPointWords& Callers() const noexcept { return callers_; }

private:
    const FloatingPointWords callers_ = FloatingPointWords::Now();
};

/// Our own state again at its end. Stands where somebody else is called.
class OwnFloatingPointAfterwards
{
public:
    OwnFloatingPointAfterwards() = default;
    OwnFloatingPointAfterwards(const OwnFloatingPointAfterwards&) = delete;
    OwnFloatingPointAfterwards& operator=(const OwnFloatingPointAfterwards&) = delete;
    ~OwnFloatingPointAfterwards() { TakeOwnFloatingPoint(); }
};

}  // namespace tvn2x
