#include "receivers/recordings/server/RecordingsReceiver.h"

#include "com/ComPtr.h"
#include "driver/DriverSetting.h"
#include "receivers/driver/clsReceiver.h"
#include "receivers/recordings/server/RecordingsSettings.h"

namespace tvn2x {

HRESULT RecordingsReceiver::Create(REFIID interfaceId, void** out)
{
    const auto signals = std::make_shared<PlayedSignals>();
    if (const auto setting = SettingOfThisProgram(signalsKey)) {
        signals->receiver.SignalsLater(setting->words);
    }
    const com::ComPtr<clsReceiver> object(new clsReceiver(std::make_unique<RecordingsReceiver>(signals)));
    return object->QueryInterface(interfaceId, out);
}

IDispatch* RecordingsReceiver::NewSettings()
{
    auto* settings = new RecordingsSettings(signals_);
    settings->AddRef();
    return settings;
}

}  // namespace tvn2x
