// A process that writes a file beside others. With a number it writes so many keys, each again until it is accepted;
// with "hold" it takes the file for itself, says so by an event and waits to be killed.
//
//   profile_writer FILE LETTER COUNT        profile_writer FILE hold EVENT

#include <windows.h>

#include <string>

#include "setup/ProfileStore.h"

namespace {

using namespace tvn2x;

int Hold(const std::wstring& path, const wchar_t* event)
{
    std::unique_ptr<FileLock> lock;
    const HANDLE ready = OpenEventW(EVENT_MODIFY_STATE, FALSE, event);
    if (SystemFiles().Exclude(path, lock) != FileFault::none || !lock || !SetEvent(ready)) {
        return 1;
    }
    WaitForSingleObject(GetCurrentProcess(), INFINITE);  // whoever holds a file cannot be asked to let go
    return 0;
}

int WriteKeys(const std::wstring& path, char letter, int count)
{
    constexpr int mostRefusals = 100;
    ProfileStore store(SystemFiles());
    store.Bind(path);
    int refusals = 0;
    for (int i = 1; i <= count; ++i) {
        while (!store.Write("s", letter + std::to_string(i), std::to_string(i))) {
            if (++refusals == mostRefusals) {
                return 1;
            }
        }
    }
    return 0;
}

}  // namespace

int wmain(int argc, wchar_t** argv)
{
    if (argc != 4) {
        return 2;
    }
    const bool holds = std::wstring(argv[2]) == L"hold";
    return holds ? Hold(argv[1], argv[3]) : WriteKeys(argv[1], static_cast<char>(argv[2][0]), std::stoi(argv[3]));
}
