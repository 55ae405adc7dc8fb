#include "simulator/model/BitErrorCount.h"

#include <algorithm>
#include <cmath>

namespace tvn2x {
namespace {

constexpr uint64_t errorStream = 0x626572;

}  // namespace

BitErrorCount::Progress BitErrorCount::At(double seconds)
{
    const double bits = std::clamp((seconds - startedAt_ + buffered) * bitRate_, 0.0, wanted_ * blockBits);
    Progress progress{bits, 0, wanted_};
    const int32_t complete = progress.Blocks();
    if (complete < summedBlocks_) {
        summedBlocks_ = 0;
        summedErrors_ = 0;
    }
    for (; summedBlocks_ < complete; ++summedBlocks_) {
        summedErrors_ += ErrorsOf(summedBlocks_);
    }
    progress.errors = static_cast<double>(summedErrors_);
    if (!progress.Done()) {
        const double begun = (bits - complete * blockBits) / blockBits;
        progress.errors += std::floor(begun * static_cast<double>(ErrorsOf(complete)));
    }
    return progress;
}

uint64_t BitErrorCount::ErrorsOf(int32_t block) const
{
    return noise_.Poisson(ber_ * blockBits, errorStream, static_cast<uint64_t>(block));
}

}  // namespace tvn2x
