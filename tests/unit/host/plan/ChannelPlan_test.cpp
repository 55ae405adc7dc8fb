#include "host/plan/ChannelPlan.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "host/plan/ChannelRaster.h"
#include "host/plan/NetworkWriter.h"
#include "support/TestFiles.h"
#include "support/TestTable.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

using testing::HasSubstr;

std::string Block(const std::string& system, const std::string& frequency, const std::string& symbolRate,
                  const std::string& modulation)
{
    return "[CHANNEL]\n\tDELIVERY_SYSTEM = " + system + "\n\tFREQUENCY = " + frequency +
           "\n\tSYMBOL_RATE = " + symbolRate + "\n\tMODULATION = " + modulation + "\n";
}

const std::string goodBlock = Block("DVBC/ANNEX_A", "474000000", "6900000", "QAM/64");

ChannelPlan Read(const std::string& content, int32_t orderForAuto = 0)
{
    return ReadChannelPlan(content, L"net", {.orderOfQam = orderForAuto});
}

TEST(ChannelPlan, TitleIsTheFirstCommentThatSaysSomethingAndNothingElseBesidesTheKeysMatters)
{
    EXPECT_EQ(Read("#----\n# freq sr fec mod\n## Kabel Linz\n# 2006\n" + goodBlock).title, L"Kabel Linz");
    EXPECT_EQ(Read("#\n# Praha Česká\n" + goodBlock).title, L"Praha Česká");
    EXPECT_EQ(Read(goodBlock + "# behind the channels\n").title, L"");
    const ChannelPlan plan = Read(
        "\xEF\xBB\xBF[Main Frequency]\r\nDELIVERY_SYSTEM=DVBC/ANNEX_A # cable\r\n\r\nFREQUENCY = 377750000\r\n"
        "SYMBOL_RATE = 6875000\r\nINNER_FEC = NONE\r\nMODULATION = QAM/128\r\nINVERSION = AUTO");
    ASSERT_EQ(plan.channels.size(), 1u);
    EXPECT_EQ(plan.channels[0].frequency, 377.75);
    EXPECT_EQ(plan.channels[0].symbolRate, 6.875);
    EXPECT_EQ(plan.channels[0].orderOfQam, 128);
    EXPECT_EQ(plan.channels[0].line, 1);
}

TEST(ChannelPlan, LeavesOutWhatCannotBeMeasuredWithLineAndReason)
{
    for (const std::vector<std::string>& row : TestTable("plan-left-out.tsv", 5)) {
        const std::string block = Block(CellText(row[0]), CellText(row[1]), CellText(row[2]), CellText(row[3]));
        const ChannelPlan plan = Read(goodBlock + block);
        EXPECT_EQ(plan.channels.size(), 1u) << block;
        ASSERT_EQ(plan.leftOut.size(), 1u) << block;
        EXPECT_EQ(plan.leftOut[0].line, 6);
        EXPECT_THAT(plan.leftOut[0].text, HasSubstr(FromUtf8(CellText(row[4]))));
    }
    // The limits themselves are inside, and the caller's order stands for AUTO.
    const ChannelPlan plan =
        Read(Block("DVBC/ANNEX_A", "3000000", "100000", "QAM/4") + Block("DVBC", "1000000000", "7000000", "256QAM") +
                 Block("DVBC/ANNEX_A", "474000000", "6900000", "QAM/AUTO"),
             64);
    ASSERT_EQ(plan.channels.size(), 3u);
    EXPECT_EQ(plan.channels[2].orderOfQam, 64);
}

TEST(ChannelPlan, ABlockWithANameIsAServiceWhateverSignsItHolds)
{
    const std::string block = goodBlock.substr(goodBlock.find('\n'));
    const ChannelPlan plan =
        Read("# Linz\n[Sport #1]" + block + "[A] [B] # c]" + block + "[\xC4\x8CT1]  #" + block + goodBlock);
    ASSERT_EQ(plan.channels.size(), 4u);
    EXPECT_EQ(plan.channels[0].Label(), L"Sport #1");
    EXPECT_EQ(plan.channels[1].Label(), L"A] [B");
    EXPECT_EQ(plan.channels[2].Label(), L"\u010CT1");
    EXPECT_EQ(plan.channels[3].Label(), L"K21") << "as the raster calls it";
}

TEST(ChannelPlan, ReadsTablesWithAndWithoutHeadingInAnyUnit)
{
    const std::string tables[] = {
        "# Linz\nK21,474,6.9,64\n\"a, \"\"b\"\"\",482.5,6.875,256-QAM\n",
        "K21;474000000;6900000;QAM/64\r\n\"a, \"\"b\"\"\";482,5;6,875;qam256\r\n",
        "QAM;Symbol Rate (kSymb/s);Label;Centre Frequency;remark\n64;6900;K21;474000;\n256;6875;a, \"b\";482500",
        "Label,Frequency (MHz)\n# later\nK21,474\n,482.5\n",
    };
    for (const std::string& table : tables) {
        const bool isBare = table.starts_with("Label");
        const ChannelPlan plan = ReadChannelPlan(table, L"net", isBare ? PlanDefaults{64, 6.9} : PlanDefaults{});
        ASSERT_EQ(plan.channels.size(), 2u) << table;
        EXPECT_EQ(plan.channels[0].Label(), L"K21");
        EXPECT_EQ(plan.channels[0].frequency, 474);
        EXPECT_EQ(plan.channels[0].symbolRate, 6.9);
        EXPECT_EQ(plan.channels[0].orderOfQam, 64);
        EXPECT_EQ(plan.channels[1].frequency, 482.5);
        EXPECT_EQ(plan.channels[1].label, isBare ? L"" : L"a, \"b\"");
        EXPECT_EQ(plan.channels[1].orderOfQam, isBare ? 64 : 256);
    }
    const ChannelPlan plan = Read("K21,474,6.9,64\nK22,x,6.9,64\nK24,498,6.9,\n");
    ASSERT_EQ(plan.leftOut.size(), 2u);
    EXPECT_EQ(plan.leftOut[0].line, 2);
    EXPECT_EQ(plan.leftOut[0].text, L"frequency \"x\" is no number");
    EXPECT_THAT(plan.leftOut[1].text, HasSubstr(L"give it with --order"));
    ExpectRefusals([](const std::string& content) { Read(content); },
                   {{"Label,QAM\nK21,64\n", L"net, line 1: the heading names no column \"frequency\""},
                    {"474,6.9,64\n", L"net, line 1: 0.064 MSymb/s is outside"}});
}

TEST(ChannelPlan, ARasterHasAChannelEveryStepAndItsEndWhereAStepMeetsIt)
{
    const ChannelPlan plan = RasterPlan(306, 858, 8, {256, 6.9});
    ASSERT_EQ(plan.channels.size(), 70u);
    EXPECT_EQ(plan.channels.back().frequency, 858);
    EXPECT_EQ(plan.channels.back().Label(), L"K69");
    EXPECT_EQ(RasterPlan(113.1, 113.4, 0.1, {64, 6.9}).channels.size(), 4u);
    EXPECT_EQ(RasterPlan(474, 489, 8, {64, 6.9}).channels.size(), 2u);
    const double nan = std::nan("");
    for (const auto& [from, to, step] :
         {std::tuple{858.0, 306.0, 8.0}, {306, 858, -8}, {306, 858, 0.001}, {nan, 858, 8}, {306, 858, nan}}) {
        EXPECT_THAT(Refusal([band = std::tuple(from, to, step)] {
                        std::apply([](auto... ends) { RasterPlan(ends..., {256, 6.9}); }, band);
                    }),
                    HasSubstr(L"are not 1 to 1000 channels"));
    }
    EXPECT_THAT(Refusal([] { RasterPlan(306, 858, 8, {0, 6.9}); }), HasSubstr(L"give it with --order"));
    EXPECT_THAT(Refusal([] { RasterPlan(1, 9, 8, {64, 6.9}); }), HasSubstr(L"1 MHz is outside"));
}

TEST(ChannelPlan, RefusesWhatIsNoPlanAndNamesItsKind)
{
    ExpectRefusals([](const std::string& content) { Read(content); },
                   {{"", L"net is empty"},
                    {goodBlock + std::string("\0\1", 2), L"net, line 6: binary data"},
                    {"\xFF\xFE[\0", L"UTF-16"},
                    {std::string(5u << 20, 'x'), L"larger than 4 MiB"},
                    {"# a comment\n", L"net has no channels"},
                    {"FREQUENCY = 1\n" + goodBlock, L"line 1: \"FREQUENCY = 1\" is no line of"},
                    {goodBlock + "nonsense\n", L"line 6: \"nonsense\" is no line of"},
                    {"# kabelsignal\nC 314000000 6900000 NONE QAM256\n",
                     L"net, line 2: \"C 314000000 6900000 NONE QAM256\" is the older plan format"},
                    {Block("DVBT", "474000000", "", "QAM/64"),
                     L"line 1: delivery system \"DVBT\" is not DVB-C; no channel of the plan can be measured"},
                    {std::string(300, 'x') + "\n", L"x…\""}});
}

TEST(ChannelRaster, NamesTheChannelsOfTheRasterAndGivesTheFrequencyOutsideIt)
{
    const std::pair<double, const wchar_t*> cases[] = {
        {50.5, L"K2"},    {64.5, L"K4"},           {113, L"S2"},      {121, L"S3"},          {107.5, L"S1"},
        {177.5, L"K5"},   {226.5, L"K12"},         {233.5, L"S11"},   {296.5, L"S20"},       {306, L"S21"},
        {466, L"S41"},    {474, L"K21"},           {594, L"K36"},     {858, L"K69"},         {473.75, L"K21"},
        {474.25, L"K21"}, {474.26, L"474.26 MHz"}, {114, L"114 MHz"}, {377.7, L"377.7 MHz"}, {866, L"866 MHz"},
    };
    for (const auto& [megahertz, name] : cases) {
        EXPECT_EQ(ChannelLabel(megahertz), name) << megahertz;
    }
}

ChannelPlan RealPlan()
{
    return ReadChannelPlan(TestFile("plans/at-Kabelsignal"), L"at-Kabelsignal");
}

NetworkDraft Draft(uint64_t seed, bool hasFaults = true)
{
    return DraftNetwork(RealPlan(), seed, hasFaults);
}

TEST(NetworkDraft, TheSameSeedGivesTheSameNetworkOnEverySystemInEveryRelease)
{
    const std::string seven = TestFile("network-seed-7.txt");
    EXPECT_EQ(WriteNetworkModel(Draft(7), L"at-Kabelsignal"), seven);
    EXPECT_LT(std::ranges::count(seven, ','), 99) << "a model takes 100 outages";
    EXPECT_NE(Draft(8).channels[0].level, Draft(7).channels[0].level);
    const NetworkDraft large = Draft(5000000000);
    EXPECT_THAT(WriteNetworkModel(large, L"Käse"),
                testing::StartsWith("; A network that the plan K\xC3\xA4se could belong to, seed 5000000000\r\n"));
    EXPECT_THAT(WriteNetworkModel(large, L""), HasSubstr("\r\nSeed=705032704\r\n"));
}

TEST(NetworkDraft, ACleanNetworkHasPlausibleLevelsThatAChannelKeepsWhateverElseIsInThePlan)
{
    const NetworkDraft network = Draft(1, false);
    ASSERT_EQ(network.channels.size(), 36u);
    for (const NetworkChannel& channel : network.channels) {
        EXPECT_TRUE(channel.fault.empty());
        EXPECT_GT(channel.level - network.tilt, 54);  // what a 256-QAM channel needs at an outlet
        EXPECT_LT(channel.level, 74);
        EXPECT_GT(channel.carrierToInterference, 40);
    }
    ChannelPlan part = RealPlan();
    part.channels.erase(part.channels.begin(), part.channels.begin() + 20);
    const NetworkChannel first = DraftNetwork(part, 1, false).channels.front();
    EXPECT_EQ(first.level, network.channels[20].level);
    EXPECT_EQ(first.frequencyOffset, network.channels[20].frequencyOffset);
}

TEST(NetworkDraft, IngressStrikesWhereItsSourceTransmitsAndAModelHoldsEachFrequencyOnce)
{
    ChannelPlan plan;
    plan.channels = {{474, 6.9, 64, 1}, {482, 6.9, 64, 1}, {802, 6.9, 64, 1}};
    NetworkDraft network = DraftNetwork(plan, 1, true);
    EXPECT_THAT(network.channels[2].fault, HasSubstr(L"LTE"));
    EXPECT_LT(network.channels[2].carrierToInterference, 30);
    EXPECT_TRUE(network.channels[0].fault.empty());  // one channel in three
    EXPECT_TRUE(network.channels[1].fault.empty());
    for (const double beside : {171., 220., 386., 404., 754., 787., 825., 828., 866.}) {
        plan.channels = {{beside, 6.9, 64, 1}, {474, 6.9, 64, 1}, {482, 6.9, 64, 1}};
        network = DraftNetwork(plan, 1, true);
        EXPECT_THAT(network.channels[2].fault, HasSubstr(L"microphone")) << beside;
    }
    // The last two are outside what a model can hold.
    plan.channels = {{586, 6.9, 64, 1}, {586, 6.9, 256, 7}, {25, 6.9, 64, 13}, {114, 0.4, 64, 19}};
    network = DraftNetwork(plan, 1, true);
    ASSERT_EQ(network.channels.size(), 1u);
    EXPECT_EQ(network.channels[0].orderOfQam, 64);
    ASSERT_EQ(network.leftOut.size(), 2u);
    EXPECT_EQ(network.leftOut[0].line, 13);
}

}  // namespace
}  // namespace tvn2x
