// The exports of the component server, and nothing else.

#include <initguid.h>
#include <windows.h>

#include "TVN2x.h"
#include "TVNINT.h"
#include "XKTR2x.h"
#include "com/EntryPoints.h"
#include "plugin/TimeoutObject.h"
#include "plugin/clsSetup.h"
#include "plugin/clsSupport.h"

namespace {

using namespace tvn2x;

const com::ServedClass classes[] = {
    {CLSID_clsSetup, L"TVN2x.clsSetup", L"Setup document, instrument facade and measurement process",
     com::Create<tvn2x::clsSetup>},
    {CLSID_clsSupport, L"TVN2x.clsSupport", L"Container for product support contact information",
     com::Create<tvn2x::clsSupport>},
    {CLSID_clsTimeout, L"TVN2x.clsTimeout", L"Polled timer", com::Create<TimeoutObject>},
};

const com::Server server(classes, LIBID_TVN2x);

}  // namespace

TVN_COMPONENT_ENTRY_POINTS(server, nullptr)
