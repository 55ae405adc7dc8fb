// The published enumerations and the core's are one: what clients compile against is what the core computes with.

#include <windows.h>

#include "TVN2x.h"
#include "setup/catalogue/MP_TYPES.h"
#include "util/clsTimeout.h"

#define SAME(name) static_assert(static_cast<int>(::name) == static_cast<int>(tvn2x::name))

SAME(MP_FIRST);
SAME(MP_ZIN);
SAME(MP_SAWBW);
SAME(MP_ORDEROFQAM);
SAME(MP_ROLLOFFFACTOR);
SAME(MP_LEVELUNIT);
SAME(MP_REFERENCE);
SAME(MP_BERSAMPLES);
SAME(MP_MAXSETTLINGTIME);
SAME(MP_XAXIS);
SAME(MP_LASTSTATIC);
SAME(MP_FIRSTFIXED);
SAME(MP_USERFIELD);
SAME(MP_FREQUENCY);
SAME(MP_SYMBOLRATE);
SAME(MP_LASTFIXED);
SAME(MP_STATUS);
SAME(MP_TIMESTAMP);
SAME(MP_RFLEV);
SAME(MP_BER);
SAME(MP_FREQOFF);
SAME(MP_REF);
SAME(MP_SYNC);
SAME(MP_DATA);
SAME(MP_IQIMBAL);
SAME(MP_IQPHASE);
SAME(MP_CS);
SAME(MP_PHASJIT);
SAME(MP_CI);
SAME(MP_SN);
SAME(MP_MER);
SAME(MP_MERPCT);
SAME(MP_SY);
SAME(MP_DE);
SAME(MP_LAST);
SAME(tmoReady);
SAME(tmoRunning);
SAME(tmoExpired);
