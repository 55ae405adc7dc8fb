#include "receivers/recordings/demodulator/LockDetector.h"

namespace tvn2x::recordings {

void LockDetector::Take(bool good, bool bad)
{
    good_ = good ? good_ + 1 : 0;
    bad_ = bad ? bad_ + 1 : 0;
    locked_ = locked_ ? bad_ < badToUnlock_ : good_ >= goodToLock_;
}

}  // namespace tvn2x::recordings
