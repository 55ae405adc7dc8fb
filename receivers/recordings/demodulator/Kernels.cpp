#include "receivers/recordings/demodulator/Kernels.h"

namespace tvn2x::recordings {

bool HasWideKernels()
{
    return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
}

const Kernels& ChosenKernels()
{
    static const bool wide = HasWideKernels();
    return wide ? wideKernels : baselineKernels;
}

}  // namespace tvn2x::recordings
