// What the machine itself can do to a save: end the process in the middle of it, and run out of room.

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <random>

#include "setup/SetupFile.h"
#include "support/FixedLocale.h"
#include "support/RecordingMessageBoxes.h"
#include "util/FileKit.h"

namespace tvn2x {
namespace {

namespace fs = std::filesystem;

class SavedOnDisk : public testing::Test
{
protected:
    SavedOnDisk()
    {
        folder = fs::temp_directory_path() / UnpredictableName();
        fs::create_directory(folder);
    }
    ~SavedOnDisk() override { fs::remove_all(folder); }

    static SetupDocument Made(int32_t channels, double shift)
    {
        SetupDocument document;
        document.ListSize(channels);
        for (int32_t channel = 1; channel <= channels; ++channel) {
            document.Frequency(channel, 100 + channel + shift);
        }
        return document;
    }
    bool Save(SetupDocument document, const fs::path& path)
    {
        return SaveSetup(document, environment, L"P", L"2.0", path.wstring());
    }
    std::string Bytes(const fs::path& path)
    {
        std::string content;
        FileStamp stamp;
        EXPECT_EQ(FileFault::none, SystemFiles().Read(path.wstring(), content, stamp));
        return content;
    }
    static std::vector<fs::path> FilesIn(const fs::path& folder)
    {
        return {fs::directory_iterator(folder), fs::directory_iterator()};
    }

    fs::path folder;
    RecordingMessageBoxes messages;
    FixedLocale locale;
    SetupEnvironment environment{SystemFiles(), messages, locale};
};

TEST_F(SavedOnDisk, AProcessKilledAnywhereLeavesTheOldFileOrTheNew)
{
    const fs::path path = folder / "net.ini";
    const SetupDocument documents[] = {Made(40, 0), Made(40, 0.5)};
    std::string contents[2];
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(Save(documents[i], path));
        contents[i] = Bytes(path);
    }
    // Time for several saves, however long one takes here and now.
    const std::chrono::nanoseconds longest =
        std::chrono::milliseconds(12) + 4 * (std::chrono::steady_clock::now() - begin);
    std::mt19937 random(20240315);
    int changes = 0;
    std::string last = contents[1];
    for (int round = 0; round < 50; ++round) {
        const pid_t saver = fork();
        ASSERT_GE(saver, 0);
        if (saver == 0) {
            for (int i = 0;; ++i) {
                if (!Save(documents[i % 2], path)) {
                    _exit(1);
                }
            }
        }
        const auto moment = random() % static_cast<uint64_t>(std::min<int64_t>(longest.count(), 900'000'000));
        const timespec pause{0, static_cast<long>(moment)};
        nanosleep(&pause, nullptr);
        kill(saver, SIGKILL);
        int status = 0;
        ASSERT_EQ(saver, waitpid(saver, &status, 0));
        ASSERT_TRUE(WIFSIGNALED(status)) << "the saver ended by itself: a save failed";
        const std::string content = Bytes(path);
        ASSERT_TRUE(content == contents[0] || content == contents[1]) << "round " << round;
        changes += content != last;
        last = content;
    }
    EXPECT_GT(changes, 5) << "the processes were killed before they could save anything";

    // What they left does not hinder anybody, and goes when it is a day old.
    for (const fs::path& file : FilesIn(folder)) {
        if (file != path) {
            fs::last_write_time(file, fs::file_time_type::clock::now() - std::chrono::hours(25));
        }
    }
    EXPECT_TRUE(Save(Made(41, 0), path));
    EXPECT_EQ(1u, FilesIn(folder).size());
}

/// A small disk of its own, where the process may mount one.
class SmallDisk
{
public:
    explicit SmallDisk(fs::path folder) : folder_(std::move(folder))
    {
        fs::create_directory(folder_);
        isMounted_ = mount("tmpfs", folder_.c_str(), "tmpfs", 0, "size=64k") == 0;
        if (!isMounted_) {
            std::cout << "no small disk can be mounted (" << std::strerror(errno) << "): a limit on the size of files "
                      << "takes its place\n";
        }
    }
    ~SmallDisk()
    {
        if (isMounted_) {
            umount(folder_.c_str());
        }
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    bool IsMounted() const { return isMounted_; }

private:
    fs::path folder_;
    bool isMounted_ = false;
};

/// Files of this process that grow beyond so many bytes meet a full disk.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes) : handler_(signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &old_);
        const rlimit limit{bytes, old_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &old_);
        signal(SIGXFSZ, handler_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit old_{};
    void (*handler_)(int);
};

TEST_F(SavedOnDisk, AFullDiskLeavesTheOldFileAndNothingElse)
{
    const SmallDisk disk(folder / "small");
    const fs::path path = folder / "small" / "net.ini";
    ASSERT_TRUE(Save(Made(40, 0), path));
    const std::string old = Bytes(path);
    {
        const FileSizeLimit limit(disk.IsMounted() ? RLIM_INFINITY : 64 << 10);
        EXPECT_FALSE(Save(Made(2000, 0), path));
    }
    EXPECT_EQ(old, Bytes(path));
    EXPECT_EQ(1u, FilesIn(folder / "small").size());
    EXPECT_TRUE(Save(Made(41, 0), path)) << "what fits is saved again";
}

}  // namespace
}  // namespace tvn2x
