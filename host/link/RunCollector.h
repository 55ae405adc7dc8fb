#pragma once

#include <string>
#include <vector>

#include "host/judge/Limits.h"
#include "host/link/Plugin.h"
#include "host/link/Receiver.h"
#include "host/run/FinishedRun.h"

namespace tvn2x {

/// Now, as a run keeps it.
std::wstring NowUtc();

/// What the receiver on line says of itself, and of what it receives where it is a simulated one; what it does not tell
/// stays empty.
RunReceiver DescribeReceiver(const Plugin& plugin, const ReceiverIdentity& identity);

/// The columns of a run's grid: the `chosen` parameters, or for "" what any of its setups displays, in the order and
/// with the captions of the first. Raises unusableInput where no measured parameter is among them.
std::vector<RunColumn> DescribeColumns(const std::vector<const Setup*>& setups, const std::wstring& chosen);

/// Makes the plug-in measure what a run needs, whatever the setup displays and saves: its columns, the locks, and what
/// the limits name. Returns the captions of what is measured beyond the setup.
std::vector<std::wstring> MeasureForRun(const Plugin& plugin, const Setup& setup, const std::vector<RunColumn>& columns,
                                        const Limits* limits);

/// The plug-in's result for a channel of its setup. `pass`, `began` and `seconds` are left to the caller, and so is the
/// number in the run.
ChannelResult CollectChannel(const Plugin& plugin, const Setup& setup, int32_t channel);

/// Makes a channel one that an error has ended before the plug-in began with it.
void PutError(const Plugin& plugin, int32_t channel);

/// The other way round: the plug-in's result table has the latest result of each channel that the run has of one of
/// its setups, whoever measured it, and nothing else. The plug-in has that setup loaded, and the simulated receiver
/// where that has measured.
void RestoreResults(const Plugin& plugin, const FinishedRun& run, size_t setup);

}  // namespace tvn2x
