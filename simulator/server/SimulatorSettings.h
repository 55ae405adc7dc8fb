#pragma once

#include <windows.h>

#include <memory>

#include "XKTR2x.h"
#include "com/Object.h"
#include "simulator/server/SimulatedReceiver.h"

namespace tvn2x {

/// The settings object of a simulated receiver. What it does to the receiver is no operation of the receiver: it takes
/// no time and no scripted error hits it.
class SimulatorSettings final : public com::Object<ISimulatorSettings>
{
public:
    explicit SimulatorSettings(std::shared_ptr<Simulation> receiver) : receiver_(std::move(receiver)) {}

    /// An empty path takes the network away.
    HRESULT STDMETHODCALLTYPE put_NetworkModel(BSTR sFullPath) noexcept override;
    HRESULT STDMETHODCALLTYPE get_NetworkModel(BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_TimeScale(DOUBLE value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_TimeScale(DOUBLE* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Latency(DOUBLE value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Latency(DOUBLE* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Value(BSTR sSection, BSTR sKey, BSTR value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Value(BSTR sSection, BSTR sKey, BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE FailAt(BSTR sOperation, LONG lCount, LONG lNumber, BSTR sSource,
                                     BSTR sDescription) noexcept override;
    HRESULT STDMETHODCALLTYPE ClearFaults() noexcept override;
    HRESULT STDMETHODCALLTYPE get_Operations(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_OrderOfQam(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_OrderOfQam(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_LevelUnit(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_LevelUnit(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_BerSamples(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_BerSamples(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_RollOffFactor(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_RollOffFactor(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_SawBandwidth(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_SawBandwidth(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_ReferenceSource(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ReferenceSource(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_InputRoute(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_InputRoute(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_SettlingTime(DOUBLE value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_SettlingTime(DOUBLE* value) noexcept override;

private:
    std::shared_ptr<Simulation> receiver_;
};

}  // namespace tvn2x
