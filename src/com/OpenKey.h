#pragma once

#include <windows.h>

#include <string>

namespace tvn2x::com {

/// A key of the registry, closed at the end; null where it could not be opened.
class OpenKey
{
public:
    OpenKey(HKEY root, const std::wstring& name, REGSAM access)
        : status_(RegOpenKeyExW(root, name.c_str(), 0, access, &handle_))
    {
    }
    OpenKey(const OpenKey&) = delete;
    OpenKey& operator=(const OpenKey&) = delete;
    ~OpenKey()
    {
        if (handle_) {
            RegCloseKey(handle_);
        }
    }
    operator HKEY() const { return handle_; }

protected:
    LSTATUS Status() const { return status_; }

private:
    HKEY handle_ = nullptr;
    LSTATUS status_;
};

}  // namespace tvn2x::com
