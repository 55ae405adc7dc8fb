#include "simulator/server/SimulatorSettings.h"

#include "receivers/driver/ThreadState.h"
#include "util/FileSystem.h"

namespace tvn2x {
namespace {

/// NaN is outside every range.
void RequireRange(double value, double min, double max, const wchar_t* member, const wchar_t* allowed)
{
    if (!(value >= min && value <= max)) {
        throw RaisedError(error::invalidPropertyValue, std::wstring(L"ISimulatorSettings.") + member,
                          std::wstring(member) + L" must be " + allowed);
    }
}

}  // namespace

HRESULT SimulatorSettings::put_NetworkModel(BSTR sFullPath) noexcept
{
    return Do([&] {
        const std::wstring path(com::ViewOf(sFullPath));
        const std::wstring full = path.empty() ? path : FullPath(path);
        receiver_->model.Physics().Network(full.empty() ? NetworkModel() : NetworkModel::Load(SystemFiles(), full));
        receiver_->modelFile = full;
    });
}

HRESULT SimulatorSettings::get_NetworkModel(BSTR* value) noexcept
{
    return Get(value, [&] { return receiver_->modelFile; });
}

HRESULT SimulatorSettings::put_TimeScale(DOUBLE value) noexcept
{
    return Do([&] {
        // A receiver that is slower than in life would lock after its client has given up.
        RequireRange(value, 1e-6, 1, L"TimeScale", L"from 0.000001 to 1");
        receiver_->time.Scale(value);
        StateOfThread()->timeScale = value;
    });
}

HRESULT SimulatorSettings::get_TimeScale(DOUBLE* value) noexcept
{
    return Get(value, [&] { return receiver_->time.Scale(); });
}

HRESULT SimulatorSettings::put_Latency(DOUBLE value) noexcept
{
    return Do([&] {
        RequireRange(value, 0, 60000, L"Latency", L"from 0 to 60000 milliseconds");
        receiver_->model.Latency(value / 1000);
    });
}

HRESULT SimulatorSettings::get_Latency(DOUBLE* value) noexcept
{
    return Get(value, [&] { return receiver_->model.Latency() * 1000; });
}

HRESULT SimulatorSettings::put_Value(BSTR sSection, BSTR sKey, BSTR value) noexcept
{
    return Do([&] {
        NetworkModel changed = receiver_->model.Physics().Network();
        changed.Set(com::ViewOf(sSection), com::ViewOf(sKey), com::ViewOf(value));
        receiver_->model.Physics().Network(std::move(changed));
    });
}

HRESULT SimulatorSettings::get_Value(BSTR sSection, BSTR sKey, BSTR* value) noexcept
{
    return Get(value,
               [&] { return receiver_->model.Physics().Network().Get(com::ViewOf(sSection), com::ViewOf(sKey)); });
}

HRESULT SimulatorSettings::FailAt(BSTR sOperation, LONG lCount, LONG lNumber, BSTR sSource, BSTR sDescription) noexcept
{
    return Do([&] {
        receiver_->model.Faults().FailAt(
            com::ViewOf(sOperation), lCount,
            RaisedError(lNumber, std::wstring(com::ViewOf(sSource)), std::wstring(com::ViewOf(sDescription))));
    });
}

HRESULT SimulatorSettings::ClearFaults() noexcept
{
    return Do([&] { receiver_->model.Faults().Clear(); });
}

HRESULT SimulatorSettings::get_Operations(LONG* value) noexcept
{
    return Get(value, [&] { return receiver_->model.Operations(); });
}

HRESULT SimulatorSettings::put_SettlingTime(DOUBLE value) noexcept
{
    return Do([&] {
        RequireRange(value, 0, 86400, L"SettlingTime", L"from 0 to 86400 seconds");
        receiver_->model.Physics().SettlingTime(value);
    });
}

HRESULT SimulatorSettings::get_SettlingTime(DOUBLE* value) noexcept
{
    return Get(value, [&] { return receiver_->model.Physics().SettlingTime(); });
}

/// What the receiver is set to: the settings with which a measurement stands and falls.
#define SIMULATOR_SETTING(name)                                               \
    HRESULT SimulatorSettings::put_##name(LONG value) noexcept                \
    {                                                                         \
        return Do([&] { receiver_->model.Physics().name(value); });           \
    }                                                                         \
    HRESULT SimulatorSettings::get_##name(LONG* value) noexcept               \
    {                                                                         \
        return Get(value, [&] { return receiver_->model.Physics().name(); }); \
    }
SIMULATOR_SETTING(OrderOfQam)
SIMULATOR_SETTING(LevelUnit)
SIMULATOR_SETTING(BerSamples)
SIMULATOR_SETTING(RollOffFactor)
SIMULATOR_SETTING(SawBandwidth)
SIMULATOR_SETTING(ReferenceSource)
SIMULATOR_SETTING(InputRoute)
#undef SIMULATOR_SETTING

}  // namespace tvn2x
