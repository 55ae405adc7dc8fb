#include "receivers/recordings/demodulator/KernelLoops.h"

namespace tvn2x::recordings {

const Kernels baselineKernels{"SSE2", Mix, Interpolate, Products, Adapt};

}  // namespace tvn2x::recordings
