#pragma once

#include <complex>
#include <memory>
#include <optional>
#include <vector>

#include "receivers/recordings/demodulator/SampleSource.h"
#include "receivers/recordings/demodulator/SignalParameters.h"
#include "receivers/recordings/source/FirFilter.h"

namespace tvn2x::recordings {

/// Hz that a signal occupies.
double OccupiedWidth(const SignalParameters& signal);

/// One channel out of a wider recording: shifted to the middle, what would fold into it filtered away, every n-th
/// sample kept. A carrier may be 300 kHz off. The neighbours' nearest parts, which begin 64 kHz beside a channel of
/// 8 MHz, pass: the demodulator's matched filter keeps them out, and what is 60 dB down here cannot reach it any more.
class Channelizer final : public SampleSource
{
public:
    /// `shift` is where the channel stands in the source, Hz from its middle.
    Channelizer(std::unique_ptr<SampleSource> source, double shift, const SignalParameters& signal);

    double Rate() const override { return source_->Rate() / static_cast<double>(decimation_); }
    size_t Read(std::span<std::complex<float>> into) override;

private:
    void Shift();

    std::unique_ptr<SampleSource> source_;
    size_t decimation_;
    std::optional<FirFilter> filter_;            ///< nothing where nothing can fold
    double step_;                                ///< turns of the shift from one sample to the next
    double turn_ = 0;                            ///< of the next block's first sample
    std::vector<std::complex<float>> rotation_;  ///< of the samples of a block, against its first
    std::vector<std::complex<float>> block_;
    std::vector<std::complex<float>> ready_;
    size_t taken_ = 0;  ///< of what is ready
};

}  // namespace tvn2x::recordings
