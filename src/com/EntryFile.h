#pragma once

#include <string>

namespace tvn2x::com {

/// The file that the path of a registry entry names, and to which the entry belongs.
class EntryFile
{
public:
    /// `path` as it stands in the entry: in quotes, or with the number of a type library's resource behind the file.
    explicit EntryFile(std::wstring path);

    const std::wstring& Name() const { return name_; }
    /// Nobody's entry: there is no such file. One that cannot be told (no folder given, a drive or server that does not
    /// answer, a system folder, which programs of 32 and of 64 bits see differently) counts as being there.
    bool IsGone() const;
    /// The same file, by whatever name.
    bool Is(const EntryFile& other) const;
    std::wstring Folder() const;

private:
    std::wstring name_;
};

}  // namespace tvn2x::com
