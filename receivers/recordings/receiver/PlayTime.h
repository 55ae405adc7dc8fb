#pragma once

namespace tvn2x::recordings {

/// The time in which a recording is played. Tests bring their own.
class PlayTime
{
public:
    virtual ~PlayTime() = default;

    /// Seconds since any fixed moment; never runs backwards.
    virtual double Seconds() = 0;
    /// Returns when that much time has passed.
    virtual void Wait(double seconds) = 0;
};

/// The machine's.
class MachineTime final : public PlayTime
{
public:
    double Seconds() override;
    void Wait(double seconds) override;
};

}  // namespace tvn2x::recordings
