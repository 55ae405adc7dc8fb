#include <cmath>

#include "host/judge/SignalAnalysis.h"
#include "host/report/Chart.h"
#include "host/report/HtmlReport.h"
#include "host/report/JunitReport.h"
#include "host/report/RunGrid.h"
#include "support/TestFiles.h"
#include "support/TestRun.h"

namespace tvn2x {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

/// A channel of a modulator out of adjustment.
ChannelResult Misadjusted(int32_t number, double frequency)
{
    return TestChannel(number, frequency,
                       {{MP_RFLEV, L"62.9"},
                        {MP_BER, L"9.5E-5"},
                        {MP_IQIMBAL, L"3.2"},
                        {MP_IQPHASE, L"-1.58"},
                        {MP_CS, L"36.6"},
                        {MP_PHASJIT, L"0.28"},
                        {MP_CI, L"53.6"},
                        {MP_SN, L"42.1"},
                        {MP_MER, L"31.3"}});
}

TEST(ErrorBudget, AddsUpToTheMerAndNamesItsLargestPart)
{
    const auto budget = BudgetOf(Misadjusted(1, 354));
    EXPECT_EQ(budget->Largest(), Impairment::iqImbalance);
    double power = 0, share = 0;
    for (size_t i = 0; i < impairments; ++i) {
        power += budget->power[i];
        share += budget->share[i];
    }
    EXPECT_NEAR(-10 * std::log10(power), 31.3, 0.2);
    EXPECT_NEAR(share, 1, 1e-9);
    EXPECT_EQ(BudgetOf(TestChannel(1, 354, {{MP_MER, L"---"}})), std::nullopt);
    EXPECT_EQ(BudgetOf(TestChannel(1, 354, {{MP_MER, L"31"}}))->Largest(), Impairment::other);

    // A single impairment gives the MER that it allows.
    const std::tuple<int32_t, const wchar_t*, Impairment, double> cases[] = {
        {MP_PHASJIT, L"0.5", Impairment::phaseJitter, 41.2},
        {MP_IQIMBAL, L"2", Impairment::iqImbalance, 40.0},
        {MP_IQPHASE, L"1", Impairment::quadratureError, 41.2},
        {MP_CS, L"35", Impairment::carrierSuppression, 35.0}};
    for (const auto& [reading, cell, impairment, expected] : cases) {
        const auto single = BudgetOf(TestChannel(1, 474, {{reading, cell}, {MP_MER, L"30"}}));
        EXPECT_NEAR(-10 * std::log10(single->power[static_cast<size_t>(impairment)]), expected, 0.05) << cell;
    }
}

TEST(ChartAxis, EndsAtRoundStepsAndKeepsValuesInside)
{
    const auto rounded = [](double low, double high, bool isLogarithmic) {
        ChartAxis axis{L"", low, high, isLogarithmic};
        axis.Round(5);
        return axis;
    };
    const ChartAxis linear = rounded(43.6, 74, false), decades = rounded(1.7e-8, 6.3e-4, true);
    EXPECT_EQ(linear.low, 40);
    EXPECT_EQ(linear.high, 80);
    EXPECT_DOUBLE_EQ(decades.low, 1e-8);
    EXPECT_DOUBLE_EQ(decades.high, 1e-3);
    EXPECT_NEAR(decades.Position(1e-5), 0.6, 1e-9);
    EXPECT_EQ(decades.Position(0), 0);
    EXPECT_LT(rounded(5, 5, false).low, 5);
    EXPECT_GT(rounded(5, 5, false).high, 5);
}

TEST(HtmlReport, StandsAloneWhateverTheTextsAre)
{
    FinishedRun run = TestRun({Misadjusted(1, 354), Misadjusted(2, 362), Misadjusted(3, 370)});
    run.channels[1].label = L"</td><script>alert(1)</script>&\"'\x01";
    run.columns[1].caption = L"<b>";
    run.protocol = {.site = L"<Linz>", .outlet = L"3rd floor", .by = L"A. Huber", .order = L"4711", .remark = L"rain"};
    run.receiver.simulation = {L"C:\\data\\town.ini", L"0123", L"7"};
    run.channels[0].details = {L"<a.wav>, 1.0 of 2.0 s", false, {{32, -32}}};
    run.channels.push_back(TestChannel(4, 378, {{MP_RFLEV, L"60.0"}}, 1, ChannelOutcome::notSynchronised));
    run.selection.push_back({4, L"C4", 378, 6.9});
    run.setups.push_back({L"C:\\data\\more.ini", L"", L"", 4, run.setups[0].settings});
    run.setups[1].settings.orderOfQam = run.channels[3].orderOfQam = 64;
    const Limits limits = OutletLimits();
    const std::string html = HtmlReport(run, Judge(run, &limits), &limits);
    for (const char* text : {"<script", "<b>", "\x01", "src="}) {
        EXPECT_THAT(html, Not(HasSubstr(text)));
    }
    for (const char* text : {"<h1>Cable network scan: net.ini, more.ini</h1>",
                             ">QAM</th>",
                             ">64-QAM, ",
                             "FAIL: 0 of 4 channels pass, 4 fail.",
                             "Worst: C4 378 MHz 64-QAM, not synchronised",
                             "class=\"band\">Simulated receiver: network model town.ini, SHA-256 0123, seed 7<",
                             "mostly I/Q imbalance",
                             "RF level",
                             "Level steps",
                             "Modulation error",
                             "Bit error ratio",
                             "What eats the MER",
                             "<title>Constellation of C1 354 MHz",
                             "d=\"M170.0 170.0h0\"",
                             "&lt;a.wav&gt;, 1.0 of 2.0 s",
                             "&lt;Linz&gt;",
                             "3rd floor",
                             "A. Huber",
                             "4711",
                             "rain",
                             "input Receiver (75 ohm)",
                             "Cable outlets, 20",
                             ", outlet, SHA-256 "}) {
        EXPECT_THAT(html, HasSubstr(text));
    }
    EXPECT_THAT(RunGrid(run, 1).Render(120), HasSubstr(L"64  C4"));
    EXPECT_THAT(HtmlReport(TestRun({}), Judge(TestRun({}), nullptr), nullptr),
                AllOf(StartsWith("<!DOCTYPE html>"), HasSubstr("none: a channel passes when all locks hold")));
}

TEST(HtmlReport, ShowsTheWorstOfSeveralPasses)
{
    FinishedRun run = TestRun({TestChannel(1, 474, {{MP_MER, L"39.1"}}), TestChannel(1, 474, {{MP_MER, L"28.2"}}, 2),
                               TestChannel(1, 474, {{MP_MER, L"39.3"}}, 3)});
    run.passes = 3;
    const Limits limits = OutletLimits();
    const std::string html = HtmlReport(run, Judge(run, &limits), &limits);
    EXPECT_THAT(html, HasSubstr(">28.2</td>"));
    EXPECT_THAT(html, Not(HasSubstr(">39.1</td>")));
}

TEST(JunitReport, IsGreenForNothingThatWasNotSeen)
{
    FinishedRun run = TestRun({Misadjusted(1, 354), TestChannel(2, 482, {}, 1, ChannelOutcome::error),
                               TestChannel(3, 490, {}, 1, ChannelOutcome::unmeasured), TestChannel(1, 354, {}, 2)});
    run.passes = 2;
    const Limits limits = OutletLimits();
    const std::string xml = JunitReport(run, Judge(run, &limits));
    for (const char* text :
         {R"(<testsuite name="net pass 1" tests="3" failures="1" errors="2" skipped="0" time="3.750")",
          R"(<testsuite name="net pass 2" tests="1" failures="0" errors="1" skipped="0")",
          R"(<testsuites name="net" tests="5" failures="1" errors="4")",
          R"(<error message="FAIL, INCOMPLETE: 0 of 6 measurements pass, 1 fails, 1 error of the instrument, 4 not )",
          R"(<failure message="MER 31.3 dB is 0.7 dB below the limit of 32 dB" type="limit">)",
          "the instrument ended the channel with &quot;Control Error&quot;",
          R"(<error message="the channel was not measured" type="not measured">)",
          R"(<error message="RF level was not measured; )"}) {
        EXPECT_THAT(xml, HasSubstr(text));
    }
}

}  // namespace
}  // namespace tvn2x
