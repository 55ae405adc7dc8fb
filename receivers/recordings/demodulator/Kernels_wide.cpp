#include "receivers/recordings/demodulator/KernelLoops.h"

namespace tvn2x::recordings {

const Kernels wideKernels{"AVX2 and FMA", Mix, Interpolate, Products, Adapt};

}  // namespace tvn2x::recordings
