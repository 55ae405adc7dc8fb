#include <windows.h>

#include <string>

#include "util/Encoding.h"
#include "util/FloatingPoint.h"
#include "util/MessageBox.h"

namespace tvn2x {
namespace {

/// Whether the process is a program with windows rather than one of the console.
bool IsWindowsProgram()
{
    const auto* const image = reinterpret_cast<const unsigned char*>(GetModuleHandleW(nullptr));
    const auto* const start = reinterpret_cast<const IMAGE_DOS_HEADER*>(image);
    const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(image + start->e_lfanew);
    return headers->OptionalHeader.Subsystem == IMAGE_SUBSYSTEM_WINDOWS_GUI;
}

/// Whether the process has a screen that a user may be looking at; a service has none.
bool HasVisibleStation()
{
    USEROBJECTFLAGS flags{};
    return !GetUserObjectInformationW(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags, nullptr) ||
           (flags.dwFlags & WSF_VISIBLE) != 0;
}

/// Whether there is somebody to close a box. A script at the console, or one that a scheduler runs, would wait for
/// ever.
bool SomebodyCanAnswer()
{
    return HasVisibleStation() && (IsWindowsProgram() || GetActiveWindow() != nullptr);
}

void WriteError(const std::wstring& line)
{
    const HANDLE stream = GetStdHandle(STD_ERROR_HANDLE);
    DWORD mode = 0;
    DWORD written = 0;
    if (GetConsoleMode(stream, &mode)) {
        WriteConsoleW(stream, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
    } else {
        const std::string bytes = ToUtf8(line);
        WriteFile(stream, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    }
}

/// Messages in boxes that hold the program up.
class ModalMessages : public MessageBoxes
{
public:
    void Show(std::wstring_view text, std::wstring_view title, MessageIcon icon) override
    {
        const OwnFloatingPointAfterwards after;  // the box serves the host's windows too
        const UINT symbol = icon == MessageIcon::warning ? MB_ICONWARNING : MB_ICONINFORMATION;
        const bool shown =
            SomebodyCanAnswer() && MessageBoxW(GetActiveWindow(), std::wstring(text).c_str(),
                                               std::wstring(title).c_str(), MB_OK | MB_TASKMODAL | symbol) != 0;
        if (!shown) {
            WriteError(MessageLine(text, title, icon));
        }
    }
};

}  // namespace

MessageBoxes& SystemMessageBoxes()
{
    static ModalMessages messages;
    return messages;
}

}  // namespace tvn2x
