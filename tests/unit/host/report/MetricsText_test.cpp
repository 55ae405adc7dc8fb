#include "host/report/MetricsText.h"

#include "host/judge/Limits.h"
#include "support/TestRun.h"

namespace tvn2x {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

std::string TextOf(const FinishedRun& run, MetricsFormat format = MetricsFormat::openMetrics)
{
    const Limits limits = OutletLimits();
    const RunJudgement judgement = Judge(run, &limits);
    RunMetrics metrics = MetricsOf(run, judgement);
    metrics.answers = true;
    return MetricsText(metrics, format);
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

const std::string site = R"(,site="\"Hill\\Top\"\nµ"})";
const std::string first = R"({channel="C1",frequency="474",qam="256")" + site;
const std::string second = R"({channel="C2",frequency="482.25",qam="256")" + site;

TEST(MetricsText, HasWhatWasMeasuredAndNothingElse)
{
    const std::string text = TextOf(Measured());
    EXPECT_THAT(
        text,
        AllOf(HasSubstr("# TYPE tvn2x_rflev_dbuv gauge\n# UNIT tvn2x_rflev_dbuv dbuv\n# HELP tvn2x_rflev"),
              HasSubstr("tvn2x_rflev_dbuv" + first + " 60.1\n"), HasSubstr("tvn2x_rflev_margin_db" + first + " 6.1\n"),
              HasSubstr("tvn2x_ber_ratio" + first + " 1.7e-08\n"),
              HasSubstr("tvn2x_iqimbal_ratio" + second + " 0.032\n"), EndsWith("# EOF\n")));
    EXPECT_THAT(text, AllOf(Not(HasSubstr("tvn2x_rflev_dbuv{channel=\"C2\"")), Not(HasSubstr("tvn2x_cs_db")),
                            Not(HasSubstr("tvn2x_lock{channel=\"C3\"")), Not(HasSubstr("tvn2x_mer_db{channel=\"C4\"")),
                            Not(HasSubstr("pass_timestamp")), Not(HasSubstr("pass_interval"))));
}

TEST(MetricsText, NamesBoundsLocksAndVerdicts)
{
    const std::string text = TextOf(Measured());
    EXPECT_THAT(
        text, AllOf(HasSubstr(R"(",reading="ber",side="below"} 1)"), HasSubstr(R"(",reading="rflev",side="below"} 1)"),
                    HasSubstr(R"(µ",lock="ref"} 1)"), HasSubstr(R"(µ",lock="sync"} 0)"),
                    HasSubstr(R"(tvn2x_verdict{channel="C2",frequency="482.25",qam="256",site="\"Hill\\Top\"\nµ",)"
                              R"(tvn2x_verdict="fail"} 1)"),
                    HasSubstr(R"(µ",verdict="not measured"} 3)"), HasSubstr(R"(µ",verdict="fail"} 1)"),
                    HasSubstr("tvn2x_receiver_up")));
    // Two channels that nothing else tells apart.
    EXPECT_THAT(text, HasSubstr(R"(µ",number="5",tvn2x_verdict="not measured"} 1)"));
}

TEST(MetricsText, CountsAndDatesWhatWasMeasured)
{
    FinishedRun run = TestRun({TestChannel(1, 474, {}), TestChannel(2, 482, {}), TestChannel(1, 474, {}, 2),
                               TestChannel(2, 482, {}, 2, ChannelOutcome::error), TestChannel(1, 474, {}, 3)});
    run.interval = 900;
    const std::string text = TextOf(run);
    EXPECT_THAT(text, AllOf(HasSubstr("# TYPE tvn2x_measurements counter\n"),
                            HasSubstr(R"(tvn2x_measurements_total{channel="C1",frequency="474",qam="256"} 3)"),
                            HasSubstr(R"(tvn2x_instrument_errors_total{channel="C1",frequency="474",qam="256"} 0)"),
                            HasSubstr(R"(tvn2x_instrument_errors_total{channel="C2",frequency="482",qam="256"} 1)"),
                            HasSubstr("tvn2x_pass 3\n"), HasSubstr("tvn2x_pass_duration_seconds 2.500\n"),
                            HasSubstr("tvn2x_pass_timestamp_seconds 1795265946.373\n"),
                            HasSubstr("tvn2x_pass_interval_seconds 900.000\n")));
}

TEST(MetricsText, HasAFormForReadersOfTheOlderOne)
{
    const std::string text = TextOf(Measured(), MetricsFormat::prometheus);
    EXPECT_THAT(text,
                AllOf(HasSubstr("# TYPE tvn2x_measurements_total counter\n"), HasSubstr("# TYPE tvn2x_verdict gauge\n"),
                      HasSubstr("# TYPE tvn2x_run_info gauge\n"), Not(HasSubstr("# UNIT")), Not(HasSubstr("# EOF"))));
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
