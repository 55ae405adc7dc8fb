#include "editor/win32/Clipboard.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace tvn2x {
namespace {

/// The clipboard, which one program has at a time.
class OpenedClipboard
{
public:
    explicit OpenedClipboard(HWND owner)
    {
        constexpr int attempts = 10;
        constexpr DWORD pause = 50;  // milliseconds
        for (int attempt = 0; attempt < attempts && !isOpen_; ++attempt) {
            if (attempt > 0) {
                Sleep(pause);
            }
            isOpen_ = OpenClipboard(owner) != FALSE;
        }
    }
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;
    ~OpenedClipboard()
    {
        if (isOpen_) {
            CloseClipboard();
        }
    }
    bool IsOpen() const { return isOpen_; }

private:
    bool isOpen_ = false;
};

}  // namespace

std::optional<std::wstring> TextOnClipboard(HWND owner)
{
    const OpenedClipboard clipboard(owner);
    if (!clipboard.IsOpen()) {
        return std::nullopt;
    }
    const HGLOBAL memory = GetClipboardData(CF_UNICODETEXT);
    const auto* const text = memory ? static_cast<const wchar_t*>(GlobalLock(memory)) : nullptr;
    if (!text) {
        return L"";
    }
    // Who puts it there need not end it.
    const size_t room = GlobalSize(memory) / sizeof(wchar_t);
    std::optional<std::wstring> result;
    try {
        result.emplace(text, static_cast<size_t>(std::find(text, text + room, L'\0') - text));
    } catch (...) {
        GlobalUnlock(memory);
        throw;
    }
    GlobalUnlock(memory);
    return result;
}

bool PutTextOnClipboard(HWND owner, const std::wstring& text)
{
    const size_t size = (text.size() + 1) * sizeof(wchar_t);
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size);
    void* const place = memory ? GlobalLock(memory) : nullptr;
    if (!place) {
        throw std::bad_alloc();
    }
    std::memcpy(place, text.c_str(), size);
    GlobalUnlock(memory);
    const OpenedClipboard clipboard(owner);
    if (clipboard.IsOpen() && EmptyClipboard() && SetClipboardData(CF_UNICODETEXT, memory)) {
        return true;
    }
    GlobalFree(memory);
    return false;
}

}  // namespace tvn2x
