#include "com/ClassesKey.h"

#include <utility>

#include "com/Errors.h"
#include "com/OpenKey.h"

namespace tvn2x::com {
namespace {

constexpr wchar_t classes[] = L"Software\\Classes";
constexpr REGSAM otherView = sizeof(void*) == 8 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
constexpr DWORD longestWait = 10'000;  // milliseconds; a registration takes a few

bool IsMissing(LSTATUS status)
{
    return status == ERROR_FILE_NOT_FOUND || status == ERROR_PATH_NOT_FOUND;
}

void CheckStatus(LSTATUS status)
{
    if (status != ERROR_SUCCESS) {
        ThrowFailure(HRESULT_FROM_WIN32(static_cast<DWORD>(status)), nullptr, IID_NULL);
    }
}

/// An open key; none where there is no such key, which is all that may be wrong.
class Key final : public OpenKey
{
public:
    Key(HKEY root, const std::wstring& name, REGSAM access) : OpenKey(root, name, access)
    {
        if (!IsMissing(Status())) {
            CheckStatus(Status());
        }
    }
};

std::optional<std::wstring> TextIn(HKEY key, const wchar_t* name)
{
    std::wstring text(260, L'\0');
    for (;;) {
        auto size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
        const LSTATUS status = RegGetValueW(key, nullptr, name, RRF_RT_REG_SZ, nullptr, text.data(), &size);
        if (IsMissing(status) || status == ERROR_UNSUPPORTED_TYPE) {
            return std::nullopt;
        }
        if (status != ERROR_MORE_DATA) {
            CheckStatus(status);
            text.resize(wcslen(text.c_str()));
            return text;
        }
        text.resize(text.size() * 2);
    }
}

/// A value of the registry as it is stored.
struct RawValue
{
    DWORD type = REG_NONE;
    std::vector<BYTE> bytes;
};

std::optional<RawValue> RawValueIn(HKEY key, const std::wstring& name)
{
    RawValue value;
    DWORD size = 0;
    LSTATUS status = RegQueryValueExW(key, name.c_str(), nullptr, nullptr, nullptr, &size);
    while (status == ERROR_SUCCESS || status == ERROR_MORE_DATA) {
        value.bytes.resize(size);
        status = RegQueryValueExW(key, name.c_str(), nullptr, &value.type, value.bytes.data(), &size);
        if (status == ERROR_SUCCESS) {
            value.bytes.resize(size);
            return value;
        }
    }
    if (!IsMissing(status)) {
        CheckStatus(status);
    }
    return std::nullopt;
}

}  // namespace

ClassesKey::ClassesKey(RegisteredFor whom)
    : hive_(whom == RegisteredFor::machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER)
{
    CheckStatus(RegCreateKeyExW(hive_, classes, 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr, &root_, nullptr));
    turn_ = CreateMutexW(nullptr, FALSE, L"Global\\TVN2x registration");
    // Whoever holds it that long hangs, and whoever has died with it has left nothing behind that could not be read.
    if (turn_ && WaitForSingleObject(turn_, longestWait) == WAIT_TIMEOUT) {
        CloseHandle(std::exchange(turn_, nullptr));
    }
}

ClassesKey::~ClassesKey()
{
    for (; !undo_.empty(); undo_.pop_back()) {
        undo_.back()();
    }
    RegCloseKey(root_);
    if (turn_) {
        ReleaseMutex(turn_);
        CloseHandle(turn_);
    }
}

std::optional<std::wstring> ClassesKey::Read(const std::wstring& key, const wchar_t* name) const
{
    const Key open(root_, key, KEY_READ);
    return open ? TextIn(open, name) : std::nullopt;
}

std::optional<std::wstring> ClassesKey::ReadOtherView(const std::wstring& key) const
{
    const Key open(hive_, std::wstring(classes) + L'\\' + key, KEY_READ | otherView);
    return open ? TextIn(open, nullptr) : std::nullopt;
}

std::optional<std::wstring> ClassesKey::ReadMachine(const std::wstring& key) const
{
    const Key open(HKEY_LOCAL_MACHINE, std::wstring(classes) + L'\\' + key, KEY_READ);
    return open ? TextIn(open, nullptr) : std::nullopt;
}

std::vector<std::wstring> ClassesKey::ValueNames(const std::wstring& key) const
{
    constexpr DWORD longestName = 16'384;  // of any value in the registry, its end included
    std::vector<std::wstring> names;
    const Key open(root_, key, KEY_READ);
    std::wstring name(longestName, L'\0');
    for (DWORD i = 0; open; ++i) {
        DWORD length = longestName;
        const LSTATUS status = RegEnumValueW(open, i, name.data(), &length, nullptr, nullptr, nullptr, nullptr);
        if (status == ERROR_NO_MORE_ITEMS) {
            break;
        }
        CheckStatus(status);
        if (length > 0) {
            names.emplace_back(name, 0, length);
        }
    }
    return names;
}

bool ClassesKey::HasSubkeys(const std::wstring& key) const
{
    const Key open(root_, key, KEY_READ);
    if (!open) {
        return false;
    }
    DWORD count = 0;
    CheckStatus(RegQueryInfoKeyW(open, nullptr, nullptr, nullptr, &count, nullptr, nullptr, nullptr, nullptr, nullptr,
                                 nullptr, nullptr));
    return count > 0;
}

void ClassesKey::Write(const std::wstring& key, const wchar_t* name, const std::wstring& value)
{
    RememberMissing(key);
    HKEY handle;
    CheckStatus(RegCreateKeyExW(root_, key.c_str(), 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr, &handle, nullptr));
    RegCloseKey(handle);
    RememberValue(key, name ? name : L"");
    const Key open(root_, key, KEY_WRITE);
    CheckStatus(RegSetValueExW(open, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                               static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t))));
}

void ClassesKey::RemoveValue(const std::wstring& key, const std::wstring& name)
{
    RememberValue(key, name);
    const Key open(root_, key, KEY_WRITE);
    const LSTATUS status = open ? RegDeleteValueW(open, name.c_str()) : ERROR_SUCCESS;
    if (!IsMissing(status)) {
        CheckStatus(status);
    }
}

void ClassesKey::RemoveTree(const std::wstring& key)
{
    const LSTATUS status = RegDeleteTreeW(root_, key.c_str());
    if (!IsMissing(status)) {
        CheckStatus(status);
    }
}

/// Writing a value makes all keys on the way to it; taking it back removes those that were not there.
void ClassesKey::RememberMissing(const std::wstring& key)
{
    for (size_t end = key.find(L'\\');; end = key.find(L'\\', end + 1)) {
        const std::wstring part = key.substr(0, end);
        if (!Key(root_, part, KEY_READ)) {
            undo_.emplace_back([root = root_, part] { RegDeleteTreeW(root, part.c_str()); });
            return;
        }
        if (end == std::wstring::npos) {
            return;
        }
    }
}

void ClassesKey::RememberValue(const std::wstring& key, const std::wstring& name)
{
    const Key open(root_, key, KEY_READ);
    if (!open) {
        return;
    }
    undo_.emplace_back([root = root_, key, name, before = RawValueIn(open, name)] {
        HKEY handle;
        if (RegOpenKeyExW(root, key.c_str(), 0, KEY_WRITE, &handle) != ERROR_SUCCESS) {
            return;
        }
        if (before) {
            RegSetValueExW(handle, name.c_str(), 0, before->type, before->bytes.data(),
                           static_cast<DWORD>(before->bytes.size()));
        } else {
            RegDeleteValueW(handle, name.c_str());
        }
        RegCloseKey(handle);
    });
}

}  // namespace tvn2x::com
