#include "host/link/ScanParent.h"

#include "com/Text.h"

namespace tvn2x {
namespace {

/// A notice comes after every step of the receiver; a terminal need not be told that often.
constexpr auto shownAgainAfter = std::chrono::milliseconds(100);
constexpr double usualSteps = 30;

double StepsOf(VARIANT steps)
{
    VARIANT number;
    VariantInit(&number);
    const bool isNumber = SUCCEEDED(VariantChangeType(&number, &steps, 0, VT_R8)) && number.dblVal > 0;
    return isNumber ? number.dblVal : usualSteps;
}

}  // namespace

ScanParent::ScanParent(Console& console, StopRequest& stop, int32_t channels, Watch watch)
    : console_(console), stop_(stop), watch_(std::move(watch))
{
    progress_.channels = channels;
}

void ScanParent::Begin(const std::wstring& channelLabel)
{
    progress_.channel = channelLabel;
    progress_.step = 0;
    progress_.status.clear();
    Show();
}

void ScanParent::End()
{
    ++progress_.done;
    progress_.step = 0;
    progress_.elapsedAtDone = Elapsed();
}

double ScanParent::Elapsed() const
{
    return std::chrono::duration<double>(Clock::now() - began_).count();
}

HRESULT ScanParent::Status(BSTR sText) noexcept
{
    return Do([&] {
        progress_.status = com::ViewOf(sText);
        Notice();
        Show();
    });
}

HRESULT ScanParent::Progress(double dValue, VARIANT vSteps) noexcept
{
    return Do([&] {
        progress_.step = dValue / StepsOf(vSteps);
        Notice();
        ShowNowAndThen();
    });
}

HRESULT ScanParent::CellChanged(long, short) noexcept
{
    return Do([&] {
        Notice();
        ShowNowAndThen();
    });
}

HRESULT ScanParent::ChannelStart(double, VARIANT) noexcept
{
    return Do([&] { stop_.Poll(); });
}

void ScanParent::Notice()
{
    stop_.Poll();
    watch_(progress_.step, progress_.status);
}

void ScanParent::Show()
{
    if (console_.ShowsProgress()) {
        progress_.elapsed = Elapsed();
        console_.Progress(ProgressLine(progress_, console_.ProgressWidth()));
        shown_ = Clock::now();
    }
}

void ScanParent::ShowNowAndThen()
{
    if (Clock::now() - shown_ >= shownAgainAfter) {
        Show();
    }
}

}  // namespace tvn2x
