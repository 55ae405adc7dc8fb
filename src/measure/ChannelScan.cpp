#include "measure/ChannelScan.h"

#include "measure/ChannelRun.h"
#include "util/RaisedError.h"

namespace tvn2x {

bool ChannelScan::Measure(int32_t channel, Receiver& receiver, RunControl& runControl, HostParent* parent)
{
    const Occupation occupation(occupiedBy_, L"A measurement is already running", L"clsSetup.Measure");
    if (channel < 1 || channel > document_.ListSize() || table_.Channels() != document_.ListSize()) {
        RaiseSubscript(L"clsSetup.Measure");
    }
    return ChannelRun({document_, table_, receiver, runControl, parent, clock_, locale_}, channel, lastTuned_).Run();
}

}  // namespace tvn2x
