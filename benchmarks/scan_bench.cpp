// What one channel costs outside the receiver's own operations: every parameter wanted, a parent attached, a receiver
// that answers at once.

#include "NullReceiver.h"
#include "Race.h"
#include "measure/ChannelScan.h"

int main(int argc, char** argv)
{
    using namespace tvn2x;
    using namespace tvn2x::bench;

    SetupDocument document;
    ResultTable table;
    NullReceiver receiver;
    NullRunControl runControl;
    NullParent parent;
    constexpr int channels = 100;
    document.ListSize(channels);
    for (int32_t channel = 1; channel <= channels; ++channel) {
        document.Frequency(channel, 100 + 8 * channel);
        document.SymbolRate(channel, 6.9);
    }
    table.Reset(document, SystemLocale());
    ChannelScan scan(document, table, SystemClock(), SystemLocale());

    Race race("One channel, natively", channels);
    race.Add("ChannelScan::Measure", [&] {
        for (int32_t channel = 1; channel <= channels; ++channel) {
            Keep(scan.Measure(channel, receiver, runControl, &parent));
        }
    });
    race.Run(9, 20);
    return Finish(argc, argv);
}
