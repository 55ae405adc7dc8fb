#pragma once

#include <cstdint>
#include <optional>

#include "instrument/Receiver.h"
#include "measure/ResultTable.h"
#include "setup/SetupDocument.h"
#include "util/Clock.h"
#include "util/Occupation.h"
#include "util/modLocaleInfo.h"

namespace tvn2x {

/// Measures a channel: tunes the receiver, waits until it is synchronised, reads every parameter that is displayed or
/// saved, writes the texts into the result table and tells the host's parent which cells have changed.
///
/// Between two channels it remembers one thing, the frequency that the receiver was tuned to last.
class ChannelScan
{
public:
    ChannelScan(const SetupDocument& document, ResultTable& table, Clock& clock, const Locale& locale)
        : document_(document), table_(table), clock_(clock), locale_(locale)
    {
    }

    /// Measures channel 1..ListSize; false where an unexpected error ended it. Without a parent nobody is told.
    ///
    /// Raises 9, before anything is sent, for a channel outside the list or a table that was not reset for the list's
    /// present size, and 5 for a call that arrives while another one runs. From there on every error, of the receiver,
    /// the parent or a table that shrinks underneath, ends in the channel's status. Only a lack of memory so dire that
    /// not even a status can be stored is passed on.
    ///
    /// The parent may call back as it likes. The caller keeps this object and the arguments alive until it returns.
    bool Measure(int32_t channel, Receiver& receiver, RunControl& runControl, HostParent* parent);

    /// Tune the next channel whatever its frequency: somebody else has changed the receiver's settings.
    void ForgetTuning() { lastTuned_.reset(); }

private:
    const SetupDocument& document_;
    ResultTable& table_;
    Clock& clock_;
    const Locale& locale_;
    std::optional<double> lastTuned_;  ///< MHz; none where the receiver may stand anywhere
    Occupation::Mark occupiedBy_ = nullptr;
};

}  // namespace tvn2x
