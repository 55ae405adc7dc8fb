// The machine's files as the setup uses them, and the system's own functions on the same bytes.

#include <windows.h>

#include <gtest/gtest.h>
#include <process.h>

#include <filesystem>
#include <fstream>

#include "setup/ProfileFile.h"
#include "setup/SystemProfile.h"
#include "setup/clsIniFile.h"
#include "support/RecordingMessageBoxes.h"
#include "util/FileKit.h"

namespace tvn2x {
namespace {

namespace fs = std::filesystem;

std::string ContentOf(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// A folder of the test's own for as long as it runs.
class MachineFolder : public testing::Test
{
protected:
    MachineFolder() : folder(fs::temp_directory_path() / UnpredictableName()) { fs::create_directory(folder); }
    ~MachineFolder() override
    {
        std::error_code ignored;
        fs::remove_all(LongForm(folder), ignored);
    }

    static fs::path LongForm(const fs::path& path) { return L"\\\\?\\" + path.wstring(); }
    fs::path Make(const std::wstring& name, const std::string& content)
    {
        std::ofstream(folder / name, std::ios::binary) << content;
        return folder / name;
    }
    FileFault Replace(const fs::path& path, std::string_view content)
    {
        return ReplaceContent(SystemFiles(), path.wstring(), content);
    }
    size_t FilesInFolder() const
    {
        return static_cast<size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
    }

    fs::path folder;
};

using FilesOnWindows = MachineFolder;

TEST_F(FilesOnWindows, TheSystemReadsWhatTheCodePageCouldNotHold)
{
    const fs::path path = Make(L"net.ini", "; \xB5\r\n[s]\r\nk=dB\xB5V\r\n");
    RecordingMessageBoxes messages;
    clsIniFile ini(SystemFiles(), messages);
    ini.FullPath(path.wstring());
    ini.SectionName(L"\u041F");
    ASSERT_EQ(ini.PutString(L"\u041C", L"\u010CT1"), -1);
    ini.SectionName(L"s");
    const auto read = [&](const wchar_t* section, const wchar_t* key) {
        wchar_t text[64];
        GetPrivateProfileStringW(section, key, L"-", text, 64, path.c_str());
        return std::wstring(text);
    };
    EXPECT_EQ(read(L"\u041F", L"\u041C"), L"\u010CT1");
    EXPECT_EQ(read(L"s", L"k"), ini.GetString(L"k", L""));
    ASSERT_TRUE(WritePrivateProfileStringW(L"s", L"n", L"\u0420", path.c_str()));
    WritePrivateProfileStringW(nullptr, nullptr, nullptr, path.c_str());
    EXPECT_EQ(ini.GetString(L"n", L""), L"\u0420");
}

TEST_F(FilesOnWindows, AFileThatSomebodyHoldsOrThatIsReadOnlyStaysWholeAndAHiddenOneStaysHidden)
{
    const fs::path path = Make(L"net.ini", "old");
    for (const DWORD shared : {DWORD{0}, DWORD{FILE_SHARE_READ}}) {
        const HANDLE holder =
            CreateFileW(path.c_str(), GENERIC_READ, shared, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
        ASSERT_NE(holder, INVALID_HANDLE_VALUE);
        EXPECT_EQ(Replace(path, "new"), FileFault::inUse);
        CloseHandle(holder);
        EXPECT_EQ(ContentOf(path), "old");
        EXPECT_EQ(FilesInFolder(), 1u) << "no temporary is left";
    }
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(Replace(path, "new"), FileFault::readOnly);
    EXPECT_EQ(ContentOf(path), "old");
    EXPECT_EQ(Replace(folder, "new"), FileFault::isDirectory);
    EXPECT_EQ(Replace(folder / L"gone" / L"net.ini", "new"), FileFault::pathMissing);
    EXPECT_EQ(FilesInFolder(), 1u);
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_HIDDEN);
    ASSERT_EQ(Replace(path, "new"), FileFault::none);
    EXPECT_EQ(ContentOf(path), "new");
    EXPECT_NE(GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_HIDDEN, 0u);
}

TEST_F(FilesOnWindows, APathBeyondTheUsualLengthIsWrittenAndRead)
{
    fs::path path = folder;
    while (path.native().size() < 400) {
        path /= std::wstring(60, L'd');
        ASSERT_TRUE(fs::create_directory(LongForm(path)));
    }
    EXPECT_EQ(Replace(path / L"net.ini", "v"), FileFault::none);
    std::string content;
    FileStamp stamp;
    EXPECT_EQ(SystemFiles().Read((path / L"net.ini").wstring(), content, stamp), FileFault::none);
    EXPECT_EQ(content, "v");
    EXPECT_EQ(SystemFiles().FindFirst((path / L"net.*").wstring()), L"net.ini");
}

/// A second program that writes our files.
class Writer
{
public:
    Writer(const std::wstring& path, const std::wstring& what, const std::wstring& argument)
    {
        wchar_t program[MAX_PATH];
        GetModuleFileNameW(nullptr, program, MAX_PATH);
        const std::wstring writer = fs::path(program).replace_filename(L"profile_writer.exe").wstring();
        const std::wstring quoted = L'"' + path + L'"';
        process_ = reinterpret_cast<HANDLE>(_wspawnl(_P_NOWAIT, writer.c_str(), L"profile_writer", quoted.c_str(),
                                                     what.c_str(), argument.c_str(), nullptr));
    }
    ~Writer()
    {
        Kill();
        CloseHandle(process_);
    }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    void Kill()
    {
        TerminateProcess(process_, 9);
        WaitForSingleObject(process_, INFINITE);
    }
    DWORD Result()
    {
        DWORD result = STILL_ACTIVE;
        EXPECT_EQ(WaitForSingleObject(process_, 120'000), WAIT_OBJECT_0);
        GetExitCodeProcess(process_, &result);
        return result;
    }

private:
    HANDLE process_;
};

TEST_F(FilesOnWindows, TwoProcessesLoseNoneOfTheirWritesOfOneFile)
{
    constexpr int count = 300;
    const fs::path path = folder / L"net.ini";
    {
        Writer first(path.wstring(), L"a", std::to_wstring(count));
        Writer second(LongForm(folder / L"NET.INI").wstring(), L"b", std::to_wstring(count));
        EXPECT_EQ(first.Result(), 0u);
        EXPECT_EQ(second.Result(), 0u);
    }
    const ProfileFile profile(ContentOf(path));
    int kept = 0;
    for (int i = 1; i <= count; ++i) {
        for (const char letter : {'a', 'b'}) {
            kept += profile.GetInt("s", letter + std::to_string(i), 0) == static_cast<uint32_t>(i);
        }
    }
    EXPECT_EQ(kept, 2 * count);
    EXPECT_EQ(FilesInFolder(), 1u);
}

TEST_F(FilesOnWindows, AWriterThatIsKilledAnywhereLeavesAWholeFile)
{
    const fs::path path = folder / L"net.ini";
    for (int round = 0; round < 10; ++round) {
        const std::string before = ContentOf(path);
        Writer writer(path.wstring(), L"a", L"100000");
        while (ContentOf(path) == before) {
        }
        writer.Kill();
        const std::string content = ContentOf(path);
        const ProfileFile profile(content);
        int last = 0;
        while (profile.GetInt("s", "a" + std::to_string(last + 1), 0) == static_cast<uint32_t>(last + 1)) {
            ++last;
        }
        EXPECT_EQ(profile.GetSection("s").size(), static_cast<size_t>(last));
        EXPECT_TRUE(content.ends_with(std::to_string(last) + "\r\n"));
    }
}

TEST_F(FilesOnWindows, AFileIsOneWritersAloneByWhateverPathUntilItsProcessIsKilled)
{
    const fs::path path = Make(L"the network.ini", "old");
    const std::wstring eventName = UnpredictableName();
    const HANDLE ready = CreateEventW(nullptr, TRUE, FALSE, eventName.c_str());
    Writer holder(path.wstring(), L"hold", eventName);
    ASSERT_EQ(WaitForSingleObject(ready, 60'000), WAIT_OBJECT_0);
    CloseHandle(ready);

    std::wstring upper = path.wstring(), shortForm(MAX_PATH, L'\0');
    CharUpperW(upper.data());
    shortForm.resize(GetShortPathNameW(path.c_str(), shortForm.data(), MAX_PATH));
    ASSERT_NE(shortForm, path.wstring());
    const fs::path old = fs::current_path();
    fs::current_path(folder);
    for (const std::wstring& same :
         {path.wstring(), upper, shortForm, LongForm(path).wstring(), folder.wstring() + L"/./the network.ini",
          std::wstring(L"the network.ini"), L"\\\\.\\" + path.wstring()}) {
        EXPECT_EQ(ReplaceContent(SystemFiles(), same, "new"), FileFault::inUse) << fs::path(same).string();
    }
    fs::current_path(old);
    EXPECT_EQ(ContentOf(path), "old");
    const fs::path other = fs::temp_directory_path() / UnpredictableName();
    EXPECT_EQ(Replace(other, "new"), FileFault::none) << "another folder's";
    fs::remove(other);

    holder.Kill();
    EXPECT_EQ(Replace(path, "new"), FileFault::none);
    EXPECT_EQ(ContentOf(path), "new");
    EXPECT_EQ(FilesInFolder(), 1u);
}

TEST_F(FilesOnWindows, AFileIsReplacedOnlyInTheStateThatIsExpected)
{
    const fs::path path = Make(L"net.ini", "old");
    const FileStamp before = SystemFiles().Stamp(path.wstring());
    EXPECT_LT(SystemFiles().Now() - before.modified + TickOf(before), 60'000'000'000u) << "one clock";
    const fs::path ours = Make(L"ours", "ours");
    Make(L"net.ini", "else");
    EXPECT_EQ(SystemFiles().Rename(ours.wstring(), path.wstring(), &before), FileFault::changed);
    EXPECT_EQ(ContentOf(path), "else");
    const FileStamp now = SystemFiles().Stamp(path.wstring());
    EXPECT_EQ(SystemFiles().Rename(ours.wstring(), path.wstring(), &now), FileFault::none);
    EXPECT_EQ(ContentOf(path), "ours");
}

TEST(WinIni, IsWrittenAndReadThroughTheSystem)
{
    RecordingMessageBoxes messages;
    clsIniFile ini(SystemFiles(), messages);
    ini.UseWinINI(true);
    ini.SectionName(UnpredictableName());
    EXPECT_EQ(ini.PutString(L"k", L" v "), -1);
    EXPECT_EQ(ini.GetString(L"k", L"-"), L"v");
    EXPECT_EQ(ini.GetSectEntries(), std::wstring(L"k=v\0", 4));
    EXPECT_EQ(ini.PutString(L"k", std::wstring(1, static_cast<wchar_t>(0xD83D))), 0) << "no code page holds this";
    EXPECT_TRUE(ini.DeleteNumEntry(L"k"));
    EXPECT_EQ(ini.GetString(L"k", L"-"), L"-");
    ini.DeleteSection();
    EXPECT_FALSE(ini.SectExist(ini.SectionName()));
}

}  // namespace
}  // namespace tvn2x
