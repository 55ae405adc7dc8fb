#pragma once

#include <windows.h>

#include <memory>

#include "XKIQ2x.h"
#include "com/Object.h"
#include "receivers/recordings/server/RecordingsReceiver.h"

namespace tvn2x {

class RecordingsSettings;

/// IChannelDetails of the settings object.
class RecordingsSettings_IChannelDetails final : public com::Member<IChannelDetails, RecordingsSettings>
{
public:
    using Member::Member;

    HRESULT STDMETHODCALLTYPE get_Remark(BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE Constellation(LONG lMost, VARIANT* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_LevelUncalibrated(VARIANT_BOOL* value) noexcept override;
};

/// The settings object of a receiver of recorded signals.
class RecordingsSettings final : public com::Object<IRecordingsSettings>
{
public:
    explicit RecordingsSettings(std::shared_ptr<PlayedSignals> signals) : signals_(std::move(signals)) {}

    recordings::RecordedReceiver& Receiver() { return signals_->receiver; }

    /// An empty path takes the recordings away.
    HRESULT STDMETHODCALLTYPE put_Signals(BSTR sFolder) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Signals(BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Bands(BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_LevelOfFullScale(VARIANT* value) noexcept override;

private:
    void* FindInterface(REFIID id) noexcept override;

    std::shared_ptr<PlayedSignals> signals_;
    RecordingsSettings_IChannelDetails details_{*this};
};

}  // namespace tvn2x
