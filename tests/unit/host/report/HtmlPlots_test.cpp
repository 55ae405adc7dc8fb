#include "host/report/HtmlPlots.h"

#include <regex>

#include "host/report/Chart.h"
#include "support/TestFiles.h"
#include "support/TestRun.h"
#include "support/TimeZone.h"

namespace tvn2x {
namespace {

/// The rows of a report: channels with one reading each, judged.
class Rows
{
public:
    Rows(int32_t parameter, const std::vector<std::pair<double, const wchar_t*>>& cells, const std::string& content)
        : limits(ReadLimits(content, L""))
    {
        std::vector<ChannelResult> channels;
        for (const auto& [frequency, cell] : cells) {
            channels.push_back(TestChannel(static_cast<int32_t>(channels.size()) + 1, frequency, {{parameter, cell}}));
        }
        run = TestRun(channels);
        judgement_ = Judge(run, &limits);
        const auto steps = LevelSteps(run);
        for (size_t i = 0; i < channels.size(); ++i) {
            all.push_back({run.channels[i], judgement_.channels[i], steps[i]});
        }
    }

    Limits limits;
    FinishedRun run;
    std::vector<ReportRow> all;

private:
    RunJudgement judgement_;
};

/// Points whose names are in each other's way, at the upper edge and at the right one.
ReportPlot CrowdedPlot()
{
    Chart chart(L"Crowded", L"Names that are in each other's way", {L"x", 400, 800}, {L"y", 40, 80});
    const std::tuple<double, double, const wchar_t*> points[] = {
        {500, 60, L"one"}, {505, 60, L"two"}, {506, 59, L"three"}, {600, 79.5, L"top"}, {800, 60, L"end"}};
    chart.Point(550, 79, Verdict::fail, Bound::above, L"", L"a name");
    for (const auto& [x, y, label] : points) {
        chart.Point(x, y, Verdict::fail, Bound::exact, L"", label);
    }
    for (int i = 0; i < 3; ++i) {
        chart.Point(700, 75, Verdict::fail, Bound::exact, L"", L"a label of forty characters, no fewer ab");
    }
    return {chart.Svg(), "No name covers another. Three long ones are at one place, which has room for two."};
}

/// Of fourteen channels, the last of which has nothing but noise.
ReportPlot BudgetsPlot()
{
    std::vector<ChannelResult> channels;
    for (int32_t i = 0; i < 14; ++i) {
        channels.push_back(TestChannel(i, 474 + 8 * i, {{MP_MER, std::to_wstring(40 - i)}, {MP_SN, L"41"}}));
    }
    const ChannelJudgement judgement;
    std::vector<ReportRow> rows;
    for (const ChannelResult& channel : channels) {
        rows.push_back({channel, judgement, {}});
    }
    return BudgetPlot(rows);
}

/// From a few seconds to some years, in a zone whose hours are not those of UTC.
std::string TimePlots()
{
    const TimeZone india("IST-5:30");
    constexpr double begin = 1'795'260'007.5;
    std::string drawn;
    for (const double span : {8.0, 500.0, 4e4, 1.5e5, 3e6, 1e8}) {
        drawn += Chart(L"Time", L"Marks at whole local times", {L"Local time", begin, begin + span, false, true},
                       {L"y", 1e-3, 1e-2, true})
                     .Svg();
    }
    return drawn;
}

TEST(Plots, AreThoseOfThePageThatOneCanLookAt)
{
    const Rows levels(MP_RFLEV, {{474, L"60.0"}, {482, L"52.5"}, {490, L"45.1"}, {498, L"---"}, {770, L"58.4"}},
                      "[rflev]\nFail Below=48\nWarn Below=54\nWarn Above=74\nFail Above=80\n");
    Rows mers(MP_MER, {{474, L"35"}, {482, L"34"}, {490, L"36"}, {498, L"34"}},
              "[mer]\nFail Below=32\n[mer 64-QAM]\nFail Below=26\n[mer 16-QAM]\nFail Below=26\n");
    mers.run.channels[1].orderOfQam = 64;
    mers.run.channels[2].orderOfQam = 16;
    const Rows steps(MP_RFLEV, {{474, L"60.0"}, {482, L"61.5"}, {490, L"57.3"}},
                     "[step]\nWarn Above=2\nFail Above=3\n");
    const Rows ratios(MP_BER, {{474, L"1E-6"}, {482, L"<1E-8"}, {490, L"2E-4"}}, "[ber]\nFail Above=1e-4\n");
    // As a page, so that one can look at it in a browser.
    std::string drawn = "<!DOCTYPE html>\n<meta charset=\"utf-8\">\n<style>svg { display: block }</style>\n";
    for (const ReportPlot& plot :
         {LevelPlot(levels.all, &levels.limits), MerPlot(mers.all, &mers.limits), StepPlot(steps.all, &steps.limits),
          BerPlot(ratios.all, &ratios.limits), BudgetsPlot(), CrowdedPlot(),
          ReportPlot{TimePlots(), "Over some seconds, minutes, hours, days, weeks and years."}}) {
        drawn += std::regex_replace(plot.svg, std::regex("><"), ">\n<") + "\n<p>" + plot.caption + "</p>\n";
    }
    ExpectTold("plots.txt", drawn);
    EXPECT_THAT(LevelPlot(levels.all, nullptr).caption, testing::Not(testing::HasSubstr("Limit")));
}

TEST(Plots, OfNothingAreNone)
{
    const Rows rows(MP_SN, {{474, L"41"}}, "[mer]\nFail Below=31\n");
    for (const ReportPlot& plot : {LevelPlot(rows.all, &rows.limits), StepPlot(rows.all, nullptr),
                                   MerPlot(rows.all, nullptr), BerPlot(rows.all, nullptr), BudgetPlot(rows.all)}) {
        EXPECT_EQ(plot.svg + plot.caption, "");
    }
}

}  // namespace
}  // namespace tvn2x
