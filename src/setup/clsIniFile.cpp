#include "setup/clsIniFile.h"

#include <algorithm>
#include <cwctype>
#include <utility>

#include "setup/PathParts.h"
#include "setup/SystemProfile.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

bool IsBlankText(std::wstring_view text)
{
    return text.find_first_not_of(L' ') == std::wstring_view::npos;
}

std::wstring UpperCase(std::wstring text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](wchar_t c) { return static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c))); });
    return text;
}

/// The first letter of each word in upper case, the rest in lower case.
std::wstring ProperCase(std::wstring text)
{
    bool first = true;
    for (wchar_t& c : text) {
        c = static_cast<wchar_t>(first ? std::towupper(static_cast<wint_t>(c)) : std::towlower(static_cast<wint_t>(c)));
        first = c == L' ';
    }
    return text;
}

std::wstring_view TrimText(std::wstring_view text)
{
    const size_t first = text.find_first_not_of(L' ');
    return first == std::wstring_view::npos ? std::wstring_view()
                                            : text.substr(first, text.find_last_not_of(L' ') + 1 - first);
}

/// What a path that begins with one separator stands on: the drive or the share of the current folder.
std::wstring_view CurrentRoot(std::wstring_view current)
{
    constexpr std::wstring_view separators = L"\\/";
    if (current.size() >= 2 && current[1] == L':') {
        return current.substr(0, 2);
    }
    if (current.size() < 2 || !IsSeparator(current[0]) || !IsSeparator(current[1])) {
        return {};
    }
    const size_t host = std::min(current.find_first_of(separators, 2), current.size() - 1);
    return current.substr(0, current.find_first_of(separators, host + 1));
}

/// A text for WIN.INI, nothing where the code page lacks one of its characters.
std::optional<std::string> CodePageText(std::wstring_view text)
{
    text = text.substr(0, text.find(L'\0'));
    std::string bytes = ToCodePage(text);
    return FromCodePage(bytes) == text ? std::optional(std::move(bytes)) : std::nullopt;
}

}  // namespace

clsIniFile::clsIniFile(FileSystem& files, MessageBoxes& messages, const CodePage& codePage)
    : files_(files), messages_(messages), codePage_(codePage), store_(files, codePage)
{
    const std::wstring module = RunningModule();
    SectionName(L"General");
    FullPath(JoinPath(FolderPart(module), ProperCase(std::wstring(TitlePart(module))) + L".ini"));
}

void clsIniFile::UseWinINI(bool use)
{
    if (use == useWinIni_) {
        return;
    }
    if (use) {
        TakePath(JoinPath(WindowsFolder(), L"WIN.INI"));
        useWinIni_ = true;
    } else {
        FullPath(std::wstring(privatePath_));
    }
}

void clsIniFile::FullPath(const std::wstring& path)
{
    privatePath_ = path;
    TakePath(privatePath_);
    store_.Bind(FileOf(privatePath_));
    useWinIni_ = false;
}

/// The file that a path names: a bare name means the system's folder, as with the system's own functions. Any other
/// path means what it does now, however the current folder changes.
std::wstring clsIniFile::FileOf(const std::wstring& path) const
{
    const std::wstring_view name = NamePart(path);
    if (path.empty()) {
        return path;
    }
    return JoinPath(name.size() == path.size() ? WindowsFolder() : ExtractPath(path), name);
}

void clsIniFile::TakePath(const std::wstring& path)
{
    fullPath_ = path;
    filePath_ = path.empty() ? std::wstring() : ExtractPath(path);
    fileName_ = TitlePart(path);
    fileExt_ = ExtensionPart(path);
}

void clsIniFile::SectionName(const std::wstring& name)
{
    sectionName_ = name;
    section_ = profile::FromCaller(name);
}

std::wstring clsIniFile::ExtractName(const std::wstring& path, int32_t choice) const
{
    const std::wstring& whole = path.empty() ? fullPath_ : path;
    return std::wstring(choice == 1 ? TitlePart(whole) : choice == 2 ? ExtensionPart(whole) : NamePart(whole));
}

std::wstring clsIniFile::ExtractPath(const std::wstring& path) const
{
    std::wstring folder(FolderPart(path));
    if (!folder.empty() && IsSeparator(folder[0])) {
        const bool whole = folder.size() > 1 && IsSeparator(folder[1]);
        return whole ? folder : std::wstring(CurrentRoot(files_.CurrentFolder())) + folder;
    }
    const bool drive = path.size() >= 2 && path[1] == L':';
    if (drive && path.size() > 2 && IsSeparator(path[2])) {
        return folder;
    }

    // Every drive has a current folder of its own; the one of another drive than the current is taken to be its root.
    std::wstring base = files_.CurrentFolder();
    if (drive &&
        (base.empty() || std::towupper(static_cast<wint_t>(base[0])) != std::towupper(static_cast<wint_t>(path[0])))) {
        base = path.substr(0, 2) + L"\\";
    }
    if (drive && !folder.empty()) {
        folder.erase(0, 2);
    }
    return folder.empty() ? base : JoinPath(base, folder);
}

int16_t clsIniFile::Exists(const std::wstring& name) const
{
    if (name.empty()) {
        return 0;
    }
    try {
        return files_.FindFirst(name.find(L'.') == std::wstring::npos ? name + L".*" : name) ? -1 : 0;
    } catch (const std::exception&) {
        return 0;
    }
}

bool clsIniFile::Registered() const
{
    const bool registered = !IsBlankText(sectionName_);
    if (!registered) {
        messages_.Show(L"[Section] and FileName Not Registered in Private.Ini!", L"IniFile Logic Error",
                       MessageIcon::information);
    }
    return registered;
}

std::wstring clsIniFile::GetString(const std::wstring& key, const std::wstring& defaultValue)
{
    if (!Registered()) {
        return {};
    }
    if (useWinIni_) {
        const auto section = CodePageText(sectionName_), name = CodePageText(key);
        return section && name ? FromCodePage(WinIniString(files_, *section, *name, ToCodePage(defaultValue)))
                               : defaultValue;
    }
    const ProfileFile& profile = store_.Profile();
    const std::string fallback = profile::FromCaller(defaultValue);
    return profile.Decode(ini::FirstCharacters(profile.GetString(section_, profile::FromCaller(key), fallback)));
}

int32_t clsIniFile::GetLong(const std::wstring& key, int32_t defaultValue)
{
    if (!Registered()) {
        return 0;
    }
    if (useWinIni_) {
        const auto section = CodePageText(sectionName_), name = CodePageText(key);
        return section && name ? static_cast<int32_t>(WinIniInt(files_, *section, *name, defaultValue)) : defaultValue;
    }
    const ProfileFile& profile = store_.Profile();
    return static_cast<int32_t>(
        profile.GetInt(section_, profile::FromCaller(key), static_cast<uint32_t>(defaultValue)));
}

int16_t clsIniFile::GetInt(const std::wstring& key, int16_t defaultValue)
{
    return static_cast<int16_t>(GetLong(key, defaultValue));
}

bool clsIniFile::GetTF(const std::wstring& key, int16_t defaultValue)
{
    static constexpr std::wstring_view trueWords[] = {L"YES", L"Y", L"TRUE", L"T", L"ON", L"1", L"-1"};
    const std::wstring text = UpperCase(GetString(key, defaultValue != 0 ? L"True" : L"False"));
    return std::find(std::begin(trueWords), std::end(trueWords), TrimText(text)) != std::end(trueWords);
}

bool clsIniFile::WriteKey(const std::wstring& key, const std::optional<std::wstring>& value)
{
    if (!Registered()) {
        return false;
    }
    if (useWinIni_) {
        const auto section = CodePageText(sectionName_), name = CodePageText(key);
        const auto text = value ? CodePageText(*value) : std::nullopt;
        const bool fits = section && name && text.has_value() == value.has_value();
        const bool written = fits && WriteWinIni(files_, *section, *name, text);
        WinIniWritten();
        return written;
    }
    const std::string name = profile::FromCaller(key);
    return value ? store_.Write(section_, name, profile::FromCaller(*value))
                 : store_.Write(section_, name, std::nullopt);
}

int16_t clsIniFile::PutString(const std::wstring& key, const std::wstring& value)
{
    return WriteKey(key, value) ? -1 : 0;
}

int16_t clsIniFile::PutInt(const std::wstring& key, int32_t value)
{
    return PutString(key, std::to_wstring(value));
}

bool clsIniFile::PutTF(const std::wstring& key, int16_t value)
{
    return WriteKey(key, value != 0 ? L"True" : L"False");
}

void clsIniFile::DeleteStrEntry(const std::wstring& key)
{
    WriteKey(key, std::wstring());
}

bool clsIniFile::DeleteNumEntry(const std::wstring& key)
{
    return WriteKey(key, std::nullopt);
}

void clsIniFile::DeleteSection()
{
    if (!Registered()) {
        return;
    }
    if (useWinIni_) {
        if (const auto section = CodePageText(sectionName_)) {
            WriteWinIni(files_, *section, std::nullopt, std::nullopt);
        }
        WinIniWritten();
    } else {
        store_.DeleteSection(section_);
    }
}

void clsIniFile::FlushCache()
{
    if (store_.InBatch()) {
        store_.CommitBatch();
        store_.BeginBatch();
    }
}

std::optional<std::wstring> clsIniFile::Find(std::string_view key)
{
    if (!Registered()) {
        return std::nullopt;
    }
    const ProfileFile& profile = store_.Profile();
    const auto value = profile.Find(section_, key);
    return value ? std::optional<std::wstring>(profile.Decode(ini::FirstCharacters(*value))) : std::nullopt;
}

bool clsIniFile::Has(std::string_view key)
{
    if (!Registered()) {
        return false;
    }
    const ProfileFile& profile = store_.Profile();
    return profile.Find(section_, key).has_value();
}

int32_t clsIniFile::FindLong(std::string_view key, int32_t defaultValue)
{
    if (!Registered()) {
        return 0;
    }
    const ProfileFile& profile = store_.Profile();
    return static_cast<int32_t>(profile.GetInt(section_, key, static_cast<uint32_t>(defaultValue)));
}

bool clsIniFile::Put(std::string_view key, std::wstring_view value)
{
    if (!Registered()) {
        return false;
    }
    return store_.Write(section_, key, profile::FromCaller(value));
}

bool clsIniFile::Delete(std::string_view key)
{
    return Registered() && store_.Write(section_, key, std::nullopt);
}

}  // namespace tvn2x
