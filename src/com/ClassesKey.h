#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tvn2x::com {

/// For whom something is registered.
enum class RegisteredFor
{
    machine,  ///< every user; takes an administrator
    user,     ///< the present user, who sees it instead of what the machine has
};

/// The classes of the machine or of the user in the registry, with keys named from there on. One program at a time:
/// while it lives, another one that makes a ClassesKey waits. Failures throw.
///
/// Unless Keep is called, what was written is taken back at the end: what had been there before is there again, and
/// nothing else. What was removed stays removed.
class ClassesKey
{
public:
    explicit ClassesKey(RegisteredFor whom);
    ClassesKey(const ClassesKey&) = delete;
    ClassesKey& operator=(const ClassesKey&) = delete;
    ~ClassesKey();

    /// The text of a value, of the key's own one where `name` is null; none where there is no such key or no text in
    /// it.
    std::optional<std::wstring> Read(const std::wstring& key, const wchar_t* name = nullptr) const;
    /// The same as programs of the other word length see it.
    std::optional<std::wstring> ReadOtherView(const std::wstring& key) const;
    /// The same of the machine's classes, whosesoever these are.
    std::optional<std::wstring> ReadMachine(const std::wstring& key) const;
    /// The names of a key's values, its own one left out.
    std::vector<std::wstring> ValueNames(const std::wstring& key) const;
    bool HasSubkeys(const std::wstring& key) const;

    void Write(const std::wstring& key, const wchar_t* name, const std::wstring& value);
    void RemoveValue(const std::wstring& key, const std::wstring& name);
    void RemoveTree(const std::wstring& key);
    void Keep() { undo_.clear(); }

private:
    void RememberMissing(const std::wstring& key);
    void RememberValue(const std::wstring& key, const std::wstring& name);

    HKEY hive_;
    HANDLE turn_ = nullptr;  ///< a mutex, held; null where it could not be had
    HKEY root_ = nullptr;
    std::vector<std::function<void()>> undo_;
};

}  // namespace tvn2x::com
