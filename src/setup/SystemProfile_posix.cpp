#include <unistd.h>

#include <array>
#include <cstdlib>

#include "setup/ProfileStore.h"
#include "setup/SystemProfile.h"
#include "util/Encoding.h"
#include "util/FileText.h"

namespace tvn2x {
namespace {

ProfileStore OpenWinIni(FileSystem& files)
{
    ProfileStore store(files);
    store.Bind(WindowsFolder() + L"/WIN.INI");
    return store;
}

std::string Text(const std::string& bytes)
{
    return file_text::FromBytes(bytes, SystemCodePage());
}

std::string Bytes(std::string_view text)
{
    return file_text::ToBytes(std::string(text), SystemCodePage());
}

}  // namespace

std::wstring WindowsFolder()
{
    if (const char* const settings = std::getenv("XDG_CONFIG_HOME"); settings != nullptr && *settings == '/') {
        return FromUtf8(settings);
    }
    if (const char* const home = std::getenv("HOME"); home != nullptr && *home == '/') {
        return FromUtf8(home) + L"/.config";
    }
    return L"/etc";
}

std::wstring RunningModule()
{
    std::array<char, 4096> path;
    const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
    return length > 0 ? FromUtf8(std::string_view(path.data(), static_cast<size_t>(length))) : std::wstring();
}

std::string WinIniString(FileSystem& files, const std::string& section, const std::string& key,
                         const std::string& defaultValue)
{
    ProfileStore store = OpenWinIni(files);
    return Bytes(store.Profile().GetString(Text(section), Text(key), Text(defaultValue)));
}

uint32_t WinIniInt(FileSystem& files, const std::string& section, const std::string& key, int32_t defaultValue)
{
    return OpenWinIni(files).Profile().GetInt(Text(section), Text(key), static_cast<uint32_t>(defaultValue));
}

std::string WinIniSection(FileSystem& files, const std::string& section)
{
    std::string lines;
    ProfileStore store = OpenWinIni(files);
    for (const std::string& line : store.Profile().GetSection(Text(section))) {
        lines.append(Bytes(line)).push_back('\0');
    }
    return lines;
}

bool WriteWinIni(FileSystem& files, const std::string& section, const std::optional<std::string>& key,
                 const std::optional<std::string>& value)
{
    ProfileStore store = OpenWinIni(files);
    if (!key) {
        return store.DeleteSection(Text(section));
    }
    return value ? store.Write(Text(section), Text(*key), Text(*value))
                 : store.Write(Text(section), Text(*key), std::nullopt);
}

}  // namespace tvn2x
