#include "plugin/ChosenDriver.h"

#include <map>
#include <mutex>

#include "driver/DriverSetting.h"

namespace tvn2x {
namespace {

// No thread_local: its destructors would be left behind in threads that outlive the library.
std::mutex guard;
std::map<DWORD, std::weak_ptr<DriverInstead>> choices;

std::shared_ptr<DriverInstead> ChoiceOfThread()
{
    const std::lock_guard lock(guard);
    const auto found = choices.find(GetCurrentThreadId());
    return found == choices.end() ? nullptr : found->second.lock();
}

void RememberChoice(const std::shared_ptr<DriverInstead>& choice)
{
    const std::lock_guard lock(guard);
    std::erase_if(choices, [](const auto& entry) { return entry.second.expired(); });
    choices[GetCurrentThreadId()] = choice;
}

}  // namespace

ChosenDriver::ChosenDriver() noexcept
{
    try {
        if (SettingOfThisProgram(receiverKey)) {
            Require();
        }
    } catch (...) {
        instead_ = nullptr;  // Require raises it where a receiver is needed
    }
}

void ChosenDriver::Require()
{
    if (!instead_) {
        instead_ = ChoiceOfThread();
    }
    if (instead_ || DriverInstead::IsChosen()) {
        return;
    }
    const auto setting = SettingOfThisProgram(receiverKey);
    if (!setting) {
        return RequireOneFile(RegisteredDriver());
    }
    instead_ = std::make_shared<DriverInstead>(FindDriver(setting->words, setting->place));
    RememberChoice(instead_);
}

}  // namespace tvn2x
