#include "measure/ChannelScan.h"

#include "measure/ChannelRun.h"
#include "util/RaisedError.h"

namespace tvn2x {

bool ChannelScan::Measure(int32_t channel, Receiver& receiver, RunControl& runControl, HostParent* parent)
{
    constexpr int32_t measurementRunning = 5;
    if (running_)
        throw RaisedError(measurementRunning, L"clsSetup.Measure", L"A measurement is already running");
    if (channel < 1 || channel > document_.ListSize() || table_.Channels() != document_.ListSize())
        RaiseSubscript(L"clsSetup.Measure");
    struct Running
    {
        explicit Running(bool& flag) : running(flag) { running = true; }
        ~Running() { running = false; }
        bool& running;
    } const guard(running_);

    return ChannelRun({document_, table_, receiver, runControl, parent, clock_, locale_}, channel, lastTuned_).Run();
}

}  // namespace tvn2x
