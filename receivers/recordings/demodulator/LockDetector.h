#pragma once

namespace tvn2x::recordings {

/// A lock with hysteresis: it comes after so many good blocks in a row, and goes after so many bad ones in a row.
/// Blocks between good and bad change nothing.
class LockDetector
{
public:
    LockDetector(int goodToLock, int badToUnlock) : goodToLock_(goodToLock), badToUnlock_(badToUnlock) {}

    void Take(bool good, bool bad);
    bool Locked() const { return locked_; }

private:
    int goodToLock_;
    int badToUnlock_;
    int good_ = 0;
    int bad_ = 0;
    bool locked_ = false;
};

}  // namespace tvn2x::recordings
