#include <cmath>

#include "host_model/Chart.h"
#include "host_model/HtmlReport.h"
#include "host_model/JunitReport.h"
#include "host_model/SignalAnalysis.h"
#include "host_model/TestFiles.h"
#include "host_model/TestRun.h"

namespace tvn2x {
namespace {

using testing::HasSubstr;
using testing::Not;

/// The readings of a modulator out of adjustment.
ChannelResult Misadjusted(int32_t number, double frequency)
{
    return TestChannel(number, frequency,
                       {{parameter::level, L"62.9"},
                        {parameter::ber, L"9.5E-5"},
                        {parameter::iqImbalance, L"3.2"},
                        {parameter::iqPhase, L"-1.58"},
                        {parameter::carrierSuppression, L"36.6"},
                        {parameter::phaseJitter, L"0.28"},
                        {parameter::carrierToInterference, L"53.6"},
                        {parameter::signalToNoise, L"42.1"},
                        {parameter::mer, L"31.3"}});
}

/// Names of tags that are open at the end, "" where each is closed in its order.
std::string Unclosed(const std::string& markup)
{
    std::vector<std::string> open;
    for (size_t at = markup.find('<'); at != std::string::npos; at = markup.find('<', at + 1)) {
        const std::string tag = markup.substr(at + 1, markup.find('>', at) - at - 1);
        const std::string name = tag.substr(0, tag.find_first_of(" \n/"));
        if (tag.starts_with('/')) {
            if (open.empty() || tag.substr(1) != open.back()) {
                return tag;
            }
            open.pop_back();
        } else if (!tag.ends_with('/') && !tag.starts_with('!') && !tag.starts_with('?')) {
            open.push_back(name);
        }
    }
    return open.empty() ? "" : open.back();
}

TEST(ErrorBudget, AddsUpToTheMerAndNamesItsLargestPart)
{
    const auto budget = BudgetOf(Misadjusted(1, 354));
    ASSERT_TRUE(budget);
    EXPECT_EQ(budget->Largest(), Impairment::iqImbalance);
    double power = 0, share = 0;
    for (size_t i = 0; i < impairments; ++i) {
        power += budget->power[i];
        share += budget->share[i];
    }
    EXPECT_NEAR(-10 * std::log10(power), 31.3, 0.2);
    EXPECT_NEAR(share, 1, 1e-9);
    EXPECT_EQ(BudgetOf(TestChannel(1, 354, {{parameter::mer, L"---"}})), std::nullopt);
    EXPECT_EQ(BudgetOf(TestChannel(1, 354, {{parameter::mer, L"31"}}))->Largest(), Impairment::other);
}

TEST(ErrorBudget, SingleImpairmentsGiveTheMerThatTheyAllow)
{
    const struct
    {
        int32_t parameter;
        const wchar_t* cell;
        Impairment impairment;
        double mer;
    } cases[] = {{parameter::phaseJitter, L"0.5", Impairment::phaseJitter, 41.2},
                 {parameter::iqImbalance, L"2", Impairment::iqImbalance, 40.0},
                 {parameter::iqPhase, L"1", Impairment::quadratureError, 41.2},
                 {parameter::carrierSuppression, L"35", Impairment::carrierSuppression, 35.0}};
    for (const auto& c : cases) {
        const auto budget = BudgetOf(TestChannel(1, 474, {{c.parameter, c.cell}, {parameter::mer, L"30"}}));
        EXPECT_NEAR(-10 * std::log10(budget->power[static_cast<size_t>(c.impairment)]), c.mer, 0.05) << c.mer;
    }
}

TEST(LevelTilt, FollowsTheSquareRootOfTheFrequency)
{
    std::vector<ChannelResult> channels;
    for (const double frequency : {100.0, 225.0, 400.0, 625.0}) {
        const std::wstring level = std::to_wstring(70 - 0.5 * std::sqrt(frequency));
        channels.push_back(TestChannel(1, frequency, {{parameter::level, level}}));
    }
    const auto tilt = FitTilt({&channels[0], &channels[1], &channels[2], &channels[3]});
    ASSERT_TRUE(tilt);
    EXPECT_NEAR(tilt->Tilt(), -7.5, 1e-6);
    EXPECT_NEAR(tilt->At(225), 62.5, 1e-6);
    EXPECT_NEAR(tilt->spread, 0, 1e-6);
    EXPECT_FALSE(FitTilt({&channels[0], &channels[0], &channels[0]}));
    EXPECT_FALSE(FitTilt({&channels[0], &channels[1]}));
}

TEST(ChartAxis, EndsAtRoundStepsAndKeepsValuesInside)
{
    ChartAxis linear{"", 43.6, 74, false};
    linear.Round(5);
    EXPECT_EQ(linear.low, 40);
    EXPECT_EQ(linear.high, 80);
    ChartAxis decades{"", 1.7e-8, 6.3e-4, true};
    decades.Round(5);
    EXPECT_DOUBLE_EQ(decades.low, 1e-8);
    EXPECT_DOUBLE_EQ(decades.high, 1e-3);
    EXPECT_NEAR(decades.Position(1e-5), 0.6, 1e-9);
    EXPECT_EQ(decades.Position(0), 0);
    ChartAxis flat{"", 5, 5, false};
    flat.Round(5);
    EXPECT_LT(flat.low, 5);
    EXPECT_GT(flat.high, 5);
}

TEST(HtmlReport, StandsAloneAndIsWellFormedWhateverTheTextsAre)
{
    FinishedRun run = TestRun({Misadjusted(1, 354), Misadjusted(2, 362), Misadjusted(3, 370)});
    run.channels[1].label = "</td><script>alert(1)</script>&\"'\x01";
    run.columns[1].caption = "<b>";
    const Limits limits = OutletLimits();
    const std::string html = HtmlReport(run, Judge(run, &limits), &limits);
    EXPECT_EQ(Unclosed(html.substr(0, html.find("<style>")) + html.substr(html.find("</style>") + 8)), "");
    EXPECT_THAT(html, Not(HasSubstr("<script")));
    EXPECT_THAT(html, Not(HasSubstr("<b>")));
    EXPECT_THAT(html, Not(HasSubstr("\x01")));
    EXPECT_THAT(html, Not(HasSubstr("src=")));
    EXPECT_THAT(html, HasSubstr("FAIL: 0 of 3 channels pass, 3 fail."));
    EXPECT_THAT(html, HasSubstr("mostly I/Q imbalance"));
    for (const char* title : {"RF level", "Level steps", "Modulation error", "Bit error ratio", "What eats the MER"}) {
        EXPECT_THAT(html, HasSubstr(title));
    }
    EXPECT_EQ(Unclosed(HtmlReport(TestRun({}), Judge(TestRun({}), nullptr), nullptr).substr(0, 15)), "");
}

TEST(HtmlReport, ShowsTheWorstOfSeveralPasses)
{
    FinishedRun run =
        TestRun({TestChannel(1, 474, {{parameter::mer, L"39.1"}}), TestChannel(1, 474, {{parameter::mer, L"28.2"}}, 2),
                 TestChannel(1, 474, {{parameter::mer, L"39.3"}}, 3)});
    run.passes = 3;
    const Limits limits = OutletLimits();
    const std::string html = HtmlReport(run, Judge(run, &limits), &limits);
    EXPECT_THAT(html, HasSubstr(">28.2</td>"));
    EXPECT_THAT(html, Not(HasSubstr(">39.1</td>")));
}

TEST(JunitReport, TellsFailuresErrorsAndSkippedCasesApart)
{
    ChannelResult broken = TestChannel(2, 482, {});
    broken.outcome = ChannelOutcome::error;
    broken.status = "Control Error";
    ChannelResult missed = TestChannel(3, 490, {});
    missed.outcome = ChannelOutcome::unmeasured;
    FinishedRun run = TestRun({Misadjusted(1, 354), broken, missed, TestChannel(1, 354, {}, 2)});
    run.passes = 2;
    const Limits limits = OutletLimits();
    const std::string xml = JunitReport(run, Judge(run, &limits));
    EXPECT_EQ(Unclosed(xml), "");
    EXPECT_THAT(
        xml, HasSubstr(R"(<testsuite name="net pass 1" tests="3" failures="1" errors="1" skipped="1" time="3.750")"));
    EXPECT_THAT(xml, HasSubstr(R"(<testsuite name="net pass 2" tests="1" failures="0" errors="0" skipped="0")"));
    EXPECT_THAT(xml, HasSubstr(R"(<failure message="MER 31.3 dB is 0.7 dB below the limit of 32 dB" type="limit">)"));
    EXPECT_THAT(xml, HasSubstr("the instrument ended the channel with &quot;Control Error&quot;"));
    EXPECT_THAT(xml, HasSubstr(R"(<skipped message="the channel was not measured"/>)"));
}

}  // namespace
}  // namespace tvn2x
