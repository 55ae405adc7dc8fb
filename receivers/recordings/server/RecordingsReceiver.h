#pragma once

#include <memory>

#include "receivers/driver/DriverReceiver.h"
#include "receivers/recordings/receiver/RecordedReceiver.h"

namespace tvn2x {

/// One receiver of the library and the time that it plays in. Shared by the driver object and its settings.
struct PlayedSignals
{
    recordings::MachineTime time;
    recordings::RecordedReceiver receiver{time};
};

/// The receiver of recorded signals as the driver object has it.
class RecordingsReceiver final : public ModelledReceiver<recordings::RecordedReceiver>
{
public:
    explicit RecordingsReceiver(std::shared_ptr<PlayedSignals> signals)
        : ModelledReceiver(signals->receiver), signals_(std::move(signals))
    {
    }

    /// Makes a driver object, with the folder that is set for this program, and answers an interface of it.
    static HRESULT Create(REFIID interfaceId, void** out);

    IDispatch* NewSettings() override;

private:
    std::shared_ptr<PlayedSignals> signals_;
};

}  // namespace tvn2x
