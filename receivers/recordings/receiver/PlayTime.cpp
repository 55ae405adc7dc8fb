#include "receivers/recordings/receiver/PlayTime.h"

#include <chrono>
#include <thread>

namespace tvn2x::recordings {

double MachineTime::Seconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void MachineTime::Wait(double seconds)
{
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

}  // namespace tvn2x::recordings
