#pragma once

#include <string>

#include "host/judge/Judgement.h"

namespace tvn2x {

const wchar_t* VerdictName(Verdict verdict);  ///< in files: "pass", "warning", "not measured", "error", "fail"

/// What the run comes to: "FAIL: 33 of 36 channels pass, 3 fail. Worst: ... 1 limit not applied: ..."
std::wstring VerdictSentence(const FinishedRun& run, const RunJudgement& judgement);

/// What the worst channel has, without its name: the missed limit, the lost lock. "" without one.
std::wstring WorstText(const FinishedRun& run, const RunJudgement& judgement);

/// "MER: no section for 64-QAM (36 channels)"
std::wstring UnappliedText(const UnappliedLimit& limit);

/// The margin of a finding that has one, with its unit: "0.3 dB", "0.50 decades".
std::wstring MarginText(const Finding& finding);

/// A reading as its cell has it, with its unit where it has a number: "31.3 dB", "<1.7E-8", "UNDER".
std::wstring ReadingText(const Reading& reading);

/// A number with its unit: "31 dB", "1.2°", "2E-4".
std::wstring WithUnit(const std::wstring& number, std::wstring_view unit);

}  // namespace tvn2x
