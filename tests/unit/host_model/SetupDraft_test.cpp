#include "host_model/SetupDraft.h"

#include "host_model/TestFiles.h"

namespace tvn2x {
namespace {

using testing::HasSubstr;

ChannelPlan PlanOf(std::vector<PlanChannel> channels)
{
    ChannelPlan plan;
    plan.channels = std::move(channels);
    return plan;
}

TEST(SetupDraft, OneOrderGivesOneSetupSortedByFrequency)
{
    const SetupDrafts drafts =
        DraftSetups(PlanOf({{482, 6.875, 64, 1}, {474, 6.9, 64, 7}, {490, 6.9, 64, 13}}), L"C:\\data\\net.ini");
    ASSERT_EQ(drafts.setups.size(), 1u);
    const SetupDraft& setup = drafts.setups[0];
    EXPECT_EQ(setup.path, L"C:\\data\\net.ini");
    EXPECT_EQ(setup.orderOfQam, 64);
    EXPECT_EQ(setup.defaultSymbolRate, 6.9);
    ASSERT_EQ(setup.channels.size(), 3u);
    EXPECT_EQ(setup.channels[0].frequency, 474);
    EXPECT_TRUE(drafts.notices.empty());
}

TEST(SetupDraft, AMixedPlanGivesOneSetupAnOrderWithTheOrderBeforeTheExtension)
{
    const ChannelPlan plan = ReadChannelPlan(TestFile("plans/at-Kabel-Braunau"), L"at-Kabel-Braunau");
    const SetupDrafts drafts = DraftSetups(plan, L"net.v2/braunau.ini");
    ASSERT_EQ(drafts.setups.size(), 3u);
    EXPECT_EQ(drafts.setups[0].path, L"net.v2/braunau-64qam.ini");
    EXPECT_EQ(drafts.setups[0].channels.size(), 20u);
    EXPECT_EQ(drafts.setups[1].path, L"net.v2/braunau-128qam.ini");
    EXPECT_EQ(drafts.setups[2].channels.size(), 2u);
    EXPECT_EQ(DraftSetups(plan, L"net.v2\\setup").setups[0].path, L"net.v2\\setup-64qam");
    EXPECT_EQ(DraftSetups(plan, L"net.v2\\.setup").setups[0].path, L"net.v2\\.setup-64qam");
}

TEST(SetupDraft, DropsDuplicatesWithANotice)
{
    const SetupDrafts drafts =
        DraftSetups(PlanOf({{474, 6.9, 64, 1}, {474, 6.9, 64, 7}, {474, 6.875, 64, 13}}), L"net.ini");
    ASSERT_EQ(drafts.setups[0].channels.size(), 1u);
    EXPECT_EQ(drafts.setups[0].channels[0].line, 1);
    ASSERT_EQ(drafts.notices.size(), 2u);
    EXPECT_EQ(drafts.notices[0].line, 7);
    EXPECT_EQ(drafts.notices[0].text, L"474 MHz is in the plan already (line 1); dropped");
    EXPECT_THAT(drafts.notices[1].text, HasSubstr(L"there with 6.9 instead of 6.875 MSymb/s; dropped"));
}

TEST(SetupDraft, AFrequencyWithTwoOrdersIsInBothSetupsAndNoted)
{
    const SetupDrafts drafts = DraftSetups(ReadChannelPlan(TestFile("plans/at-Liwest"), L"at-Liwest"), L"net.ini");
    ASSERT_EQ(drafts.setups.size(), 2u);
    EXPECT_EQ(drafts.setups[0].channels.size() + drafts.setups[1].channels.size(), 28u);
    ASSERT_EQ(drafts.notices.size(), 1u);
    EXPECT_THAT(drafts.notices[0].text, HasSubstr(L"586 MHz is in the plan as 64-QAM and as 256-QAM"));
}

}  // namespace
}  // namespace tvn2x
