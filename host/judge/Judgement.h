#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "host/judge/Limits.h"
#include "host/run/FinishedRun.h"

namespace tvn2x {

/// By severity: a run's verdict is the highest of its channels', and never good where something was not seen.
enum class Verdict
{
    pass,
    warning,
    notMeasured,  ///< the channel was not reached, or a reading that has a limit could not be taken, or no limit
                  ///< applied
    error,        ///< the instrument failed
    fail
};

constexpr size_t verdicts = 5;

/// One reading held against its limit.
struct Finding
{
    int32_t parameter = 0;
    Verdict verdict = Verdict::pass;
    /// How far the value is on the good side of the nearest failure bound (or of the nearest warning bound where there
    /// is no other), negative beyond it. In the limit's unit, for ratios in decades. Nothing where the value is no
    /// number.
    std::optional<double> margin{};
    /// The margin in steps that make parameters comparable: about the width of the band between warning and failure.
    double rank = 0;
    std::wstring text{};       ///< "MER 30.7 dB is 0.3 dB below the limit of 31 dB"
    std::wstring unapplied{};  ///< why the limit could not be applied, "" where it was
};

/// The verdict on a channel of a run, with its reasons.
struct ChannelJudgement
{
    Verdict verdict = Verdict::pass;
    std::vector<Finding> findings;  ///< by ReadingKinds
    std::wstring reason;            ///< of any verdict but pass: what is wrong, in words

    const Finding* Worst() const;  ///< by verdict, then by rank; null without findings
    const Finding* Find(int32_t parameter) const;
    /// By verdict, then by how far the worst readings are beyond their limits.
    bool IsWorseThan(const ChannelJudgement& other) const;
};

/// A limit that was asked for and that nothing could be held against.
struct UnappliedLimit
{
    int32_t parameter = 0;
    std::wstring reason;  ///< "not measured", "no section for 64-QAM"
    int64_t channels = 0;

    bool operator==(const UnappliedLimit&) const = default;
};

/// The verdict on a whole run.
struct RunJudgement
{
    bool hasLimits = false;
    std::wstring limits;  ///< name and hash of the limits file
    std::wstring limitsSha256;
    Verdict verdict = Verdict::pass;
    bool isComplete = false;                 ///< all was measured that was to be
    int64_t planned = 0;                     ///< measurements that were to be made
    std::array<int64_t, verdicts> counts{};  ///< of them, by Verdict; what was never begun is not measured
    std::set<int32_t> unjudged;              ///< orders of QAM of which no reading was held against a limit
    std::vector<UnappliedLimit> unapplied;
    std::vector<ChannelJudgement> channels;  ///< as FinishedRun::channels
    std::optional<size_t> worst;             ///< the channel that tells why the run's verdict is what it is

    int64_t Count(Verdict which) const { return counts[static_cast<size_t>(which)]; }
    bool IsJudged() const { return unjudged.empty(); }
    int ExitCode() const;  ///< 0 passed, with warnings or without; 1 not
};

/// Judges a run. Without limits a channel passes when it was measured with all locks.
RunJudgement Judge(const FinishedRun& run, const Limits* limits);

/// The level of a channel above that of its neighbour below, in dB; nothing where it has none. As
/// FinishedRun::channels. Neighbours belong to the same pass and are not further apart than one channel is wide.
std::vector<std::optional<double>> LevelSteps(const FinishedRun& run);

/// The level of a channel in dBµV, nothing where it has none.
std::optional<double> LevelOf(const ChannelResult& channel);

}  // namespace tvn2x
