#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/judge/Limits.h"
#include "host/run/FinishedRun.h"

namespace tvn2x {

/// By severity: a run's verdict is the highest of its channels'.
enum class Verdict
{
    pass,
    warning,
    notMeasured,  ///< the channel was not reached, or a reading that has a limit could not be taken
    error,        ///< the instrument failed
    fail
};

constexpr size_t verdicts = 5;

const wchar_t* VerdictName(Verdict verdict);  ///< in files: "pass", "warning", "not measured", "error", "fail"

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
    std::wstring text{};  ///< "MER 30.7 dB is 0.3 dB below the limit of 31 dB"
};

struct ChannelJudgement
{
    Verdict verdict = Verdict::pass;
    std::vector<Finding> findings;  ///< by ReadingKinds
    std::wstring reason;            ///< of any verdict but pass: what is wrong, in words

    const Finding* Worst() const;  ///< by verdict, then by rank; null without findings
    const Finding* Find(int32_t parameter) const;
};

struct RunJudgement
{
    bool hasLimits = false;
    std::wstring limits;  ///< name and hash of the limits file
    std::wstring limitsSha256;
    Verdict verdict = Verdict::pass;
    std::array<int32_t, verdicts> counts{};  ///< channel results, by Verdict
    std::vector<ChannelJudgement> channels;  ///< as FinishedRun::channels
    std::optional<size_t> worst;             ///< the channel with the worst margin

    int32_t Count(Verdict which) const { return counts[static_cast<size_t>(which)]; }
    int ExitCode() const;  ///< 0 passed, with warnings or without; 1 not
};

/// Judges a run. Without limits a channel passes when it was measured with all locks.
RunJudgement Judge(const FinishedRun& run, const Limits* limits);

/// What the run comes to: "FAIL: 3 of 36 channels fail, 1 warning. Worst margin: ..."
std::wstring VerdictSentence(const FinishedRun& run, const RunJudgement& judgement);

/// The level of a channel above that of its neighbour below, in dB; nothing where it has none. As
/// FinishedRun::channels. Neighbours belong to the same pass and are not further apart than one channel is wide.
std::vector<std::optional<double>> LevelSteps(const FinishedRun& run);

/// The level of a channel in dBµV, nothing where it has none.
std::optional<double> LevelOf(const ChannelResult& channel);

/// The margin of a finding that has one, with its unit: "0.3 dB", "0.50 decades".
std::wstring MarginText(const Finding& finding);

/// A number as sentences have it: three significant digits, an exponent for the small ones only ("0.3", "105940",
/// "2E-4").
std::wstring NumberText(double number);

}  // namespace tvn2x
