#include "setup/PathParts.h"

namespace tvn2x {
namespace {

constexpr std::wstring_view separators = L"\\/";

bool HasDrive(std::wstring_view path)
{
    return path.size() >= 2 && path[1] == L':';
}

}  // namespace

std::wstring_view NamePart(std::wstring_view path)
{
    const size_t separator = path.find_last_of(separators);
    if (separator != std::wstring_view::npos) {
        return path.substr(separator + 1);
    }
    return HasDrive(path) ? path.substr(2) : path;
}

std::wstring_view TitlePart(std::wstring_view path)
{
    const std::wstring_view name = NamePart(path);
    return name.substr(0, name.find(L'.'));
}

std::wstring_view ExtensionPart(std::wstring_view path)
{
    const std::wstring_view name = NamePart(path);
    const size_t dot = name.find(L'.');
    return dot == std::wstring_view::npos ? std::wstring_view() : name.substr(dot + 1);
}

std::wstring_view FolderPart(std::wstring_view path)
{
    const size_t separator = path.find_last_of(separators);
    if (separator == std::wstring_view::npos) {
        return {};
    }
    const bool root = separator == 0 || (separator == 2 && HasDrive(path));
    return path.substr(0, root ? separator + 1 : separator);
}

std::wstring JoinPath(std::wstring_view folder, std::wstring_view name)
{
    std::wstring path(folder);
    if (!path.empty() && separators.find(path.back()) == std::wstring_view::npos) {
        path += path.find(L'\\') == std::wstring::npos && path.find(L'/') != std::wstring::npos ? L'/' : L'\\';
    }
    return path.append(name);
}

}  // namespace tvn2x
