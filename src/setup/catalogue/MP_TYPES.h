#pragma once

#include <cstdint>

namespace tvn2x {

/// The number of every value that the product handles. Published in the type library with these names and values; the
/// boundary names share their value with the first or last parameter of a range.
enum MP_TYPES : int32_t
{
    MP_FIRST = 1,
    MP_ZIN = 1,
    MP_SAWBW = 2,
    MP_ORDEROFQAM = 3,
    MP_ROLLOFFFACTOR = 4,
    MP_LEVELUNIT = 5,
    MP_REFERENCE = 6,
    MP_BERSAMPLES = 7,
    MP_MAXSETTLINGTIME = 8,
    MP_XAXIS = 9,
    MP_LASTSTATIC = 9,
    MP_FIRSTFIXED = 10,
    MP_USERFIELD = 10,
    MP_FREQUENCY = 11,
    MP_SYMBOLRATE = 12,
    MP_LASTFIXED = 12,
    MP_STATUS = 13,
    MP_TIMESTAMP = 14,
    MP_RFLEV = 15,
    MP_BER = 16,
    MP_FREQOFF = 17,
    MP_REF = 18,
    MP_SYNC = 19,
    MP_DATA = 20,
    MP_IQIMBAL = 21,
    MP_IQPHASE = 22,
    MP_CS = 23,
    MP_PHASJIT = 24,
    MP_CI = 25,
    MP_SN = 26,
    MP_MER = 27,
    MP_MERPCT = 28,
    MP_SY = 29,
    MP_DE = 30,
    MP_LAST = 30
};

}  // namespace tvn2x
