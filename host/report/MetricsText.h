#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "host/judge/Judgement.h"
#include "host/run/FinishedRun.h"

namespace tvn2x {

/// The two forms in which monitoring systems read metrics.
enum class MetricsFormat
{
    openMetrics,  ///< 1.0: with units, state sets, information and an end; for who asks for it
    prometheus    ///< 0.0.4: what promtool and a node exporter's text-file collector read
};

/// The content type that goes with a form.
const char* ContentTypeOf(MetricsFormat format);

/// How often a channel was measured in a run.
struct ChannelCounts
{
    int64_t measurements = 0;
    int64_t errors = 0;  ///< of them, those that the instrument failed at
};

/// The latest pass of which each channel was measured.
struct WholePass
{
    double seconds = 0;  ///< that it took of measuring
    std::wstring ended;  ///< UTC
};

/// What a monitoring system is told of a run.
struct RunMetrics
{
    const FinishedRun& run;                     ///< of each channel at least its latest measurement
    const RunJudgement& judgement;              ///< of this very run
    std::map<int32_t, ChannelCounts> counts{};  ///< by the number of the channel
    int32_t pass = 0;                           ///< the present one, 0 before the first
    std::optional<WholePass> lastPass{};
    std::optional<bool> answers{};  ///< the receiver does, as of now; nothing where nobody asks it any more
};

/// What a run tells by itself, with all of its measurements.
RunMetrics MetricsOf(const FinishedRun& run, const RunJudgement& judgement);

/// The metrics of a run as UTF-8: of each channel that was to be measured its latest result. What was not measured is
/// absent and never zero. A reading that is only a bound has the bound as its value, and is named beside it.
///
/// Levels are in dBµV whatever unit the setup has; the other units are those of the readings, but for per cents, which
/// are ratios. docs/monitoring.md has all names.
std::string MetricsText(const RunMetrics& metrics, MetricsFormat format);

}  // namespace tvn2x
