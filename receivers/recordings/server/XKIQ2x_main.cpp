// The exports of the component server, and nothing else.

#include <initguid.h>
#include <windows.h>

#include "TVNINT.h"
#include "XKIQ2x.h"
#include "XKTR2x.h"
#include "com/EntryPoints.h"
#include "receivers/driver/ThreadState.h"
#include "receivers/driver/clsErrorReport.h"
#include "receivers/driver/clsRunControl.h"
#include "receivers/recordings/server/RecordingsReceiver.h"

namespace {

using namespace tvn2x;

const com::ServedClass classes[] = {
    {CLSID_recReceiver, L"XKIQ2x.clsReceiver", L"Receiver of recorded signals", RecordingsReceiver::Create},
    {CLSID_recRunControl, L"XKIQ2x.clsRunControl",
     L"Run control of the calling thread, for the receiver of recorded signals", tvn2x::clsRunControl::Create},
    {CLSID_recErrorReport, L"XKIQ2x.clsErrorReport",
     L"Error reporting of the calling thread, for the receiver of recorded signals", tvn2x::clsErrorReport::Create},
};

const com::Server server(classes, LIBID_XKIQ2x);

}  // namespace

TVN_COMPONENT_ENTRY_POINTS(server, ForgetThread)
