// The published enumerations and the core's are one: what clients compile against is what the core computes with.

#include <windows.h>

#include "TVN2x.h"
#include "setup/catalogue/MP_TYPES.h"
#include "util/clsTimeout.h"

#define SAME(name) static_assert(static_cast<int>(::name) == static_cast<int>(tvn2x::name))

#define PARAMETER(name, number, kind, caption, file, title, unit, format) SAME(name);
#define PARAMETER_BOUND(name, number) SAME(name);
#include "setup/catalogue/ParameterList.h"
SAME(tmoReady);
SAME(tmoRunning);
SAME(tmoExpired);
