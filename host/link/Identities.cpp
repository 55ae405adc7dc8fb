// The identities of the host's own library; those of the others are needed as __uuidof only.
#include <windows.h>

#include <initguid.h>

#include "TVNINT.h"
