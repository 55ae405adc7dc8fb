// What others do to a file while it is being written.

#include "setup/ProfileStore.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "support/MemoryFiles.h"

namespace tvn2x {
namespace {

const std::wstring path = L"C:\\data\\net.ini";

TEST(ProfileStore, AStrangersChangeIsKeptWheneverItComesBeforeTheFileIsReplaced)
{
    // At 0 each change has a stamp of its own. At the even second it has the stamp that the file had before; only the
    // bytes tell then, and nobody can look at those in the step of renaming.
    for (const uint64_t now : {uint64_t{0}, uint64_t{4'000'000'000}}) {
        int moment = 0;
        for (bool meddled = true; meddled; ++moment) {
            MemoryFiles files;
            files.now = now;
            files.Put(path, "[s]\nk=1\n");
            ProfileStore store(files);
            store.Bind(path);
            meddled = false;
            int operation = 0;
            bool isRenaming = false;
            files.before = [&](FileOperation kind) {
                isRenaming = isRenaming || kind == FileOperation::rename;
                if (operation++ == moment && (now == 0 || !isRenaming)) {
                    meddled = true;
                    files.Put(path, "[s]\nk=7\n");
                }
            };
            EXPECT_TRUE(store.Write("s", "n", "2"));
            EXPECT_EQ(files.Content(path), meddled ? "[s]\nk=7\nn=2\n" : "[s]\nk=1\nn=2\n") << now << " " << moment;
        }
        EXPECT_GT(moment, 5) << now;
    }
}

TEST(ProfileStore, AFileThatNeverRestsOrIsTakenIsNotReplaced)
{
    MemoryFiles files;
    ProfileStore store(files);
    store.Bind(path);
    int changes = 0;
    files.before = [&](FileOperation) { files.Put(path, "[s]\nk=" + std::to_string(++changes) + "\n"); };
    EXPECT_FALSE(store.Write("s", "n", "2"));
    EXPECT_EQ(files.Content(path), "[s]\nk=" + std::to_string(changes) + "\n");
    EXPECT_EQ(files.Paths().size(), 1u) << "no temporary stays";
    EXPECT_LT(changes, 200) << "there is an end to it";

    files.before = {};
    files.FailOn(FileOperation::exclude, 1, FileFault::inUse);
    EXPECT_FALSE(store.Write("s", "n", "2"));
    EXPECT_EQ(files.Content(path), "[s]\nk=" + std::to_string(changes) + "\n");
    EXPECT_TRUE(store.Write("s", "n", "2"));
}

TEST(ProfileStore, AStampIsTrustedOnceNoSecondWriteCanHaveLeftItWhateverTheClockDoes)
{
    constexpr uint64_t second = 1'000'000'000;
    MemoryFiles files;
    ProfileStore store(files);
    const auto value = [&] { return std::string(*store.Profile().Find("s", "k")); };
    const auto reads = [&] {
        const int before = files.Count(FileOperation::read);
        value();
        return files.Count(FileOperation::read) - before;
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

}  // namespace
}  // namespace tvn2x
