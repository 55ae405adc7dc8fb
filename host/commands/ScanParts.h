#pragma once

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "host/commands/Commands.h"
#include "host/link/Plugin.h"
#include "host/link/Receiver.h"
#include "host/link/StopRequest.h"
#include "host/setup/Setup.h"
#include "host/setup/SetupInspection.h"

namespace tvn2x {

/// A setup of a scan as its file has it: path, sum and first channel are told, notes and settings are not yet.
struct ScanFile
{
    RunSetup described;
    SetupInspection inspection;
};

/// The setups of a scan, their channels counted through. Raises unusableInput for one that cannot be loaded, has no
/// channel, or is given twice.
std::vector<ScanFile> ReadScanFiles(const std::vector<std::wstring>& setups);

/// A setup of a scan, loaded in a plug-in of its own: documents and results of the others stay what they are, and a
/// file that is changed meanwhile changes nothing.
struct ScanPart
{
    explicit ScanPart(const ScanFile& file);

    const Setup::Channel& ChannelAt(int32_t numberInRun) const { return setup.ChannelAt(OwnNumber(numberInRun)); }
    int32_t OwnNumber(int32_t numberInRun) const { return numberInRun - firstChannel + 1; }

    Plugin plugin;
    Setup setup;  ///< as the plug-in has it
    int32_t firstChannel;
};
using ScanParts = std::deque<ScanPart>;

/// As DescribeColumns and the function in the host's Setup expect them.
std::vector<const Setup*> SetupsOf(const ScanParts& parts);

/// As ResultWriter expects them.
std::vector<const Plugin*> PluginsOf(const ScanParts& parts);

/// A run has one grid. Raises unusableInput where setups show levels in different units.
void RequireOneLevelUnit(const ScanParts& parts);

/// The one receiver of all parts: on line, and in the state of one part at a time.
class PartReceiver
{
public:
    PartReceiver(ScanParts& parts, const ScanOptions& options, StopRequest& stop, Console& console)
        : parts_(parts), options_(options), stop_(stop), console_(console)
    {
    }

    /// Speaks to the receiver through a part's plug-in from now on.
    const ReceiverIdentity& GoOnLine(size_t part);
    /// Brings it into the state of a part, as far as the options say; from then on the part's setup has the settings
    /// that the receiver really has. Does nothing where it was brought there last. False where a stop has ended it.
    /// Raises what PrepareReceiver raises.
    bool Prepare(size_t part);

private:
    ScanParts& parts_;
    const ScanOptions& options_;
    StopRequest& stop_;
    Console& console_;
    std::optional<OnLine> online_;
    std::optional<size_t> part_;
    bool isPrepared_ = false;
};

}  // namespace tvn2x
