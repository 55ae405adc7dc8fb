#include "host/report/MetricsText.h"

#include "host/judge/Limits.h"
#include "support/TestFiles.h"
#include "support/TestRun.h"

namespace tvn2x {
namespace {

using testing::HasSubstr;

std::string TextOf(const FinishedRun& run)
{
    const Limits limits = OutletLimits();
    const RunJudgement judgement = Judge(run, &limits);
    RunMetrics metrics = MetricsOf(run, judgement);
    metrics.answers = true;
    return MetricsText(metrics, MetricsFormat::openMetrics);
}

/// A good channel with a bound, one that fails, one that the instrument failed at and one that no pass came to.
FinishedRun Measured()
{
    FinishedRun run =
        TestRun({TestChannel(1, 474, {{MP_RFLEV, L"60.1"}, {MP_BER, L"<1.7E-8"}, {MP_MER, L"38.5"}}),
                 TestChannel(2, 482.25, {{MP_RFLEV, L"UNDER"}, {MP_SYNC, L"UNSYNC"}, {MP_IQIMBAL, L"3.2"}}, 1,
                             ChannelOutcome::notSynchronised),
                 TestChannel(3, 490, {}, 1, ChannelOutcome::error)});
    run.selection.push_back({4, L"C4", 498, 6.9});
    run.selection.push_back({5, L"C4", 498, 6.9});
    run.protocol.site = L"\"Hill\\Top\"\nµ";
    return run;
}

/// The second run has whole passes, and an instrument that failed.
TEST(MetricsText, HasWhatWasMeasuredAndNothingElse)
{
    FinishedRun passes = TestRun({TestChannel(1, 474, {}), TestChannel(2, 482, {}), TestChannel(1, 474, {}, 2),
                                  TestChannel(2, 482, {}, 2, ChannelOutcome::error), TestChannel(1, 474, {}, 3)});
    passes.interval = 900;
    EXPECT_EQ(TextOf(Measured()) + TextOf(passes), TestFile("results/metrics.txt"));
}

/// A reading that is added to the catalogue is to have a unit that monitoring knows.
TEST(MetricsText, NamesTheUnitOfEveryReading)
{
    std::vector<std::pair<int32_t, std::wstring>> cells;
    for (const ReadingKind& kind : ReadingKinds()) {
        cells.emplace_back(kind.parameter, kind.isLock ? L"OK" : L"1");
    }
    const std::string text = TextOf(TestRun({TestChannel(1, 474, cells)}));
    for (const ReadingKind& kind : ReadingKinds()) {
        if (!kind.isLock && kind.parameter != levelStep) {
            EXPECT_THAT(text, HasSubstr("# UNIT tvn2x_" + std::string(kind.name) + "_"));
        }
    }
}

}  // namespace
}  // namespace tvn2x
