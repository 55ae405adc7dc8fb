#include "util/FileSystem.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>

#include "support/MemoryFiles.h"
#include "support/TestTable.h"
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
        MemoryFiles files;
        files.Put(path, "old");
        files.FailAt(n, FileFault::diskFull);
        const FileFault fault = ReplaceContent(files, path, "new content");
        unhurt = !files.Failed();
        EXPECT_EQ(fault, unhurt ? FileFault::none : FileFault::diskFull) << n;
        EXPECT_EQ(files.Content(path), unhurt ? "new content" : "old") << n;
        EXPECT_EQ(files.Paths().size(), 1U) << n;
        EXPECT_EQ(files.Count(FileOperation::flush), n > 2 || unhurt ? 1 : 0) << n;
    }
}

TEST(ReplaceContent, RemovesItsTemporaryWhenMemoryRunsOutOrItsOwnerGoesBeforeItIsDone)
{
    MemoryFiles files;
    files.before = [](FileOperation kind) { kind == FileOperation::rename ? throw std::bad_alloc() : void(); };
    EXPECT_THROW(ReplaceContent(files, L"net.ini", "new"), std::bad_alloc);
    EXPECT_TRUE(files.Paths().empty());
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
    for (const std::vector<std::string>& row : TestTable("file-patterns.tsv", 3)) {
        EXPECT_EQ(MatchesPattern(FromUtf8(row[1]), FromUtf8(row[0])), row[2] == "yes") << row[1] << " " << row[0];
    }

    // Of many stars: this takes no time that grows with their number's power.
    std::wstring pattern;
    for (int i = 0; i < 60; ++i) {
        pattern += L"*a";
    }
    EXPECT_FALSE(MatchesPattern(std::wstring(250, L'a') + L"b", pattern));
}

/// The machine's files, in a folder that lives as long as a test.
class SystemFilesTest : public testing::Test
{
protected:
    SystemFilesTest() { fs::create_directory(folder); }
    ~SystemFilesTest() override { fs::remove_all(folder); }

    std::wstring Path(const char* name) const { return (folder / name).wstring(); }
    void Put(const std::wstring& name, std::string_view bytes) const
    {
        std::ofstream(fs::path(name), std::ios::binary) << bytes;
    }
    FileFault ReadFault(const std::wstring& name) { return files.Read(name, content, stamp); }
    std::string Get(const std::wstring& name)
    {
        EXPECT_EQ(ReadFault(name), FileFault::none);
        EXPECT_EQ(stamp, files.Stamp(name));
        EXPECT_EQ(stamp.size, content.size());
        return content;
    }
    auto FilesInFolder() const { return std::distance(fs::directory_iterator(folder), fs::directory_iterator()); }

    FileSystem& files = SystemFiles();
    const fs::path folder = fs::temp_directory_path() / UnpredictableName();
    const std::wstring path = Path("net.ini");
    std::string content;
    FileStamp stamp;
};

TEST_F(SystemFilesTest, ReplacesAndCreatesWholeFilesAndGivesEveryStateAStampOfItsOwn)
{
    using namespace std::string_literals;
    for (const std::string& written : {"[A]\r\nk=v\r\n"s, ""s, "\0\xFF"s, std::string(3'000'000, 'x')}) {
        EXPECT_EQ(ReplaceContent(files, path, written), FileFault::none);
        EXPECT_EQ(Get(path), written);
    }
    EXPECT_EQ(FilesInFolder(), 1);

    EXPECT_FALSE(files.Stamp(Path("none")).exists);
    EXPECT_FALSE(files.Stamp(folder.wstring()).exists);
    ReplaceContent(files, path, "one");
    const FileStamp first = files.Stamp(path);
    ReplaceContent(files, Path("kept"), "");
    EXPECT_EQ(files.Stamp(path), first);
    ReplaceContent(files, path, "two");
    EXPECT_NE(files.Stamp(path), first);
}

TEST_F(SystemFilesTest, KeepsThePermissionsOfTheFileItReplacesAndRefusesAReadOnlyOne)
{
    Put(path, "old");
    fs::permissions(path, fs::perms(0640));
    EXPECT_EQ(ReplaceContent(files, path, "new"), FileFault::none);
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0640));
    fs::permissions(path, fs::perms(0444));
    EXPECT_EQ(ReplaceContent(files, path, "newer"), FileFault::readOnly);
    Put(Path("other"), "other");
    EXPECT_EQ(files.Rename(Path("other"), path, nullptr), FileFault::readOnly);
    EXPECT_EQ(Get(path), "new");
    EXPECT_EQ(FilesInFolder(), 2);
}

TEST_F(SystemFilesTest, AFileIsOneWritersAloneByWhateverPathUntilItLetsGo)
{
    fs::create_directory(folder / "far");
    fs::create_directory_symlink("far", folder / "near");
    fs::create_symlink("near/net.ini", path);
    const std::wstring far = Path("far/net.ini");
    std::unique_ptr<FileLock> holder, lock;
    Put(far, "old");
    const FileStamp stampBefore = files.Stamp(far);
    EXPECT_EQ(files.Exclude(path, holder), FileFault::none);
    for (const std::wstring& same : {path, Path("near/../near/./net.ini")}) {
        EXPECT_EQ(files.Exclude(same, lock), FileFault::inUse);
    }
    EXPECT_EQ(ReplaceContent(files, far, "new"), FileFault::inUse);
    EXPECT_EQ(files.Exclude(Path("elsewhere.ini"), lock), FileFault::none);
    holder.reset();
    EXPECT_EQ(files.Exclude(far, holder), FileFault::none);
    EXPECT_TRUE(holder);
    EXPECT_EQ(files.Exclude(Path("none/net.ini"), lock), FileFault::none) << "what is wrong there is told elsewhere";
    EXPECT_EQ(files.Stamp(far), stampBefore);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder / "far"), fs::directory_iterator()), 1)
        << "it leaves nothing";
    holder.reset();
    EXPECT_EQ(ReplaceContent(files, path, "new"), FileFault::none);
    EXPECT_TRUE(fs::is_symlink(path)) << "the file that it leads to is replaced";
    EXPECT_EQ(Get(far), "new");
}

TEST_F(SystemFilesTest, WhatAKilledProcessHasLeftGoesInADay)
{
    const fs::path old = folder / UnpredictableName(), fresh = folder / UnpredictableName();
    Put(old.wstring(), "half");
    Put(fresh.wstring(), "half");
    fs::last_write_time(old, fs::file_time_type::clock::now() - std::chrono::seconds(86410));
    fs::last_write_time(fresh, fs::file_time_type::clock::now() - std::chrono::seconds(86000));
    Put(Path("~tvn.tmp"), "somebody else's");
    fs::last_write_time(folder / "~tvn.tmp", fs::file_time_type::clock::now() - std::chrono::hours(99));
    EXPECT_EQ(ReplaceContent(files, path, "after it"), FileFault::none);
    EXPECT_FALSE(fs::exists(old));
    EXPECT_EQ(FilesInFolder(), 3);
}

TEST_F(SystemFilesTest, ReplacesAFileOnlyInTheStateThatIsExpected)
{
    Put(path, "old");
    const FileStamp before = files.Stamp(path);
    for (const std::string_view theirs : {"else", "new"}) {
        Put(Path("new"), "ours");
        EXPECT_EQ(ReplaceContent(files, path, theirs), FileFault::none);
        EXPECT_EQ(files.Rename(Path("new"), path, &before), FileFault::changed);
        EXPECT_EQ(Get(path), theirs);
    }
    const FileStamp now = files.Stamp(path);
    EXPECT_EQ(files.Rename(Path("new"), path, &now), FileFault::none);
    EXPECT_EQ(Get(path), "ours");
    EXPECT_GE(files.Now() + TickOf(stamp), stamp.modified) << "one clock";
    EXPECT_LT(files.Now() - stamp.modified, 60'000'000'000u);
}

TEST(TickOf, TakesAStampsDigitsForTheTickOfItsClock)
{
    EXPECT_EQ(TickOf({true, 0, 1'700'000'002'000'000'000, 0}), 2'000'000'000u);
    EXPECT_EQ(TickOf({true, 0, 1'700'000'003'000'000'000, 0}), 1'000'000'000u);
    EXPECT_EQ(TickOf({true, 0, 1'700'000'003'000'000'100, 0}), 20'000'000u);
}

TEST_F(SystemFilesTest, TellsFaultsApart)
{
    EXPECT_EQ(ReadFault(path), FileFault::missing);
    EXPECT_EQ(ReadFault(Path("none/net.ini")), FileFault::pathMissing);
    EXPECT_EQ(ReadFault(folder.wstring()), FileFault::isDirectory);
    EXPECT_EQ(ReadFault(L"/dev/null"), FileFault::other);
    EXPECT_EQ(files.Rename(path, Path("other"), nullptr), FileFault::missing);
    EXPECT_EQ(ReplaceContent(files, Path("none/net.ini"), ""), FileFault::pathMissing);
    EXPECT_EQ(Replacement(files).Open(folder.wstring()), FileFault::isDirectory) << "before anything is written";
    Put(path, "file");
    EXPECT_EQ(ReadFault(path + L"/below"), FileFault::pathMissing);
    EXPECT_EQ(ReadFault(path + std::wstring(L"\0.txt", 5)), FileFault::missing);
    EXPECT_EQ(ReplaceContent(files, path + std::wstring(L"\0.txt", 5), ""), FileFault::pathMissing);
    EXPECT_EQ(Get(path), "file");
    fs::resize_file(path, largestFile + 1);  // no blocks on the disk
    EXPECT_EQ(ReadFault(path), FileFault::tooLarge);
}

TEST_F(SystemFilesTest, FindsTheFirstFileOfThePattern)
{
    fs::create_directory(folder / "aa.ini");
    for (const char* name : {"net.txt", "NET.ini", "other.ini"}) {
        Put(Path(name), "");
    }
    EXPECT_EQ(files.FindFirst(Path("net.*")), L"NET.ini");
    EXPECT_EQ(files.FindFirst(Path("*.ini")), L"NET.ini") << "no folder";
    EXPECT_EQ(files.FindFirst(Path("none.*")), std::nullopt);
    EXPECT_EQ(files.FindFirst(Path("none/*.*")), std::nullopt);
    const std::wstring name = L"\u03A9 \u00B5 \U0001F4E1.ini";  // beyond the code page
    EXPECT_EQ(ReplaceContent(files, folder.wstring() + L"/" + name, "content"), FileFault::none);
    EXPECT_EQ(files.FindFirst(folder.wstring() + L"/*\u00B5*"), name);
}

/// A file in memory that somebody else writes to while it is read.
class ChangingFile : public InputFile
{
public:
    explicit ChangingFile(std::string content) : content_(std::move(content)) {}

    void Become(std::string content)
    {
        content_ = std::move(content);
        ++version_;
    }

    FileFault Stamp(FileStamp& stamp) override
    {
        stamp = {true, claimedSize != 0 ? claimedSize : content_.size(), version_, 1};
        return FileFault::none;
    }
    FileFault Rewind() override
    {
        position_ = 0;
        return FileFault::none;
    }
    FileFault Read(char* bytes, size_t size, size_t& got) override
    {
        position_ = std::min(position_, content_.size());
        got = content_.copy(bytes, std::min<size_t>(size, 4), position_);
        position_ += got;
        if (onRead) {
            onRead(++reads_);
        }
        return fault;
    }

    std::function<void(int)> onRead;
    FileFault fault = FileFault::none;
    uint64_t claimedSize = 0;

private:
    std::string content_;
    uint64_t version_ = 1;
    size_t position_ = 0;
    int reads_ = 0;
};

class ReadOneStateTest : public testing::Test
{
protected:
    FileFault Read() { return ReadOneState(file, content, stamp); }

    ChangingFile file{"the first state"};
    std::string content;
    FileStamp stamp;
};

TEST_F(ReadOneStateTest, ReadsAgainWhenTheFileGrewShrankOrChangedAndGivesUpWhereItNeverRests)
{
    for (const std::string next : {"the first state", "a second state, which is longer", "short", "the other state"}) {
        file.Become("the first state");
        file.onRead = [&, changed = false](int) mutable {
            if (!std::exchange(changed, true)) {
                file.Become(next);
            }
        };
        EXPECT_EQ(Read(), FileFault::none);
        EXPECT_EQ(content, next);
        EXPECT_EQ(stamp.size, next.size());
    }
    file.onRead = [&](int n) { file.Become("state " + std::to_string(n)); };
    EXPECT_EQ(Read(), FileFault::inUse);
}

TEST_F(ReadOneStateTest, HandsOnAFaultOfTheDiskAndRefusesAFileBeyondTheLimitUnread)
{
    file.fault = FileFault::other;
    EXPECT_EQ(Read(), FileFault::other);
    file.claimedSize = largestFile + 1;
    file.onRead = [](int) { ADD_FAILURE(); };
    EXPECT_EQ(Read(), FileFault::tooLarge);
}

TEST(UnpredictableName, DiffersEachTime)
{
    const std::wstring name = UnpredictableName();
    EXPECT_EQ(name.size(), 40U);
    EXPECT_NE(name, UnpredictableName());
}

}  // namespace
}  // namespace tvn2x
