#pragma once

#include <chrono>
#include <functional>

#include "TVNINT.h"
#include "com/Object.h"
#include "host/console/Console.h"
#include "host/link/StopRequest.h"
#include "host/terminal/ProgressLine.h"

namespace tvn2x {

/// The parent object of a scan: shows status and progress, tells whoever watches, and looks for a stop at each notice.
class ScanParent final : public com::Object<IMeasureParent>
{
public:
    /// Is told how far the running channel is, 0..1, and what the plug-in does.
    using Watch = std::function<void(double step, const std::wstring& status)>;

    ScanParent(Console& console, StopRequest& stop, int32_t channels, Watch watch);

    void Begin(const std::wstring& channelLabel);
    void End();
    double Elapsed() const;  ///< seconds since the scan began

    HRESULT STDMETHODCALLTYPE Status(BSTR sText) noexcept override;
    HRESULT STDMETHODCALLTYPE Progress(double dValue, VARIANT vSteps) noexcept override;
    HRESULT STDMETHODCALLTYPE CellChanged(long lChannel, short iColumn) noexcept override;
    HRESULT STDMETHODCALLTYPE ChannelStart(double dFrequency, VARIANT vSymbolRate) noexcept override;

private:
    using Clock = std::chrono::steady_clock;

    void Notice();
    void Show();
    void ShowNowAndThen();

    Console& console_;
    StopRequest& stop_;
    Watch watch_;
    ScanProgress progress_;
    Clock::time_point began_ = Clock::now();
    Clock::time_point shown_{};
};

}  // namespace tvn2x
