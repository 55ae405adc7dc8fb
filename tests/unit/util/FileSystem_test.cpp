#include "util/FileSystem.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "support/FaultyFiles.h"
#include "support/MemoryFiles.h"
#include "util/Encoding.h"
#include "util/FileKit.h"

namespace tvn2x {
namespace {

namespace fs = std::filesystem;

TEST(ReplaceContent, LeavesTheOldFileOrTheNewWhicheverOperationFails)
{
    const std::wstring path = L"C:\\data\\net.ini";
    bool unhurt = false;
    for (int n = 1; !unhurt; ++n) {
        MemoryFiles memory;
        memory.Put(path, "old");
        FaultyFiles files(memory);
        files.FailAt(n, FileFault::diskFull);
        const FileFault fault = ReplaceContent(files, path, "new content");
        unhurt = !files.Failed();
        EXPECT_EQ(fault, unhurt ? FileFault::none : FileFault::diskFull) << n;
        EXPECT_EQ(memory.Content(path), unhurt ? "new content" : "old") << n;
        EXPECT_EQ(memory.Paths().size(), 1U) << n;
        EXPECT_EQ(files.Count(FileOperation::flush), n > 2 || unhurt ? 1 : 0) << n;
    }
}

TEST(ReplaceContent, RemovesItsTemporaryWhenMemoryRunsOut)
{
    class Exhausted : public MemoryFiles
    {
        FileFault Rename(const std::wstring&, const std::wstring&) override { throw std::bad_alloc(); }
    } files;
    EXPECT_THROW(ReplaceContent(files, L"net.ini", "new"), std::bad_alloc);
    EXPECT_TRUE(files.Paths().empty());
}

TEST(Replacement, LeavesNoTraceWhenItsOwnerGoesBeforeItIsDone)
{
    MemoryFiles files;
    files.Put(L"net.ini", "old");
    {
        Replacement replacement(files);
        ASSERT_EQ(replacement.Open(L"net.ini"), FileFault::none);
        ASSERT_EQ(replacement.Write("half"), FileFault::none);
        EXPECT_TRUE(replacement.IsOpen());
        EXPECT_EQ(files.Paths().size(), 2U);
    }
    EXPECT_EQ(files.Paths().size(), 1U);
    EXPECT_EQ(files.Content(L"net.ini"), "old");
}

TEST(MatchesPattern, FollowsTheRulesOfTheCommandLine)
{
    struct
    {
        const wchar_t* name;
        const wchar_t* pattern;
        bool matches;
    } const cases[] = {
        {L"net.ini", L"net.*", true},
        {L"net", L"net.*", true},
        {L"network.ini", L"net.*", false},
        {L"NET.INI", L"net.ini", true},
        {L"net.ini", L"net.ini", true},
        {L"net.ini", L"*.*", true},
        {L"net", L"*.*", true},
        {L"net", L"*", true},
        {L"net.ini", L"*.", false},
        {L"net", L"*.", true},
        {L"net", L"net.", true},
        {L"net1.ini", L"net?.ini", true},
        {L"net.ini", L"net?.ini", true},
        {L"net12.ini", L"net?.ini", false},
        {L"a.b.ini", L"*.ini", true},
        {L"a.ini.bak", L"*.ini", false},
        {L"abcabd", L"*ab?", true},
        {L"net.ini", L"", false},
        {L"net.ini", L"net", false},
    };
    for (const auto& [name, pattern, matches] : cases)
        EXPECT_EQ(MatchesPattern(name, pattern), matches) << ToUtf8(name) << " " << ToUtf8(pattern);
}

TEST(MatchesPattern, IsQuickForPatternsOfManyStars)
{
    std::wstring pattern;
    for (int i = 0; i < 60; ++i)
        pattern += L"*a";
    EXPECT_FALSE(MatchesPattern(std::wstring(250, L'a') + L"b", pattern));
}

/// The machine's files, in a folder that lives as long as a test.
class SystemFilesTest : public testing::Test
{
protected:
    SystemFilesTest()
    {
        folder = fs::temp_directory_path() / UnpredictableName();
        fs::create_directory(folder);
        path = (folder / "net.ini").wstring();
    }
    ~SystemFilesTest() override { fs::remove_all(folder); }

    std::wstring Path(const char* name) const { return (folder / name).wstring(); }
    void Put(const std::wstring& name, std::string_view content) const
    {
        std::ofstream(fs::path(name), std::ios::binary) << content;
    }
    std::string Get(const std::wstring& name)
    {
        std::string content;
        FileStamp stamp;
        EXPECT_EQ(files.Read(name, content, stamp), FileFault::none);
        EXPECT_EQ(stamp, files.Stamp(name));
        EXPECT_EQ(stamp.size, content.size());
        return content;
    }
    FileFault ReadFault(const std::wstring& name)
    {
        std::string content;
        FileStamp stamp;
        return files.Read(name, content, stamp);
    }
    size_t FilesInFolder() const
    {
        return static_cast<size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
    }

    FileSystem& files = SystemFiles();
    fs::path folder;
    std::wstring path;
};

TEST_F(SystemFilesTest, ReplacesAndCreatesWholeFiles)
{
    const std::string large(3'000'000, 'x');
    for (const std::string& content : {std::string("[A]\r\nk=v\r\n"), std::string(), std::string("\0\xFF", 2), large}) {
        EXPECT_EQ(ReplaceContent(files, path, content), FileFault::none);
        EXPECT_EQ(Get(path), content);
    }
    EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(SystemFilesTest, GivesEveryStateAStampOfItsOwn)
{
    EXPECT_FALSE(files.Stamp(path).exists);
    EXPECT_FALSE(files.Stamp(folder.wstring()).exists);
    ReplaceContent(files, path, "one");
    const FileStamp first = files.Stamp(path);
    EXPECT_EQ(files.Stamp(path), first);
    const FileStamp other = (ReplaceContent(files, Path("kept"), ""), files.Stamp(path));
    EXPECT_EQ(other, first);
    ReplaceContent(files, path, "two");
    EXPECT_NE(files.Stamp(path), first);
}

TEST_F(SystemFilesTest, RemovesTemporariesThatAKilledProcessLeftADayAgo)
{
    const auto make = [&](const std::wstring& name, int hours) {
        std::ofstream(folder / name) << "left";
        fs::last_write_time(folder / name, fs::file_time_type::clock::now() - std::chrono::hours(hours));
        return folder / name;
    };
    const fs::path stale = make(UnpredictableName(), 25);
    const fs::path young = make(UnpredictableName(), 23);
    const fs::path foreign = make(L"~tvnnotes.tmp", 100);
    const fs::path similar = make(UnpredictableName() + L".ini", 100);
    ASSERT_EQ(ReplaceContent(SystemFiles(), (folder / "net.ini").wstring(), "new"), FileFault::none);
    EXPECT_FALSE(fs::exists(stale));
    EXPECT_TRUE(fs::exists(young) && fs::exists(foreign) && fs::exists(similar));
}

TEST_F(SystemFilesTest, KeepsThePermissionsOfTheFileItReplaces)
{
    Put(path, "old");
    fs::permissions(path, fs::perms(0640));
    EXPECT_EQ(ReplaceContent(files, path, "new"), FileFault::none);
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0640));
}

TEST_F(SystemFilesTest, RefusesAReadOnlyFile)
{
    Put(path, "old");
    fs::permissions(path, fs::perms(0444));
    EXPECT_EQ(ReplaceContent(files, path, "new"), FileFault::readOnly);
    Put(Path("other"), "other");
    EXPECT_EQ(files.Rename(Path("other"), path), FileFault::readOnly);
    EXPECT_EQ(Get(path), "old");
    EXPECT_EQ(FilesInFolder(), 2U);
}

TEST_F(SystemFilesTest, FollowsLinksToTheRealFile)
{
    fs::create_directory(folder / "far");
    Put(Path("far/real.ini"), "old");
    fs::create_symlink("far/real.ini", folder / "middle.ini");
    fs::create_symlink(folder / "middle.ini", path);
    fs::create_symlink("far/new.ini", folder / "dangling.ini");
    EXPECT_EQ(ReplaceContent(files, path, "new"), FileFault::none);
    EXPECT_EQ(ReplaceContent(files, Path("dangling.ini"), "created"), FileFault::none);
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_TRUE(fs::is_symlink(folder / "middle.ini"));
    EXPECT_EQ(Get(Path("far/real.ini")), "new");
    EXPECT_EQ(Get(Path("far/new.ini")), "created");
}

TEST_F(SystemFilesTest, TellsFaultsApart)
{
    EXPECT_EQ(ReadFault(path), FileFault::missing);
    EXPECT_EQ(ReadFault(Path("none/net.ini")), FileFault::pathMissing);
    EXPECT_EQ(ReadFault(folder.wstring()), FileFault::isDirectory);
    EXPECT_EQ(ReadFault(L"/dev/null"), FileFault::other);
    EXPECT_EQ(files.Remove(path), FileFault::missing);
    EXPECT_EQ(files.Rename(path, Path("other")), FileFault::missing);
    EXPECT_EQ(ReplaceContent(files, Path("none/net.ini"), ""), FileFault::pathMissing);
    EXPECT_EQ(ReplaceContent(files, folder.wstring(), ""), FileFault::isDirectory);
    Put(path, "file");
    EXPECT_EQ(ReadFault(path + L"/below"), FileFault::pathMissing);
    EXPECT_EQ(ReadFault(path + std::wstring(L"\0.txt", 5)), FileFault::missing);
    EXPECT_EQ(ReplaceContent(files, path + std::wstring(L"\0.txt", 5), ""), FileFault::pathMissing);
    EXPECT_EQ(Get(path), "file");
}

TEST_F(SystemFilesTest, RefusesAFileOfMoreThanAGigabyte)
{
    Put(path, "");
    fs::resize_file(path, largestFile + 1);  // no blocks on the disk
    EXPECT_EQ(ReadFault(path), FileFault::tooLarge);
}

TEST_F(SystemFilesTest, FindsTheFirstFileOfThePattern)
{
    fs::create_directory(folder / "aa.ini");
    for (const char* name : {"net.txt", "NET.ini", "other.ini"})
        Put(Path(name), "");
    EXPECT_EQ(files.FindFirst(Path("net.*")), L"NET.ini");
    EXPECT_EQ(files.FindFirst(Path("*.ini")), L"NET.ini");
    EXPECT_EQ(files.FindFirst(Path("other.ini")), L"other.ini");
    EXPECT_EQ(files.FindFirst(Path("none.*")), std::nullopt);
    EXPECT_EQ(files.FindFirst(Path("none/*.*")), std::nullopt);
}

TEST_F(SystemFilesTest, TakesNamesBeyondTheCodePage)
{
    const std::wstring name = folder.wstring() + L"/\u03A9 \u00B5 \U0001F4E1.ini";
    EXPECT_EQ(ReplaceContent(files, name, "content"), FileFault::none);
    EXPECT_EQ(Get(name), "content");
    EXPECT_EQ(files.FindFirst(Path("*")), L"\u03A9 \u00B5 \U0001F4E1.ini");
}

TEST(FaultText, NamesEveryFault)
{
    for (int fault = 0; fault < static_cast<int>(FileFault::other); ++fault)
        EXPECT_NE(FaultText(static_cast<FileFault>(fault)), FaultText(FileFault::other)) << fault;
    EXPECT_EQ(FaultText(FileFault::diskFull), L"the disk is full");
}

}  // namespace
}  // namespace tvn2x
