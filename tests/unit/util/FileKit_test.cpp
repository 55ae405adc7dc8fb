#include "util/FileKit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

namespace tvn2x {
namespace {

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
