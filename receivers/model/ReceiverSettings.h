#pragma once

#include <cstdint>

#include "dvbc/LevelUnit.h"
#include "setup/catalogue/Options.h"

namespace tvn2x {

constexpr int32_t automaticAttenuation = 255;

/// Everything that the receiver can be set to. The initial values are its basic state.
struct ReceiverSettings
{
    double frequency = 474e6;   ///< Hz
    double symbolRate = 6.9e6;  ///< symbols per second
    int32_t order = 64;         ///< of QAM
    int32_t rollOff = 15;       ///< hundredths
    int32_t berSamples = 10;    ///< blocks of 10^7 bits
    int32_t sawBandwidth = 8;   ///< MHz, 0 is off
    int32_t route = input_route::receiver75;
    int32_t mode = dvbCDemodulator;
    int32_t attenuation = automaticAttenuation;  ///< dB
    bool automaticGain = true;                   ///< of the demodulator route
    bool adaptiveEqualiser = true;
    bool externalReference = false;
    dvbc::LevelUnit levelUnit = dvbc::LevelUnit::dBmV;
};

}  // namespace tvn2x
