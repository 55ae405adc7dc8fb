#pragma once

#include <windows.h>

#include <dispex.h>

#include <array>

#include "TVNINT.h"
#include "XKTR2x.h"
#include "com/ComPtr.h"
#include "instrument/Receiver.h"

namespace tvn2x {

/// The run-control object of the calling thread, shared with the host.
class ComRunControl final : public RunControl
{
public:
    explicit ComRunControl(com::ComPtr<IRunControl> control) : control_(std::move(control)) {}

    bool StopFlag() override;
    void Pause(float seconds) override;

private:
    com::ComPtr<IRunControl> control_;
};

/// The error-reporting object of the calling thread, created with the first report.
class ComErrorReporter final : public ErrorReporter
{
public:
    void Report(int32_t number, const std::wstring& source, const std::wstring& description, bool raise) override;

private:
    com::ComPtr<IErrorReport> report_;
};

/// The host's parent object: early bound where it answers IMeasureParent, late bound by name where it is a script's.
class ComParent final : public HostParent
{
public:
    /// Raises 438 where the object offers neither the interface nor the four members by name.
    explicit ComParent(IDispatch* object);

    void Status(const std::wstring& text) override;
    void Progress(double value) override;
    void Progress(double value, int16_t steps) override;
    void CellChanged(int32_t channel, int16_t column) override;
    void ChannelStart(double hertz, double symbolsPerSecond) override;

private:
    /// The members that a script's object is asked for by name.
    enum LateMember
    {
        lateStatus,
        lateProgress,
        lateCellChanged,
        lateChannelStart,
        lateMembers
    };

    void ResolveNames();
    HRESULT IdOf(const wchar_t* name, DISPID* id);
    template <class... Parameters, class... Arguments>
    void CallEarly(HRESULT (STDMETHODCALLTYPE IMeasureParent::*member)(Parameters...), Arguments... arguments);
    void CallLate(LateMember member, std::array<VARIANT, 2>& reversedArguments, UINT count);
    void ProgressWith(double value, const VARIANT& steps);

    com::ComPtr<IMeasureParent> early_;
    com::ComPtr<IDispatch> late_;
    com::ComPtr<IDispatchEx> script_;  ///< the way that script engines offer first, and some of them only
    std::array<DISPID, lateMembers> ids_{};
};

}  // namespace tvn2x
