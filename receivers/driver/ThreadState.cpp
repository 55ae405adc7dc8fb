#include "receivers/driver/ThreadState.h"

#include <windows.h>

#include <map>
#include <mutex>

namespace tvn2x {
namespace {

// No thread_local: its destructors would be left behind in threads that outlive the library.
std::mutex guard;
std::map<DWORD, std::shared_ptr<ThreadState>> states;

}  // namespace

std::shared_ptr<ThreadState> StateOfThread()
{
    const std::lock_guard lock(guard);
    std::shared_ptr<ThreadState>& state = states[GetCurrentThreadId()];
    if (!state) {
        state = std::make_shared<ThreadState>();
    }
    return state;
}

void ForgetThread() noexcept
{
    const std::lock_guard lock(guard);
    states.erase(GetCurrentThreadId());
}

}  // namespace tvn2x
