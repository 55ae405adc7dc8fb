#include "host/judge/RunComparison.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/TestRun.h"

namespace tvn2x {
namespace {

using testing::ElementsAre;

TEST(CompareRuns, ShowsWhatDriftedAndWhatCameAndWent)
{
    const auto channel = [](int32_t number, double frequency, const wchar_t* level, const wchar_t* ber) {
        return TestChannel(number, frequency, {{MP_RFLEV, level}, {MP_BER, ber}});
    };
    const FinishedRun before = TestRun({channel(1, 474, L"60.0", L"<1.7E-8"), channel(2, 482, L"60.0", L"1E-8"),
                                        channel(3, 490, L"60.0", L"---"), channel(4, 498, L"60.0", L"1E-8")});
    FinishedRun after = TestRun({channel(7, 474, L"58.0", L"<1.0E-8"), channel(8, 482, L"57.9", L"1E-6"),
                                 channel(9, 490, L"60.0", L"1E-8"), channel(10, 506, L"60.0", L"1E-8")});
    after.channels[2].outcome = ChannelOutcome::notSynchronised;
    const RunComparison comparison = CompareRuns(before, after, {{MP_RFLEV, 2}, {MP_BER, 1}});
    std::vector<std::wstring> texts;
    for (const RunChange& change : comparison.changes) {
        texts.push_back(change.channel + L"|" + change.parameter + L"|" + change.before + L"|" + change.after + L"|" +
                        change.change);
    }
    EXPECT_THAT(texts, ElementsAre(L"C8 482 MHz|RF level|60.0 dBµV|57.9 dBµV|-2.1 dB",
                                   L"C8 482 MHz|BER before RS|1E-8|1E-6|+2 decades",
                                   L"C9 490 MHz|outcome|synchronised|not synchronised|",
                                   L"C4 498 MHz|256-QAM channel|synchronised|not in the run|",
                                   L"C10 506 MHz|256-QAM channel|not in the run|synchronised|"));
    EXPECT_EQ(comparison.channels, 3);
    EXPECT_EQ(comparison.changed, 4);
    EXPECT_TRUE(CompareRuns(before, before, {{MP_RFLEV, 0}}).changes.empty());

    FinishedRun denser = before;
    denser.channels[3].orderOfQam = 64;
    EXPECT_EQ(CompareRuns(before, denser, {}).changes.at(0).parameter, L"64-QAM channel") << "another signal";
    EXPECT_EQ(CompareRuns(before, denser, {}).changed, 2);

    FinishedRun blind = before;
    blind.channels[0] = TestChannel(1, 474, {{MP_BER, L"1E-8"}});
    blind.channels[1].outcome = ChannelOutcome::unmeasured;
    EXPECT_EQ(CompareRuns(before, blind, {{MP_RFLEV, 9}}).changes.at(0).after, L"not measured")
        << "a reading that went";
    EXPECT_EQ(CompareRuns(before, blind, {{MP_RFLEV, 9}}).changed, 2);
    EXPECT_EQ(CompareRuns(blind, blind, {{MP_RFLEV, 9}}).changed, 1) << "what nobody measured is not unchanged";
}

}  // namespace
}  // namespace tvn2x
