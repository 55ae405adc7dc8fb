#include "host/console/Console.h"

#include <algorithm>

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/terminal/Words.h"
#include "text/InputError.h"
#include "util/Encoding.h"

namespace tvn2x {

OutputStream::OutputStream(DWORD standardHandle) : handle_(GetStdHandle(standardHandle))
{
    DWORD mode = 0;
    isTerminal_ = GetConsoleMode(handle_, &mode) != 0;
}

DWORD OutputStream::Write(std::wstring_view text)
{
    // A console takes a limited amount at once.
    constexpr size_t mostCharacters = 8192;
    const std::string bytes = isTerminal_ ? std::string() : ToUtf8(text);
    DWORD written = 0;
    if (!isTerminal_) {
        for (std::string_view rest = bytes; !rest.empty(); rest.remove_prefix(written)) {
            if (!WriteFile(handle_, rest.data(), static_cast<DWORD>(rest.size()), &written, nullptr) || written == 0) {
                return GetLastError();
            }
        }
        return ERROR_SUCCESS;
    }
    for (; !text.empty(); text.remove_prefix(written)) {
        const auto count = static_cast<DWORD>(std::min(text.size(), mostCharacters));
        if (!WriteConsoleW(handle_, text.data(), count, &written, nullptr) || written == 0) {
            return GetLastError();
        }
    }
    return ERROR_SUCCESS;
}

int32_t OutputStream::Width() const
{
    CONSOLE_SCREEN_BUFFER_INFO info;
    if (!isTerminal_ || !GetConsoleScreenBufferInfo(handle_, &info)) {
        return 0;
    }
    return std::max(20, info.srWindow.Right - info.srWindow.Left);
}

void Console::Result(std::wstring_view text)
{
    ClearProgress();
    const DWORD fault = results_.Write(WrapWords(Printable(text), results_.Width()));
    constexpr DWORD nobodyReads[] = {ERROR_SUCCESS, ERROR_INVALID_HANDLE, ERROR_BROKEN_PIPE, ERROR_NO_DATA,
                                     ERROR_PIPE_NOT_CONNECTED};
    if (fault_ == ERROR_SUCCESS && std::ranges::find(nobodyReads, fault) == std::end(nobodyReads)) {
        fault_ = fault;
    }
}

void Console::RequireResults() const
{
    if (fault_ != ERROR_SUCCESS) {
        RaiseInput(fmt::format(L"the results cannot be written ({}). Make room, or send them to another place.",
                               fault_ == ERROR_DISK_FULL ? L"the disk is full" : fmt::format(L"error {}", fault_)));
    }
}

void Console::Notice(std::wstring_view line)
{
    ClearProgress();
    notices_.Write(WrapWords(Printable(line), notices_.Width()) + L"\n");
}

void Console::Progress(std::wstring_view line)
{
    if (!notices_.IsTerminal() || line == progress_) {
        return;
    }
    std::wstring shown = Printable(line);
    std::ranges::replace(shown, L'\n', L' ');
    const int32_t rest = std::max(0, notices_.Width() - DisplayWidth(shown));
    notices_.Write(L"\r" + shown + std::wstring(static_cast<size_t>(rest), L' '));
    progress_ = line;
}

void Console::ClearProgress()
{
    if (!progress_.empty()) {
        Progress(L"");
        notices_.Write(L"\r");
    }
}

}  // namespace tvn2x
