#include "instrument/ConfigurationRead.h"

#include <cmath>

#include "instrument/HardwareCheck.h"
#include "setup/catalogue/LevelUnits.h"
#include "setup/catalogue/Options.h"
#include "util/RaisedError.h"

namespace tvn2x {
namespace {

constexpr double perMega = 1e6;
constexpr int16_t progressTotal = 10;
constexpr int32_t wrongMode = 1002;

void TakeLevelUnit(SetupDocument& document, Receiver& receiver)
{
    const std::wstring_view name = LevelUnitName(receiver.LevelUnit());
    if (!name.empty()) {
        document.LevelUnitDirect(std::wstring(name));
    }
}

/// What the receiver is tuned to, which only a number can say: a document with anything else could not be loaded again.
double InMega(double value, const wchar_t* what)
{
    constexpr double highest = 1e15;
    if (!(std::abs(value) <= highest)) {
        throw RaisedError(error::typeMismatch, L"clsSetup.GetConfiguration",
                          std::wstring(L"The receiver reports a ") + what + L" that is no number");
    }
    return value / perMega;
}

/// The list shrinks to its first channel, which keeps what the receiver does not know.
void TakeChannel(SetupDocument& document, Receiver& receiver)
{
    if (document.ListSize() > 1) {
        const double frequency = document.Frequency(1);
        const double symbolRate = document.SymbolRate(1);
        const std::wstring userField = document.UserField(1);
        document.ListSize(1);
        document.Frequency(1, frequency);
        document.SymbolRate(1, symbolRate);
        document.UserField(1, userField);
    }
    document.ListSize(1);
    document.Frequency(1, InMega(receiver.Frequency(), L"frequency"));
}

void TakeSymbolRate(SetupDocument& document, Receiver& receiver)
{
    document.DefaultSymbolRate(InMega(receiver.SymbolRate(), L"symbol rate"));
    document.SymbolRate(1, document.DefaultSymbolRate());
}

void TakeReferenceSource(SetupDocument& document, Receiver& receiver)
{
    document.ReferenceSource(HasReferenceInput(receiver.InstalledOptions()) ? receiver.ReferenceSource() : 0);
}

}  // namespace

void ReadConfiguration(SetupDocument& document, const ConfigurationPeers& with)
{
    Receiver& receiver = with.receiver;
    Announce(with, L"Reading KTR Configuration", 0, progressTotal);
    if (receiver.Mode() != dvbCDemodulator) {
        with.errors.Report(wrongMode, L"frmMain.IMeasure_GetConfiguration", L"KTR must be in DVB-C Demod. mode", false);
    }
    RunSteps(with, 1,
             {
                 [&] { document.Zin(receiver.InputRoute()); },
                 [&] { TakeLevelUnit(document, receiver); },
                 [&] { document.SawBw(receiver.SawBandwidth()); },
                 [&] { document.OrderOfQam(receiver.OrderOfQam()); },
                 [&] { document.RollOffFactor(receiver.RollOffFactor()); },
                 [&] { document.BerSamples(receiver.BerSamples()); },
                 [&] { TakeChannel(document, receiver); },
                 [&] { TakeSymbolRate(document, receiver); },
                 [&] { TakeReferenceSource(document, receiver); },
                 [] {},
             });
}

}  // namespace tvn2x
