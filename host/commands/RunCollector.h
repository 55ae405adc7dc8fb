#pragma once

#include <string>
#include <vector>

#include "host/commands/Plugin.h"
#include "host/run/FinishedRun.h"

namespace tvn2x {

/// Now, as a run keeps it.
std::string NowUtc();

/// What is known of a run before its first channel: setup, receiver and columns (`chosen` parameters, or "" for those
/// that the setup displays). What the receiver does not tell stays empty. Raises unusableInput where no measured
/// parameter is among the columns.
FinishedRun DescribeRun(const Plugin& plugin, const std::wstring& path, const std::string& setupSha256,
                        const std::wstring& chosen);

/// A row of the plug-in's result table. `began` and `seconds` are left to the caller.
ChannelResult CollectChannel(const Plugin& plugin, int32_t pass, int32_t channel, const std::string& levelUnit);

/// The other way round: the plug-in's result table has the latest result of each channel of the run, whoever measured
/// it, and nothing else. The plug-in has the run's setup loaded.
void RestoreResults(const Plugin& plugin, const FinishedRun& run);

}  // namespace tvn2x
