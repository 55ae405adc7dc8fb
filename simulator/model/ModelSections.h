#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tvn2x {

/// What an outage takes away. Locks that need the lost one are lost with it.
enum class LockKind
{
    rf,
    reference,
    carrier,
    ts
};

/// A lock that drops on its own some time after tuning. Seconds.
struct Outage
{
    LockKind lock;
    double from;
    double duration;

    bool operator==(const Outage&) const = default;
};

/// Section [Network]: what all channels share, and the receiver at the outlet.
struct NetworkSettings
{
    double noiseFigure = 8;         ///< dB
    double tilt = 0;                ///< dB of cable loss at 862 MHz, growing with the square root of the frequency
    double tiltDrift = 0;           ///< dB that the tilt swings to either side, with the warmth of the day
    double driftPeriod = 24;        ///< hours from one warmest moment to the next
    double headEndMer = 43;         ///< dB
    double implementationLoss = 1;  ///< dB that the demodulator falls short of theory
    double velocityFactor = 0.85;   ///< of the cable between outlet and receiver
    int32_t seed = 1;
    double readingNoise = 1;    ///< spread of the readings, 0 is none, 1 that of a good receiver
    bool connected = true;      ///< the receiver answers
    bool referenceFed = true;   ///< a 10 MHz signal is on the reference input
    bool swapsFilters = false;  ///< takes the nearest SAW filter for one that is not fitted, instead of an error
    bool ignoresModes = false;  ///< keeps its operating mode, without an error, where the other one needs an option
    double referenceError = 0;  ///< ppm, of the receiver's own reference
    std::wstring instrumentName = L"Test receiver";
    std::wstring busAddress = L"SIM1";
    std::wstring manufacturer = L"KESTREL&BRAND";
    std::wstring model = L"KTR";
    std::wstring hardware = L"KTR 2x, simulated, revision 1";
    std::wstring serialNumber = L"100001";
    std::wstring firmwareVersion = L"2.40";
    std::wstring installedOptions =
        L"KTR-H2,KTR-H4,KTR-H5,KTR-H6,KTR-H8 (or KTR-H9),KTR-H7,KTR-S31,KTR-S32,KTR-S33,EXTREF,EAMOD,RB";
};

/// Section [Channel n]: one DVB-C channel as it leaves the head-end and reaches the outlet.
struct ChannelModel
{
    int32_t number = 0;
    double frequency = 0;               ///< MHz
    double symbolRate = 6.9;            ///< MSymb/s
    int32_t order = 64;                 ///< of QAM
    double level = 62;                  ///< dBµV at the low end of the band; the tilt comes off
    double rollOff = 15;                ///< hundredths
    double carrierToInterference = 52;  ///< dB
    double carrierSuppression = 50;     ///< dB
    double phaseJitter = 0.3;           ///< degrees RMS
    double iqImbalance = 0.3;           ///< %
    double quadratureError = 0.2;       ///< degrees
    double echoRatio = 20;              ///< dB that the echo is below the signal
    double echoLength = 0;              ///< m of cable between the two reflections; 0 is no echo
    double frequencyOffset = 0;         ///< Hz
    double symbolRateOffset = 0;        ///< ppm
    double lockTimeFactor = 1;          ///< 2 takes twice as long to lock
    std::vector<Outage> outages;
};

}  // namespace tvn2x
