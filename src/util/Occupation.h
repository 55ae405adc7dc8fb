#pragma once

#include "util/RaisedError.h"

namespace tvn2x {

/// Holds an object for one operation. What it calls meanwhile, the host's parent or the user's dialog, must not start
/// another one on the same object, on which it would find things half done.
class Occupation
{
public:
    /// What an object keeps to be held: why it refuses, null while nothing runs.
    using Mark = const wchar_t*;

    /// Raises 5, in the words of whoever holds the object, where somebody does.
    Occupation(Mark& mark, const wchar_t* what, const wchar_t* source) : mark_(mark)
    {
        constexpr int32_t alreadyRunning = 5;
        if (mark_) {
            throw RaisedError(alreadyRunning, source, mark_);
        }
        mark_ = what;
    }
    Occupation(const Occupation&) = delete;
    Occupation& operator=(const Occupation&) = delete;
    ~Occupation() { mark_ = nullptr; }

private:
    Mark& mark_;
};

}  // namespace tvn2x
