#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

namespace tvn2x {

class clsErrorReport;
class clsRunControl;

/// What the library keeps for one thread of its host: run control and error reporting are one object a thread, shared
/// by everybody on it, and what they know outlives them.
struct ThreadState
{
    std::atomic<bool> stop{false};
    std::atomic<double> timeScale{1};  ///< of the receiver that the thread used last

    int32_t errorNumber = 0;
    std::wstring errorSource;
    std::wstring errorDescription;
    int32_t errorCount = 0;

    std::mutex runControlGuard;
    clsRunControl* runControl = nullptr;  ///< while it lives; its last reference may go on any thread
    clsErrorReport* errorReport = nullptr;
};

/// The calling thread's state.
std::shared_ptr<ThreadState> StateOfThread();

/// The calling thread ends.
void ForgetThread() noexcept;

}  // namespace tvn2x
