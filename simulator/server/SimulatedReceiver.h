#pragma once

#include <string>

#include "simulator/model/ReceiverModel.h"
#include "simulator/server/PerformanceTime.h"

namespace tvn2x {

/// One receiver of the library: the model, the time that it runs on, and the file that its network came from. Shared
/// by the driver object and its settings.
struct SimulatedReceiver
{
    SimulatedReceiver() { model.Latency(usualLatency); }

    static constexpr double usualLatency = 0.002;  // seconds that an instrument on its bus takes to answer

    PerformanceTime time;
    ReceiverModel model{time};
    std::wstring modelFile;  ///< full path, empty where there is none
};

}  // namespace tvn2x
