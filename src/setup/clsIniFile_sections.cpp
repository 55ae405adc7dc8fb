#include <algorithm>
#include <cwctype>

#include "setup/SystemProfile.h"
#include "setup/clsIniFile.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

/// Adds an item to a list whose items end with a NUL: up to a NUL of its own, and none that has nothing before it,
/// which would end the list.
void AppendListed(std::wstring& list, const std::wstring& item)
{
    const size_t length = std::min(item.find(L'\0'), item.size());
    if (length != 0) {
        list.append(item, 0, length).push_back(L'\0');
    }
}

}  // namespace

std::wstring clsIniFile::GetSectEntries()
{
    if (!Registered()) {
        return {};
    }
    if (useWinIni_) {
        const std::string section = ToCodePage(sectionName_);
        return FromCodePage(section) == sectionName_ ? FromCodePage(WinIniSection(files_, section)) : std::wstring();
    }
    const ProfileFile& profile = store_.Profile();
    std::wstring entries;
    for (const std::string& line : profile.GetSection(section_)) {
        AppendListed(entries, profile.Decode(line));
    }
    return entries;
}

void clsIniFile::GetSectEntriesEx(std::vector<std::array<std::wstring, 2>>& entries)
{
    entries.clear();
    const std::wstring lines = GetSectEntries();
    for (size_t start = 0; start < lines.size();) {
        const size_t stop = lines.find(L'\0', start);
        const std::wstring line = lines.substr(start, stop - start);
        const size_t equals = line.find(L'=');
        entries.push_back({line.substr(0, equals), equals == std::wstring::npos ? L"" : line.substr(equals + 1)});
        start = stop == std::wstring::npos ? lines.size() : stop + 1;
    }
}

std::wstring clsIniFile::GetSections()
{
    std::vector<std::wstring> names;
    GetSectionsEx(names);
    std::wstring list;
    for (const std::wstring& name : names) {
        AppendListed(list, name);
    }
    list.push_back(L'\0');
    return list;
}

void clsIniFile::GetSectionsEx(std::vector<std::wstring>& names)
{
    names.clear();
    ProfileStore winIni(files_, codePage_);
    if (useWinIni_) {
        winIni.Bind(fullPath_);
    }
    const ProfileFile& profile = useWinIni_ ? winIni.Profile() : store_.Profile();
    for (const std::string& name : profile.GetBracketedLines()) {
        names.push_back(profile.Decode(name));
    }
}

bool clsIniFile::SectExist(const std::wstring& name)
{
    const auto same = [](wchar_t left, wchar_t right) {
        return std::towupper(static_cast<wint_t>(left)) == std::towupper(static_cast<wint_t>(right));
    };
    std::vector<std::wstring> names;
    GetSectionsEx(names);
    return std::any_of(names.begin(), names.end(), [&](const std::wstring& found) {
        return std::equal(found.begin(), found.end(), name.begin(), name.end(), same);
    });
}

int16_t clsIniFile::IniRead(const std::wstring& section, const std::wstring& key, int16_t defaultNumber,
                            const std::wstring& defaultText, std::wstring& text, bool readNumber,
                            const std::wstring& path)
{
    clsIniFile other(files_, messages_, codePage_);
    other.FullPath(path);
    other.SectionName(section);
    if (!readNumber) {
        text = other.GetString(key, defaultText);
        return 0;
    }
    const int16_t number = other.GetInt(key, defaultNumber);
    text = std::to_wstring(number);
    return number;
}

int16_t clsIniFile::IniWrite(const std::wstring& section, const std::wstring& key, const std::wstring& value,
                             const std::wstring& path)
{
    clsIniFile other(files_, messages_, codePage_);
    other.FullPath(path);
    other.SectionName(section);
    return other.PutString(key, value);
}

}  // namespace tvn2x
