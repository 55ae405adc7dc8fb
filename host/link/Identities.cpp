// The identities of the contracts' libraries and classes.
#include <windows.h>

#include <initguid.h>

#include "TVN2x.h"
#include "TVNINT.h"
#include "XKIQ2x.h"
#include "XKTR2x.h"
