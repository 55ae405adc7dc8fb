#pragma once

#include <string>
#include <vector>

#include "host/judge/Limits.h"
#include "host/link/Plugin.h"
#include "host/link/Receiver.h"
#include "host/run/FinishedRun.h"
#include "host/run/Journal.h"

namespace tvn2x {

/// Now, as a run keeps it.
std::wstring NowUtc();

/// What the receiver on line says of itself, and of what it receives where it is a simulated one; what it does not tell
/// stays empty.
RunReceiver DescribeReceiver(const Plugin& plugin, const ReceiverIdentity& identity);

/// What is known of a run before its receiver is: setup and columns (`chosen` parameters, or "" for those
/// that the setup displays). Raises unusableInput where no measured parameter is among the columns.
FinishedRun DescribeRun(const Setup& setup, const std::wstring& setupSha256, const std::wstring& chosen);

/// Makes the plug-in measure what verdicts need, whatever the setup displays and saves: the locks, and what the limits
/// name. Returns the captions of what is measured beyond the setup.
std::vector<std::wstring> MeasureForVerdicts(const Plugin& plugin, const Setup& setup, const Limits* limits);

/// A row of the plug-in's result table. `began` and `seconds` are left to the caller.
ChannelResult CollectChannel(const Plugin& plugin, const Setup& setup, const ChannelTurn& turn);

/// The other way round: the plug-in's result table has the latest result of each channel of the run, whoever measured
/// it, and nothing else. The plug-in has the run's setup loaded, and the simulated receiver where that has measured.
void RestoreResults(const Plugin& plugin, const FinishedRun& run);

}  // namespace tvn2x
