#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/console/Console.h"
#include "host/link/Plugin.h"
#include "host/link/StopRequest.h"
#include "host/receiver/ReceiverCheck.h"
#include "host/setup/Setup.h"

namespace tvn2x {

/// Loads a network model into the simulated receiver; "" leaves the receiver as it is.
void UseNetwork(const Plugin& plugin, const std::wstring& network);

/// Gives the receiver of recorded signals its folder; "" leaves the receiver as it is.
void UseSignals(const Plugin& plugin, const std::wstring& folder);

/// Who the receiver says that it is.
struct ReceiverIdentity
{
    std::wstring text;  ///< "name,address,model,manufacturer"
    std::wstring hardware;
    int32_t mode = 0;  ///< the operating mode that it was found in
};

/// The receiver is on line until this goes. Nothing is asked of an instrument, nor set, before it is known to be a
/// receiver.
class OnLine
{
public:
    /// Raises unusableInput where no receiver answers, or an instrument of another maker or model.
    explicit OnLine(const Plugin& plugin);
    OnLine(const OnLine&) = delete;
    OnLine& operator=(const OnLine&) = delete;
    ~OnLine();

    const ReceiverIdentity& Identity() const { return identity_; }

private:
    const Plugin& plugin_;
    ReceiverIdentity identity_;
};

/// What the plug-in says about the receiver and the loaded setup, and what the receiver lists as its options.
struct ReceiverReport
{
    std::vector<ReceiverAnswer> answers;
    std::wstring options;
    std::wstring serialNumber;
};
ReceiverReport AskReceiver(const Plugin& plugin);

/// Which way settings go: from the receiver into the setup, or back.
enum class Transfer
{
    read,
    write
};

struct Transferred
{
    bool isWhole = true;                  ///< a stop has not ended it: one that comes after the last step is none
    std::optional<RaisedError> reported;  ///< what the plug-in reports without raising it
};

/// Reads the receiver's settings into the plug-in's setup or writes the setup's to the receiver, and shows the
/// progress. A setting that the receiver refuses is raised with the receiver's state and what it has not been given.
Transferred TransferConfiguration(const Plugin& plugin, const Setup& setup, Transfer transfer, StopRequest& stop,
                                  Console& console);

/// What the receiver is set to now, whether a stop was asked for or not. The plug-in's setup is as it was before,
/// `setup`; its results are reset.
SetupSettings ReadReceiverSettings(const Plugin& plugin, const Setup& setup);

/// Takes the settings that measuring depends on over into the plug-in's setup.
void TakeSettings(const Plugin& plugin, const SetupSettings& settings);

/// Takes the channels of `setup` over into the plug-in's, in place of those there.
void TakeChannels(const Plugin& plugin, const Setup& setup);

/// How far a scan prepares the receiver.
struct Preparation
{
    bool writes = false;         ///< brings the receiver into the setup's whole state, not only its mode
    bool forces = false;         ///< goes on where the receiver cannot do the setup
    bool measuresAsIs = false;   ///< goes on where the receiver is set otherwise than the setup
    bool setsSimulator = false;  ///< brings the simulated receiver into the setup's state, as a person would by hand
};

/// Before a scan: asks whether the receiver can do the setup, says what it found, brings the receiver into the setup's
/// mode or state, and compares its settings with the setup's. From then on the plug-in's setup, and what this returns,
/// has the settings that the receiver really has. Raises unusableInput with the reasons where the receiver cannot do
/// the setup or is set otherwise, unless `how` says to go on; then these are told. Nothing where a stop has ended it.
std::optional<SetupSettings> PrepareReceiver(const Plugin& plugin, const Setup& setup, const Preparation& how,
                                             StopRequest& stop, Console& console);

}  // namespace tvn2x
