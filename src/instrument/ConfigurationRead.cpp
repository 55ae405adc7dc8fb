#include "instrument/ConfigurationRead.h"

#include "instrument/HardwareCheck.h"
#include "setup/MP_TYPES.h"

namespace tvn2x {
namespace {

constexpr double perMega = 1e6;
constexpr int16_t progressTotal = 10;
constexpr int32_t wrongMode = 1002;

void TakeLevelUnit(SetupDocument& document, Receiver& receiver)
{
    const std::wstring_view name = LevelUnitName(receiver.LevelUnit());
    if (!name.empty())
        document.LevelUnitDirect(std::wstring(name));
}

void TakeChannel(SetupDocument& document, Receiver& receiver)
{
    document.ListSize(1);
    document.Frequency(1, receiver.Frequency() / perMega);
}

void TakeSymbolRate(SetupDocument& document, Receiver& receiver)
{
    document.DefaultSymbolRate(receiver.SymbolRate() / perMega);
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
