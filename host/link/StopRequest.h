#pragma once

#include <windows.h>

#include <objidl.h>

#include "XKTR2x.h"
#include "com/ComPtr.h"

namespace tvn2x {

/// Turns Ctrl+C into the run control's stop flag. The system tells of Ctrl+C on a thread of its own. Where the run
/// control may be called on any thread, that thread sets the flag at once; where it belongs to the thread that
/// measures, that one asks (Poll) at every notice and sets it then. A second Ctrl+C ends the process the usual way.
/// One at a time.
class StopRequest
{
public:
    /// Clears the stop flag.
    explicit StopRequest(com::ComPtr<IRunControl> runControl);
    StopRequest(const StopRequest&) = delete;
    StopRequest& operator=(const StopRequest&) = delete;
    ~StopRequest();

    /// Sets the stop flag where a stop was asked for; true from then on.
    bool Poll();

private:
    void Share();

    com::ComPtr<IRunControl> runControl_;
    com::ComPtr<IGlobalInterfaceTable> table_;
    bool isSet_ = false;
};

}  // namespace tvn2x
