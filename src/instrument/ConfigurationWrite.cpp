#include "instrument/ConfigurationWrite.h"

#include <algorithm>
#include <string_view>

#include "instrument/HardwareCheck.h"
#include "setup/catalogue/LevelUnits.h"
#include "setup/catalogue/Options.h"
#include "util/RaisedError.h"

namespace tvn2x {
namespace {

constexpr int16_t progressTotal = 12;
constexpr int32_t modeRefused = 1002;
constexpr int32_t referenceNotAvailable = static_cast<int32_t>(0x80040000u + 2005);
constexpr const wchar_t* source = L"clsSetup.SetConfiguration";
constexpr const wchar_t* noReferenceInput = L"Let Setup10MhzRef not available";

constexpr int32_t demodulatorRoute = 4;
constexpr int32_t intermediateRoute = 128;
constexpr int32_t automaticAttenuation = 255;
constexpr int32_t automaticGain = 1;
constexpr int32_t adaptive = 1;
constexpr int32_t external = 1;

/// What the user is told of an error whose description holds the text; "" is the description itself. The first row that
/// fits decides.
struct Message
{
    std::wstring_view description;
    std::wstring_view words;
};

constexpr Message messages[] = {
    {L"Let Mode failed", L""},
    {L"Let StatusSawFilterBW failed", L"Selected SAW filter is not available, filter will be turned off"},
    {noReferenceInput, L"External 10MHz reference input is not fitted, internal reference will be used"},
};

RaisedError InWordsForTheUser(const RaisedError& error)
{
    const auto* message = std::find_if(std::begin(messages), std::end(messages), [&](const Message& row) {
        return error.description.find(row.description) != std::wstring::npos;
    });
    if (message == std::end(messages) || message->words.empty()) {
        return error;
    }
    RaisedError told = error;
    told.description = message->words;
    return told;
}

void SendMode(Receiver& receiver)
{
    if (receiver.Mode() == dvbCDemodulator) {
        return;
    }
    receiver.Mode(dvbCDemodulator);
    if (receiver.Mode() != dvbCDemodulator) {
        throw RaisedError(modeRefused, source,
                          L"The KTR does not change to DVB-C Demod. mode; check that its option KTR-H2 is installed");
    }
}

void SendInputSettings(int32_t route, Receiver& receiver)
{
    if (route == demodulatorRoute) {
        receiver.DemodulatorGainControl(automaticGain);
    } else if (route != intermediateRoute) {
        receiver.InputAttenuation(automaticAttenuation);
    }
}

void SendLevelUnit(const std::wstring& name, Receiver& receiver)
{
    const int32_t code = LevelUnitCode(name);
    if (code >= 0) {
        receiver.LevelUnit(code);
    }
}

/// A filter that the receiver has not got is switched off, rather than measuring through another one. The filters of 6
/// and 7 MHz may stand in for each other.
void SendSawFilter(int32_t wanted, Receiver& receiver)
{
    receiver.SawBandwidth(wanted);
    const int32_t taken = receiver.SawBandwidth();
    const bool neighbours = wanted == 6 || wanted == 7;
    const bool right = neighbours ? taken == 6 || taken == 7 : taken == wanted;
    if (!right && (neighbours || wanted == 2 || wanted == 8)) {
        receiver.SawBandwidth(0);
    }
}

void SendReferenceSource(int32_t reference, const ConfigurationPeers& with)
{
    if (HasReferenceInput(with.receiver.InstalledOptions())) {
        with.receiver.ReferenceSource(reference);
    } else if (reference == external) {
        with.errors.Report(referenceNotAvailable, source, noReferenceInput, true);
        // A reporter that does not raise must not let the user believe in an external reference.
        throw RaisedError(referenceNotAvailable, source, noReferenceInput);
    }
}

void SendSettings(const SetupDocument& document, const ConfigurationPeers& with)
{
    Receiver& receiver = with.receiver;
    RunSteps(with, 2,
             {
                 [&] { SendMode(receiver); },
                 [&] { receiver.InputRoute(document.Zin()); },
                 [&] { SendInputSettings(document.Zin(), receiver); },
                 [&] { SendLevelUnit(document.LevelUnit(), receiver); },
                 [&] { SendSawFilter(document.SawBw(), receiver); },
                 [&] { receiver.OrderOfQam(document.OrderOfQam()); },
                 [&] { receiver.RollOffFactor(document.RollOffFactor()); },
                 [&] { receiver.BerSamples(document.BerSamples()); },
                 [&] { receiver.Equaliser(adaptive); },
                 [&] { SendReferenceSource(document.ReferenceSource(), with); },
                 [] {},
             });
}

}  // namespace

void WriteConfiguration(const SetupDocument& document, const ConfigurationPeers& with,
                        const std::function<void()>& forgetTuning)
{
    try {
        Announce(with, L"Configuring KTR", 1, progressTotal);
        forgetTuning();  // before the call: an initialisation that fails half-way has moved the receiver too
        with.receiver.Initialise();
        SendSettings(document, with);
    } catch (const RaisedError& error) {
        throw InWordsForTheUser(error);
    }
}

}  // namespace tvn2x
