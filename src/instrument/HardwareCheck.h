#pragma once

#include <cstdint>
#include <functional>

#include "instrument/Receiver.h"
#include "setup/SetupDocument.h"

namespace tvn2x {

/// Whether the connected receiver can do what a setup asks.
///
/// The receiver is opened only for a question that it has to answer. Its errors are passed on, except by ActivateMode.
class HardwareCheck
{
public:
    using OpenReceiver = std::function<Receiver&()>;

    HardwareCheck(const SetupDocument& document, OpenReceiver open) : document_(document), open_(std::move(open)) {}

    /// How the receiver stands to the operating mode of the setup.
    enum ModeState : int32_t
    {
        modeMissing = 0,   ///< the option that the setup's operating mode needs is not installed
        modeInactive = 1,  ///< installed, but the receiver is in another mode
        modeActive = 2
    };

    ModeState Mode() const;
    /// Brings the receiver into the setup's operating mode. Goes on after an error of the receiver; what counts is the
    /// mode that is read in the end. False where there is no receiver to be had.
    bool ActivateMode() const;
    bool ExtRef() const;       ///< the reference that the setup asks for can be used
    bool InputPort() const;    ///< the setup's input route exists
    bool SawFilterBw() const;  ///< the setup's SAW filter exists

private:
    const SetupDocument& document_;
    OpenReceiver open_;
};

}  // namespace tvn2x
