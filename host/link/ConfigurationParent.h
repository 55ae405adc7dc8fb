#pragma once

#include "TVNINT.h"
#include "com/Object.h"
#include "host/console/Console.h"
#include "host/link/StopRequest.h"

namespace tvn2x {

/// The parent object while a configuration is read or written: a progress line on a terminal, the status alone
/// elsewhere. Looks for a stop at each notice.
class ConfigurationParent final : public com::Object<IMeasureParent>
{
public:
    ConfigurationParent(Console& console, StopRequest& stop) : console_(console), stop_(stop) {}

    double Step() const { return step_; }  ///< the one that has begun last
    /// Nothing was left to do when the transfer ended.
    bool IsAtEnd() const { return steps_ > 0 && step_ >= steps_; }

    HRESULT STDMETHODCALLTYPE Status(BSTR sText) noexcept override;
    HRESULT STDMETHODCALLTYPE Progress(double dValue, VARIANT vSteps) noexcept override;
    HRESULT STDMETHODCALLTYPE CellChanged(long lChannel, short iColumn) noexcept override;
    HRESULT STDMETHODCALLTYPE ChannelStart(double dFrequency, VARIANT vSymbolRate) noexcept override;

private:
    Console& console_;
    StopRequest& stop_;
    std::wstring status_;
    double step_ = 0;
    double steps_ = 0;  ///< told with the first progress only
};

}  // namespace tvn2x
