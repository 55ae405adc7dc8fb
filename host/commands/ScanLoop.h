#pragma once

#include "host/commands/ScanJournal.h"
#include "host/commands/ScanParts.h"
#include "host/live/LiveRun.h"

namespace tvn2x {

/// Everything that a scan works on.
struct ScanRun
{
    ScanParts& parts;
    PartReceiver& receiver;
    FinishedRun& run;
    ScanJournal& journal;
    StopRequest& stop;
    Console& console;
    LiveRun* live;  ///< who is told of every step; null for nobody
    bool isServed;  ///< as ScanOptions has it
};

/// Measures what is left, between the journal's lines that tell of the run.
void MeasureRun(const ScanRun& scan, bool isResumed);

/// Lets the system's messages in for a while.
void HandleMessagesFor(double seconds);

}  // namespace tvn2x
