#include "host/report/HtmlPlots.h"

#include <gmock/gmock.h>

#include <regex>

#include "fmt/format.h"
#include "host/judge/SignalAnalysis.h"
#include "host/report/Chart.h"
#include "support/TestRun.h"

namespace tvn2x {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

/// Every match of a pattern, as its groups.
std::vector<std::vector<std::string>> Matches(const std::string& text, const std::string& pattern)
{
    const std::regex expression(pattern);
    std::vector<std::vector<std::string>> matches;
    for (std::sregex_iterator at(text.begin(), text.end(), expression), end; at != end; ++at) {
        matches.emplace_back(std::next(at->begin()), at->end());
    }
    return matches;
}

/// The picture of a chart, whose area is 650 x 180 from 58, 30 on; its places are read as values between the axes'
/// ends.
class Picture
{
public:
    Picture(std::string drawn, std::pair<double, double> x, std::pair<double, double> y)
        : svg(std::move(drawn)), x_(std::move(x)), y_(std::move(y))
    {
    }

    double X(const std::string& left, double shift = 0) const
    {
        return x_.first + (std::stod(left) + shift - 58) / 650 * (x_.second - x_.first);
    }
    double Y(const std::string& top, double shift = 0) const
    {
        return y_.second - (std::stod(top) + shift - 30) / 180 * (y_.second - y_.first);
    }

    /// "pass 474.0 60.0": every mark, by shape.
    std::vector<std::string> Marks() const
    {
        struct
        {
            const char* name;
            const char* pattern;
            double right, down;  ///< from the coordinates to the place that is marked
        } const shapes[] = {
            {"pass", R"x(<circle class="pass" cx="([\d.]+)" cy="([\d.]+)")x", 0, 0},
            {"warning", R"x(<polygon class="warning" points="[\d.]+,[\d.]+ [\d.]+,[\d.]+ ([\d.]+),([\d.]+)")x", 0, 5},
            {"fail", R"x(<rect class="fail" x="([\d.]+)" y="([\d.]+)" width="8" height="8")x", 4, 4},
            {"missing", R"x(<path class="unmeasured-line" d="M([\d.]+),([\d.]+)l8,8m0,-8l-8,8")x", 4, 4},
            {"below", R"x(<path class="pass-line" d="M([\d.]+),([\d.]+)h8m-4,0v9m-3,-3l3,3l3,-3")x", 4, 0},
            {"above", R"x(<path class="pass-line" d="M([\d.]+),([\d.]+)h8m-4,0v-9m-3,3l3,-3l3,3")x", 4, 0},
        };
        std::vector<std::string> marks;
        for (const auto& [name, pattern, right, down] : shapes) {
            for (const auto& place : Matches(svg, pattern)) {
                marks.push_back(fmt::format("{} {:.1f} {:.1f}", name, X(place[0], right), Y(place[1], down)));
            }
        }
        return marks;
    }

    /// "fail 48.0 " with the dashes of the line.
    std::vector<std::string> LimitLines() const
    {
        std::vector<std::string> lines;
        for (const auto& line :
             Matches(svg, R"x(<line class="(\w+)-line" x1="58" x2="708" y1="([\d.]+)" y2="\2"[^/]*"1.5"([^/]*)/>)x")) {
            lines.push_back(fmt::format("{} {:.1f}{}", line[0], Y(line[1]), line[2]));
        }
        return lines;
    }

    std::string svg;

private:
    std::pair<double, double> x_, y_;
};

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

TEST(LevelPlot, MarksEveryLevelAtItsFrequencyBetweenTheLimits)
{
    const Rows rows(MP_RFLEV, {{474, L"60.0"}, {482, L"52.5"}, {490, L"45.1"}, {498, L"---"}, {770, L"58.4"}},
                    "[rflev]\nFail Below=48\nWarn Below=54\nWarn Above=74\nFail Above=80\n");
    const ReportPlot plot = LevelPlot(rows.all, &rows.limits);
    const Picture picture(plot.svg, {466, 778}, {40, 80});
    EXPECT_THAT(picture.Marks(), UnorderedElementsAre("pass 474.0 60.0", "pass 770.0 58.4", "warning 482.0 52.5",
                                                      "fail 490.0 45.1", "missing 498.0 40.0"));
    const std::string dashes = R"( stroke-dasharray="6 4")";
    EXPECT_THAT(picture.LimitLines(),
                UnorderedElementsAre("fail 48.0", "fail 80.0", "warning 54.0" + dashes, "warning 74.0" + dashes));
    for (const char* const tick :
         {R"(y1="210.0" y2="210.0" stroke="#cccccc"/><text x="52" y="214.0" text-anchor="end" fill="currentColor">40<)",
          R"(y1="30.0" y2="30.0" stroke="#cccccc"/><text x="52" y="34.0" text-anchor="end" fill="currentColor">80<)",
          R"(y1="75.0" y2="75.0" stroke="#cccccc"/><text x="52" y="79.0" text-anchor="end" fill="currentColor">70<)",
          R"(x1="128.8" x2="128.8" y1="210" y2="215" stroke="#cccccc"/><text x="128.8" y="227" text-anchor="middle" )"
          R"(fill="currentColor">500<)"}) {
        EXPECT_THAT(plot.svg, HasSubstr(tick));
    }
    EXPECT_THAT(plot.caption, HasSubstr(" Limit (solid line): 48 to 80 dBµV. Warning (dashed line): 54 to 74 dBµV."));
    EXPECT_THAT(plot.svg, HasSubstr("<title>C3 490 MHz: 45.1 dBµV</title>"));

    std::vector<const ChannelResult*> channels;
    for (const ReportRow& row : rows.all) {
        channels.push_back(&row.channel);
    }
    const auto tilt = FitTilt(channels);
    const auto curve = Matches(Matches(plot.svg, "<polyline[^>]*points=\"([^\"]*)\"").at(0)[0], R"(([\d.]+),([\d.]+))");
    ASSERT_GT(curve.size(), 20u);
    EXPECT_NEAR(picture.X(curve.front()[0]), 474, 0.1);
    EXPECT_NEAR(picture.X(curve.back()[0]), 770, 0.1);
    for (const auto& place : curve) {
        EXPECT_NEAR(picture.Y(place[1]), tilt->At(picture.X(place[0])), 0.05);
    }
    EXPECT_THAT(plot.caption, HasSubstr(fmt::format("{:+.1f} dB from 474 to 770 MHz; the levels spread {:.1f} dB round",
                                                    tilt->Tilt(), tilt->spread)));
    EXPECT_THAT(LevelPlot(rows.all, nullptr).caption, testing::Not(HasSubstr("Limit")));
}

TEST(MerPlot, DrawsTheLimitsOfEachOrderOfQamWhereItsChannelsAre)
{
    Rows rows(MP_MER, {{474, L"35"}, {482, L"34"}, {490, L"36"}, {498, L"34"}},
              "[mer]\nFail Below=32\n[mer 64-QAM]\nFail Below=26\n[mer 16-QAM]\nFail Below=26\n");
    rows.run.channels[1].orderOfQam = 64;
    rows.run.channels[2].orderOfQam = 16;
    const ReportPlot plot = MerPlot(rows.all, &rows.limits);
    const Picture picture(plot.svg, {466, 506}, {26, 36});
    std::vector<std::string> lines;
    for (const auto& line :
         Matches(plot.svg, R"x(<line class="fail-line" x1="([\d.]+)" x2="([\d.]+)" y1="([\d.]+)")x")) {
        lines.push_back(
            fmt::format("{:.0f} to {:.0f} {:.0f}", picture.X(line[0]), picture.X(line[1]), picture.Y(line[2])));
    }
    EXPECT_THAT(lines, ElementsAre("466 to 478 32", "478 to 486 26", "486 to 494 26", "494 to 506 32"));
    EXPECT_THAT(plot.caption, HasSubstr("Limit (solid line): at least 26 dB (16/64-QAM), at least 32 dB (256-QAM)."));
}

TEST(LevelPlot, NamesWhatIsNotGoodWithoutCoveringAName)
{
    Chart chart(L"t", L"d", {L"x", 400, 800}, {L"y", 40, 80});
    const std::tuple<double, double, const wchar_t*> points[] = {
        {500, 60, L"one"}, {505, 60, L"two"}, {506, 59, L"three"}, {600, 79.5, L"top"}, {800, 60, L"end"}};
    for (const auto& [x, y, label] : points) {
        chart.Point(x, y, Verdict::fail, Bound::exact, L"", label);
    }
    for (int i = 0; i < 3; ++i) {  // there is room for two
        chart.Point(700, 75, Verdict::fail, Bound::exact, L"", L"a label of forty characters, no fewer ab");
    }
    std::vector<std::string> labels;
    for (const auto& label : Matches(
             chart.Svg(), R"x(<text x="([\d.]+)" y="([\d.]+)" font-size="10" text-anchor="(\w+)"[^>]*>([^<]*)<)x")) {
        labels.push_back(fmt::format("{} {} {} {}", label[3], label[0], label[1], label[2]));
    }
    // A mark's name stands 7 above it, 15 below it at the upper edge.
    EXPECT_THAT(labels, ElementsAre("one 220.5 113.0 middle", "two 228.6 101.0 middle", "three 230.2 81.5 middle",
                                    "top 383.0 47.2 middle", "end 699.0 113.0 middle",
                                    "a label of fort… 545.5 45.5 middle", "a label of fort… 545.5 33.5 middle"));
}

TEST(StepPlot, DrawsEachStepFromZeroOverHalfAChannel)
{
    const Rows rows(MP_RFLEV, {{474, L"60.0"}, {482, L"61.5"}, {490, L"57.3"}}, "[step]\nWarn Above=2\nFail Above=3\n");
    const ReportPlot plot = StepPlot(rows.all, &rows.limits);
    const Picture picture(plot.svg, {466, 498}, {-6, 6});
    std::vector<std::string> bars;
    for (const auto& bar : Matches(
             picture.svg, R"x(<rect class="(\w+)" x="([\d.]+)" y="([\d.]+)" width="([\d.]+)" height="([\d.]+)")x")) {
        const double width = std::stod(bar[3]), height = std::stod(bar[4]);
        bars.push_back(fmt::format("{} {:.1f} {:.1f} to {:.1f} {:.1f}", bar[0], picture.X(bar[1]), picture.Y(bar[2]),
                                   picture.X(bar[1], width), picture.Y(bar[2], height)));
    }
    EXPECT_THAT(bars, ElementsAre("pass 480.0 1.5 to 484.0 0.0", "fail 488.0 0.0 to 492.0 -4.2"));
    EXPECT_THAT(picture.LimitLines(), UnorderedElementsAre("fail 3.0", "fail -3.0", testing::StartsWith("warning 2.0 "),
                                                           testing::StartsWith("warning -2.0 ")));
    EXPECT_THAT(plot.caption, HasSubstr("the largest step is -4.2 dB at C3 490 MHz."));
}

TEST(BerPlot, MarksRatiosByTheirPowersAndBoundsByArrows)
{
    const Rows rows(MP_BER, {{474, L"1E-6"}, {482, L"<1E-8"}, {490, L"2E-4"}}, "[ber]\nFail Above=1e-4\n");
    const ReportPlot plot = BerPlot(rows.all, &rows.limits);
    const Picture picture(plot.svg, {466, 498}, {-9, -3});
    EXPECT_THAT(picture.Marks(), UnorderedElementsAre("pass 474.0 -6.0", "below 482.0 -8.0", "fail 490.0 -3.7"));
    EXPECT_THAT(picture.LimitLines(), ElementsAre("fail -4.0"));
    EXPECT_THAT(plot.svg,
                HasSubstr(R"(y="214.0" text-anchor="end" fill="currentColor">10<tspan dy="-5" font-size="8">-9<)"))
        << "room for the arrow";
}

TEST(BudgetPlot, StacksTheSharesOfTheChannelsWithTheLowestMer)
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
    const auto [svg, caption] = BudgetPlot(rows);
    EXPECT_THAT(caption, HasSubstr("Error power of the 12 channels with the lowest MER"));
    const auto names = Matches(svg, R"x(<text x="0" y="([\d.]+)"[^>]*>C(\d+) )x");
    ASSERT_EQ(names.size(), 12u);
    const auto bars = Matches(
        svg,
        R"x(<rect class="(\w+)" x="([\d.]+)" y="([\d.]+)" width="([\d.]+)" height="15"[^>]*><title>([^:]*): (\d+) %)x");
    ASSERT_EQ(bars.size(), 12 * impairments);
    for (size_t row = 0; row < names.size(); ++row) {
        EXPECT_EQ(names[row][1], std::to_string(13 - row)) << "the lowest first";
        EXPECT_EQ(std::stod(names[row][0]), 60 + 21.0 * static_cast<double>(row)) << "each below the other";
        const auto budget = BudgetOf(channels[13 - row]);
        double left = 210;
        for (size_t i = 0; i < impairments; ++i) {
            const auto& bar = bars[row * impairments + i];
            EXPECT_NEAR(std::stod(bar[1]), left, 0.06);
            EXPECT_EQ(std::stod(bar[2]) + 12, std::stod(names[row][0])) << "beside its name";
            EXPECT_NEAR(std::stod(bar[3]), 320 * budget->share[i], 0.06);
            EXPECT_EQ(bar[4], ImpairmentName(static_cast<Impairment>(i)));
            EXPECT_EQ(std::stol(bar[5]), std::lround(100 * budget->share[i]));
            left += 320 * budget->share[i];
        }
    }
    EXPECT_THAT(svg, HasSubstr(R"(viewBox="0 0 720 300")"));
    EXPECT_THAT(svg, HasSubstr(">27.0 dB<"));
    const auto legend = Matches(svg, R"x(<rect class="\w+" x="([\d.]+)" y="26")x");
    ASSERT_EQ(legend.size(), impairments);
    EXPECT_EQ(legend[0][0], "0");
    EXPECT_EQ(Matches(svg, "mostly (other causes)").size(), 11u);
    EXPECT_EQ(Matches(svg, "mostly (noise)").size(), 1u) << "of the last, at 38 dB";
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
