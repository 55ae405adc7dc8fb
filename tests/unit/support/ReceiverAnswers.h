#pragma once

#include <cstdint>
#include <string>

#include "dvbc/ErroredTime.h"

namespace tvn2x {

/// What a receiver answers, by operation; a setting is what was written last.
struct ReceiverAnswers
{
#define RECEIVER_READING(name, parameter) double name = 0;
#define RECEIVER_STATE(Type, name) Type name{};
#define RECEIVER_SETTING(Type, name) Type name{};
#define INSTRUMENT_IDENTITY(name) std::wstring name;
#include "setup/catalogue/ReceiverOperations.h"
};

/// The answers of a receiver on a channel in perfect order.
inline ReceiverAnswers GoodAnswers()
{
    ReceiverAnswers good;
    good.ReadFrequencyOffset = 1200;
    good.ReadRfLevel = 2.5;
    good.ReadCarrierToInterference = 41.5;
    good.ReadCarrierSuppression = 52.25;
    good.ReadMer = 38.5;
    good.ReadMerPercent = 1.25;
    good.ReadPhaseJitter = 0.5;
    good.ReadIqImbalance = 0.25;
    good.ReadIqPhase = 0.75;
    good.ReadSignalToNoise = 39.5;
    good.ReadBer = 1e-8;
    good.BerState = L"RUN";
    good.BerResult = L"1.0E-8";
    good.ReferenceLocked = true;
    good.RfSignalPresent = true;
    good.BerSamples = 10;
    good.RollOffFactor = 15;
    good.OrderOfQam = 64;
    good.SymbolRate = 6.9e6;
    good.SawBandwidth = 8;
    good.InputRoute = 75;
    good.Mode = 4;
    good.SerialNumber = L"100001";
    good.FirmwareVersion = L"2.10";
    good.InstalledOptions = L"DVBC,EXTREF";
    good.InstrumentName = L"Receiver 3";
    good.BusAddress = L"GPIB0::12";
    good.Model = L"KTR";
    good.Manufacturer = L"KESTREL&BRAND";
    good.Hardware = L"KTR 23";
    return good;
}

}  // namespace tvn2x
