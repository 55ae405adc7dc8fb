#include "host/live/MetricsFile.h"

#include "support/MemoryFiles.h"
#include "support/TestRun.h"

namespace tvn2x {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(MetricsFile, IsWrittenAtEachPassAndNowAndThenAndTriedAgain)
{
    MemoryFiles files;
    std::vector<FileFault> told;
    MetricsFile file(files, L"m.prom", [&](FileFault fault) { told.push_back(fault); });
    LiveState state;
    file.Take(state);
    EXPECT_FALSE(files.Exists(L"m.prom"));
    state.run = std::make_shared<FinishedRun>(TestRun({}));
    const auto passAfter = [&](double at, int32_t pass) {
        state.at = at;
        state.now.pass = pass;
        file.Take(state);
        return files.Content(L"m.prom");
    };
    EXPECT_THAT(passAfter(1, 1), HasSubstr("tvn2x_pass 1\n"));
    EXPECT_THAT(passAfter(15, 2), HasSubstr("tvn2x_pass 1\n"));
    EXPECT_THAT(passAfter(16, 3), HasSubstr("tvn2x_pass 3\n"));
    ++state.passesDone;
    EXPECT_THAT(passAfter(17, 4), HasSubstr("tvn2x_pass 4\n"));
    files.FailOn(FileOperation::create, 1, FileFault::diskFull, true);
    ++state.passesDone;
    EXPECT_THAT(passAfter(18, 5), HasSubstr("tvn2x_pass 4\n"));
    EXPECT_THAT(passAfter(18.5, 5), HasSubstr("tvn2x_pass 4\n"));
    files.Heal();
    EXPECT_THAT(passAfter(19, 5), HasSubstr("tvn2x_pass 5\n"));
    EXPECT_THAT(told, ElementsAre(FileFault::diskFull, FileFault::none));
    state.now.phase = LivePhase::ended;
    EXPECT_THAT(passAfter(20, 6), HasSubstr("tvn2x_pass 6\n"));
}

}  // namespace
}  // namespace tvn2x
