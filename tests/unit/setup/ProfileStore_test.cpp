// What others do to a file while it is being written: programs of our own in processes of their own, and strangers.

#include "setup/ProfileStore.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <string>
#include <utility>

#include "support/FaultyFiles.h"
#include "support/MemoryFiles.h"
#include "util/FileKit.h"

namespace tvn2x {
namespace {

namespace fs = std::filesystem;

const std::wstring path = L"C:\\data\\net.ini";

/// Files before whose every operation somebody else may do something.
class SharedFiles : public MemoryFiles
{
public:
    std::function<void()> before = [] {};

    FileStamp Stamp(const std::wstring& name) override { return before(), MemoryFiles::Stamp(name); }
    FileFault Read(const std::wstring& name, std::string& content, FileStamp& stamp) override
    {
        return before(), MemoryFiles::Read(name, content, stamp);
    }
    FileFault Exclude(const std::wstring& name, std::unique_ptr<FileLock>& lock) override
    {
        return before(), MemoryFiles::Exclude(name, lock);
    }
    FileFault CreateTemporary(const std::wstring& name, std::wstring& temporary,
                              std::unique_ptr<OutputFile>& file) override
    {
        return before(), MemoryFiles::CreateTemporary(name, temporary, file);
    }
    FileFault Rename(const std::wstring& from, const std::wstring& to, const FileStamp* expected) override
    {
        isRenaming = true;
        return before(), MemoryFiles::Rename(from, to, expected);
    }
    bool isRenaming = false;
};

TEST(ProfileStore, AStrangersChangeIsKeptWheneverItComesBeforeTheFileIsReplaced)
{
    // At 0 each change has a stamp of its own. At the even second it has the stamp that the file had before; only the
    // bytes tell then, and nobody can look at those in the step of renaming.
    for (const uint64_t now : {uint64_t{0}, uint64_t{4'000'000'000}}) {
        int moment = 0;
        for (bool meddled = true; meddled; ++moment) {
            SharedFiles files;
            files.now = now;
            files.Put(path, "[s]\nk=1\n");
            ProfileStore store(files);
            store.Bind(path);
            meddled = false;
            int operation = 0;
            files.before = [&] {
                if (operation++ != moment || (now != 0 && files.isRenaming)) {
                    return;
                }
                meddled = true;
                files.Put(path, "[s]\nk=7\n");
            };
            EXPECT_TRUE(store.Write("s", "n", "2"));
            EXPECT_EQ(files.Content(path), meddled ? "[s]\nk=7\nn=2\n" : "[s]\nk=1\nn=2\n") << now << " " << moment;
        }
        EXPECT_GT(moment, 5) << now;
    }
}

TEST(ProfileStore, AFileThatNeverRestsOrIsTakenIsNotReplaced)
{
    SharedFiles files;
    FaultyFiles faulty(files);
    ProfileStore store(faulty);
    store.Bind(path);
    int changes = 0;
    files.before = [&] { files.Put(path, "[s]\nk=" + std::to_string(++changes) + "\n"); };
    EXPECT_FALSE(store.Write("s", "n", "2"));
    EXPECT_EQ(files.Content(path), "[s]\nk=" + std::to_string(changes) + "\n");
    EXPECT_EQ(files.Paths().size(), 1u) << "no temporary stays";
    EXPECT_LT(changes, 200) << "there is an end to it";

    files.before = [] {};
    faulty.FailOn(FileOperation::exclude, 1, FileFault::inUse);
    EXPECT_FALSE(store.Write("s", "n", "2"));
    EXPECT_EQ(files.Content(path), "[s]\nk=" + std::to_string(changes) + "\n");
    EXPECT_TRUE(store.Write("s", "n", "2"));
}

TEST(ProfileStore, AStampIsTrustedOnceNoSecondWriteCanHaveLeftItWhateverTheClockDoes)
{
    constexpr uint64_t second = 1'000'000'000;
    MemoryFiles files;
    FaultyFiles counted(files);
    ProfileStore store(counted);
    const auto value = [&] { return std::string(*store.Profile().Find("s", "k")); };
    const auto reads = [&] {
        const int before = counted.Count(FileOperation::read);
        value();
        return counted.Count(FileOperation::read) - before;
    };
    // Of the machine's clock behind the file's time, and then back again.
    struct
    {
        uint64_t ahead, behind, setBack;
    } const cases[] = {{0, 0, 0}, {1, 0, 0}, {0, 100, 0}, {0, 0, 50}, {0, 100, 50}, {100, 0, 0}};
    for (const auto& [ahead, behind, setBack] : cases) {
        files.now = 1000 * second;
        files.Put(path, "[s]\nk=1\n");
        files.now += (ahead - behind) * second;
        store.Bind(path);
        EXPECT_EQ(value(), "1");
        const bool old = ahead > 1;
        EXPECT_EQ(reads(), old ? 0 : 1);
        if (!old) {
            const uint64_t now = std::exchange(files.now, 1000 * second);
            files.Put(path, "[s]\nk=2\n");  // within the tick of the write before
            files.now = now;
            EXPECT_EQ(value(), "2");
        }
        files.now -= setBack * second;
        EXPECT_EQ(reads(), old ? 0 : 1);
        files.now += 2 * second;
        value();
        EXPECT_EQ(reads(), 0) << ahead << " " << behind << " " << setBack;
        files.now -= 500 * second;
        EXPECT_EQ(reads(), 0) << "what is trusted stays so";
        files.Put(path, "[s]\nk=3\n");
        EXPECT_EQ(value(), "3");
    }
}

/// A file on the disk, and processes that write it.
class SharedOnDisk : public testing::Test
{
protected:
    SharedOnDisk() : folder(fs::temp_directory_path() / UnpredictableName()) { fs::create_directory(folder); }
    ~SharedOnDisk() override { fs::remove_all(folder); }

    static std::string Key(char writer, int number) { return std::string(1, writer) + std::to_string(number); }
    /// The result of the process is 0 where every key was written, be it after some refusals.
    static int WriteKeys(const fs::path& file, char writer, int count)
    {
        ProfileStore store(SystemFiles());
        store.Bind(file.wstring());
        int refusals = 0;
        for (int i = 1; i <= count && refusals < 100; ++i) {
            while (!store.Write("s", Key(writer, i), std::to_string(i)) && ++refusals < 100) {
            }
        }
        return refusals < 100 ? 0 : 1;
    }
    ProfileFile Written() const
    {
        std::ifstream file(folder / "net.ini", std::ios::binary);
        return ProfileFile({std::istreambuf_iterator<char>(file), {}});
    }

    fs::path folder;
};

TEST_F(SharedOnDisk, TwoProcessesLoseNoneOfTheirWritesOfOneFile)
{
    constexpr int count = 100;
    fs::create_symlink(folder / "net.ini", folder / "link.ini");
    std::array<pid_t, 2> writers{};
    for (size_t i = 0; i < writers.size(); ++i) {
        writers[i] = fork();
        ASSERT_GE(writers[i], 0);
        if (writers[i] == 0) {
            _exit(WriteKeys(folder / (i == 0 ? "net.ini" : "link.ini"), i == 0 ? 'a' : 'b', count));
        }
    }
    for (const pid_t writer : writers) {
        int status = 0;
        ASSERT_EQ(writer, waitpid(writer, &status, 0));
        EXPECT_EQ(status, 0);
    }
    const ProfileFile profile = Written();
    int kept = 0;
    for (int i = 1; i <= count; ++i) {
        for (const char writer : {'a', 'b'}) {
            kept += profile.GetInt("s", Key(writer, i), 0) == static_cast<uint32_t>(i);
        }
    }
    EXPECT_EQ(kept, 2 * count);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 2) << "the file and its link";
}

TEST_F(SharedOnDisk, AWriterThatIsKilledAnywhereKeepsNobodyOut)
{
    std::mt19937 random(20240315);
    ProfileStore store(SystemFiles());
    store.Bind((folder / "net.ini").wstring());
    for (int round = 0; round < 30; ++round) {
        std::array<int, 2> acknowledged{};
        ASSERT_EQ(pipe(acknowledged.data()), 0);
        const pid_t writer = fork();
        ASSERT_GE(writer, 0);
        if (writer == 0) {
            ProfileStore own(SystemFiles());
            own.Bind((folder / "net.ini").wstring());
            for (int i = 1;; ++i) {
                if (!own.Write("s", Key('a', i % 50), std::to_string(round * 100'000 + i)) ||
                    write(acknowledged[1], &i, sizeof i) != sizeof i) {
                    _exit(1);
                }
            }
        }
        close(acknowledged[1]);
        const timespec pause{0, static_cast<long>(random() % 12'000'000)};
        nanosleep(&pause, nullptr);
        kill(writer, SIGKILL);
        EXPECT_TRUE(store.Write("s", "own", std::to_string(round))) << round;
        int status = 0;
        ASSERT_EQ(writer, waitpid(writer, &status, 0));
        ASSERT_TRUE(WIFSIGNALED(status)) << "a write was refused";
        int last = 0;
        while (read(acknowledged[0], &last, sizeof last) == sizeof last) {
        }
        close(acknowledged[0]);
        const ProfileFile profile = Written();
        EXPECT_EQ(profile.GetInt("s", "own", 0), static_cast<uint32_t>(round));
        if (last != 0) {
            EXPECT_GE(profile.GetInt("s", Key('a', last % 50), 0), static_cast<uint32_t>(round * 100'000 + last));
        }
    }
}

}  // namespace
}  // namespace tvn2x
