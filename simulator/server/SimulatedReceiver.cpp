#include "simulator/server/SimulatedReceiver.h"

#include "com/ComPtr.h"
#include "receivers/driver/ThreadState.h"
#include "receivers/driver/clsReceiver.h"
#include "simulator/server/SimulatorSettings.h"

namespace tvn2x {

HRESULT SimulatedReceiver::Create(REFIID interfaceId, void** out)
{
    const auto simulation = std::make_shared<Simulation>();
    StateOfThread()->timeScale = simulation->time.Scale();
    const com::ComPtr<clsReceiver> object(new clsReceiver(std::make_unique<SimulatedReceiver>(simulation)));
    return object->QueryInterface(interfaceId, out);
}

IDispatch* SimulatedReceiver::NewSettings()
{
    auto* settings = new SimulatorSettings(simulation_);
    settings->AddRef();
    return settings;
}

}  // namespace tvn2x
