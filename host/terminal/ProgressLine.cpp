#include "host/terminal/ProgressLine.h"

#include <algorithm>
#include <cmath>

#include "host/terminal/Words.h"
#include "text/Duration.h"

namespace tvn2x {
namespace {

std::wstring Bar(double fraction, int32_t width)
{
    const auto full = static_cast<size_t>(std::clamp(std::floor(fraction * width), 0.0, static_cast<double>(width)));
    return std::wstring(full, L'█') + std::wstring(static_cast<size_t>(width) - full, L'░');
}

int32_t BarWidth(int32_t width)
{
    return std::clamp(width / 4, 5, 30);
}

std::wstring Cut(std::wstring line, int32_t width)
{
    while (!line.empty() && DisplayWidth(line) > width) {
        line.pop_back();
    }
    return line;
}

/// The running channel counts as half an average one at most, so that a slow one does not make the time negative.
std::wstring TimeLeft(const ScanProgress& progress)
{
    if (progress.done == 0) {
        return {};
    }
    const double perChannel = progress.elapsedAtDone / progress.done;
    const double left = perChannel * (progress.channels - progress.done) - (progress.elapsed - progress.elapsedAtDone);
    const double least = perChannel * std::max(0, progress.channels - progress.done - 1);
    return L"  " + DurationText(std::max(left, least)) + L" left";
}

}  // namespace

std::wstring ProgressLine(const ScanProgress& progress, int32_t width)
{
    const double fraction =
        progress.channels > 0 ? (progress.done + std::clamp(progress.step, 0.0, 1.0)) / progress.channels : 1;
    const int32_t running = std::min(progress.done + 1, progress.channels);
    const std::wstring count = std::to_wstring(running) + L"/" + std::to_wstring(progress.channels);
    std::wstring line =
        Bar(fraction, BarWidth(width)) + L"  " + count + L"  " + progress.channel + L"  " + progress.status;
    const std::wstring left = TimeLeft(progress);
    return Cut(std::move(line), width - DisplayWidth(left)) + (DisplayWidth(left) <= width ? left : std::wstring());
}

std::wstring StepLine(double step, double steps, const std::wstring& status, int32_t width)
{
    const double fraction = steps > 0 ? step / steps : 0;
    std::wstring line = Bar(fraction, BarWidth(width)) + L"  " + std::to_wstring(std::llround(step)) + L"/" +
                        std::to_wstring(std::llround(steps)) + L"  " + status;
    return Cut(std::move(line), width);
}

}  // namespace tvn2x
