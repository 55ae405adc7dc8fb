#pragma once

#include <memory>
#include <string>

#include "receivers/driver/DriverReceiver.h"
#include "simulator/model/ReceiverModel.h"
#include "simulator/server/PerformanceTime.h"

namespace tvn2x {

/// The model of one receiver of the library, the time that it runs on, and the file that its network came from. Shared
/// by the driver object and its settings.
struct Simulation
{
    Simulation() { model.Latency(usualLatency); }

    static constexpr double usualLatency = 0.002;  // seconds that an instrument on its bus takes to answer

    PerformanceTime time;
    ReceiverModel model{time};
    std::wstring modelFile;  ///< full path, empty where there is none
};

/// The simulated receiver as the driver object has it.
class SimulatedReceiver final : public ModelledReceiver<ReceiverModel>
{
public:
    explicit SimulatedReceiver(std::shared_ptr<Simulation> simulation)
        : ModelledReceiver(simulation->model), simulation_(std::move(simulation))
    {
    }

    /// Makes a driver object and answers an interface of it.
    static HRESULT Create(REFIID interfaceId, void** out);

    IDispatch* NewSettings() override;

private:
    std::shared_ptr<Simulation> simulation_;
};

}  // namespace tvn2x
