#pragma once

#include <string>
#include <vector>

#include "host/commands/Console.h"
#include "host/commands/Plugin.h"
#include "host/commands/StopRequest.h"
#include "host/receiver/ReceiverCheck.h"

namespace tvn2x {

/// Loads a network model into the simulated receiver; "" leaves the receiver as it is.
void UseNetwork(const Plugin& plugin, const std::wstring& network);

/// The receiver is on line until this goes. An identification leaves it off line.
class OnLine
{
public:
    explicit OnLine(const Plugin& plugin);
    OnLine(const OnLine&) = delete;
    OnLine& operator=(const OnLine&) = delete;
    ~OnLine();

private:
    const Plugin& plugin_;
};

/// What the plug-in says about the receiver and the loaded setup, and what the receiver lists as its options.
struct ReceiverReport
{
    std::vector<ReceiverAnswer> answers;
    std::wstring options;
    std::wstring serialNumber;
};
ReceiverReport AskReceiver(const Plugin& plugin);

enum class Transfer
{
    read,
    write
};

/// Reads the receiver's settings into the plug-in's setup or writes the setup's to the receiver, and shows the
/// progress. False where a stop has ended it. What the plug-in reports without raising it is told as a notice;
/// `reported` says whether there was any.
bool TransferConfiguration(const Plugin& plugin, Transfer transfer, StopRequest& stop, Console& console,
                           bool* reported = nullptr);

struct Preparation
{
    bool writes = false;  ///< brings the receiver into the setup's whole state, not only its mode
    bool forces = false;  ///< goes on where the receiver cannot do the setup
};

/// Before a scan: asks whether the receiver can do the setup, says what it found, and brings the receiver into the
/// setup's mode or state. Raises unusableInput with the reasons where it cannot do the setup; with `forces` these are
/// told and the scan goes on with what the receiver has got. False where a stop has ended it.
bool PrepareReceiver(const Plugin& plugin, const Preparation& how, StopRequest& stop, Console& console);

}  // namespace tvn2x
