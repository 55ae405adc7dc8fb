// The exports of the component server, and nothing else.

#include <initguid.h>
#include <windows.h>

#include "TVNINT.h"
#include "XKTR2x.h"
#include "com/EntryPoints.h"
#include "receivers/driver/ThreadState.h"
#include "receivers/driver/clsErrorReport.h"
#include "receivers/driver/clsRunControl.h"
#include "simulator/server/SimulatedReceiver.h"

namespace {

using namespace tvn2x;

// The identities of XKTR2x are every driver's: another vendor's library that has them keeps them.
const com::ServedClass classes[] = {
    {CLSID_simReceiver, L"XKTR2xSim.clsReceiver", L"Simulated test receiver", SimulatedReceiver::Create},
    {CLSID_simRunControl, L"XKTR2xSim.clsRunControl", L"Run control of the calling thread, for the simulated receiver",
     tvn2x::clsRunControl::Create},
    {CLSID_simErrorReport, L"XKTR2xSim.clsErrorReport",
     L"Error reporting of the calling thread, for the simulated receiver", tvn2x::clsErrorReport::Create},
    {CLSID_clsReceiver, L"XKTR2x.clsReceiver", L"Test receiver", SimulatedReceiver::Create, com::Claim::ifVacant},
    {CLSID_clsRunControl, L"XKTR2x.clsRunControl", L"Run control of the calling thread", tvn2x::clsRunControl::Create,
     com::Claim::ifVacant},
    {CLSID_clsErrorReport, L"XKTR2x.clsErrorReport", L"Error reporting of the calling thread",
     tvn2x::clsErrorReport::Create, com::Claim::ifVacant},
};

const com::Server server(classes, LIBID_XKTR2x, com::Claim::ifVacant);

}  // namespace

TVN_COMPONENT_ENTRY_POINTS(server, ForgetThread)
