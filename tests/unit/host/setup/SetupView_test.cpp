#include "host/setup/SetupView.h"

#include "host/setup/SetupDraft.h"
#include "host/setup/UnsavableText.h"
#include "support/TestFiles.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

using testing::HasSubstr;

Setup Sample()
{
    Setup setup;
    setup.path = L"C:\\net.ini";
    setup.product = L"TVN Host";
    setup.version = L"2.0";
    setup.mode = 4;
    setup.settings.rollOffFactor = 15;
    setup.settings.inputRoute = 128;
    setup.settings.sawBandwidth = 0;
    setup.settings.referenceSource = 1;
    setup.defaultSymbolRate = 6.9;
    setup.xAxis = {2, 2};
    setup.channels = {{L"K21", 474, 6.9}, {L"K22", 482.25, 6.875}};
    setup.parameters = {{L"Second", true, false, 2}, {L"First", false, true, 1}};
    setup.notes = L"one\r\ntwo";
    setup.showsNotesAfter = true;
    return setup;
}

TEST(SetupView, SaysSettingsInWordsAndWhatIsOutsideTheListsAsItIs)
{
    auto setup = Sample();
    const std::wstring usual = DescribeSetup(setup);
    setup.settings.inputRoute = 60;
    setup.channels.clear();
    setup.notes.clear();
    setup.showsNotesAfter = false;
    setup.isBackup = setup.isDirty = true;
    setup.realPath = L"D:\\real.ini";
    EXPECT_EQ(ToUtf8(usual + DescribeSetup(setup)), TestFile("setup-views.txt"));
}

TEST(UnsavableText, NamesTheReasonAndTheRemedy)
{
    for (const std::wstring& text : {std::wstring(L"one\r\ntwo\r\n"), std::wstring(32767, L'x')}) {
        EXPECT_EQ(UnsavableText(text, true), L"");
    }
    EXPECT_THAT(UnsavableText(L"one\r\ntwo", false), HasSubstr(L"more than one line"));
    EXPECT_EQ(UnsavableText(L"one\r\ntwo\nthree", true), L"line 2 ends with LF alone. End each line with CR LF");
    EXPECT_THAT(UnsavableText(L"one\rtwo", true), HasSubstr(L"line 1 ends with CR alone"));
    EXPECT_THAT(UnsavableText(std::wstring(L"a\0b", 3), true), HasSubstr(L"NUL"));
    EXPECT_THAT(UnsavableText(std::wstring(32764, L'x') + L"\r\n", true), HasSubstr(L"longer than 32,767"));
}

TEST(SetupDraft, OneOrderGivesOneSetupSortedByFrequencyWithoutDuplicates)
{
    ChannelPlan plan;
    plan.channels = {{482, 6.875, 64, 1}, {474, 6.9, 64, 7}, {490, 6.9, 64, 13}};
    SetupDrafts drafts = DraftSetups(plan, L"C:\\data\\net.ini");
    ASSERT_EQ(drafts.setups.size(), 1u);
    const SetupDraft& setup = drafts.setups[0];
    EXPECT_EQ(setup.path, L"C:\\data\\net.ini");
    EXPECT_EQ(setup.orderOfQam, 64);
    EXPECT_EQ(setup.defaultSymbolRate, 6.9);
    ASSERT_EQ(setup.channels.size(), 3u);
    EXPECT_EQ(setup.channels[0].frequency, 474);
    EXPECT_TRUE(drafts.notices.empty());

    plan.channels = {{474, 6.9, 64, 1}, {474, 6.9, 64, 7}, {474, 6.875, 64, 13}};
    drafts = DraftSetups(plan, L"net.ini");
    ASSERT_EQ(drafts.setups[0].channels.size(), 1u);
    EXPECT_EQ(drafts.setups[0].channels[0].line, 1);
    ASSERT_EQ(drafts.notices.size(), 2u);
    EXPECT_EQ(drafts.notices[0].line, 7);
    EXPECT_EQ(drafts.notices[0].text, L"474 MHz is in the plan already (line 1); dropped");
    EXPECT_THAT(drafts.notices[1].text, HasSubstr(L"there with 6.9 instead of 6.875 MSymb/s; dropped"));

    plan.channels = {
        {482, 6.9, 64, 9, L"d"}, {474, 6.9, 64, 1, L"a"}, {474, 6.9, 64, 5, L"b"}, {482, 6.9, 64, 3, L"c"}};
    drafts = DraftSetups(plan, L"net.ini");
    ASSERT_EQ(drafts.setups[0].channels.size(), 2u);
    EXPECT_EQ(drafts.setups[0].channels[0].label, L"a");
    ASSERT_EQ(drafts.notices.size(), 1u) << "services that share a channel are told once";
    EXPECT_EQ(drafts.notices[0].line, 3);
}

TEST(SetupDraft, AMixedPlanGivesOneSetupAnOrderWithTheOrderBeforeTheExtension)
{
    const ChannelPlan plan = ReadChannelPlan(TestFile("plans/at-Liwest"), L"at-Liwest");
    const SetupDrafts drafts = DraftSetups(plan, L"net.v2/linz.ini");
    ASSERT_EQ(drafts.setups.size(), 2u);
    EXPECT_EQ(drafts.setups[0].path, L"net.v2/linz-64qam.ini");
    EXPECT_EQ(drafts.setups[1].path, L"net.v2/linz-256qam.ini");
    EXPECT_EQ(drafts.setups[0].channels.size() + drafts.setups[1].channels.size(), 28u);
    ASSERT_EQ(drafts.notices.size(), 1u) << "a frequency with two orders is in both setups";
    EXPECT_THAT(drafts.notices[0].text, HasSubstr(L"586 MHz is in the plan as 64-QAM and as 256-QAM"));
    EXPECT_EQ(DraftSetups(plan, L"net.v2\\setup").setups[0].path, L"net.v2\\setup-64qam");
    EXPECT_EQ(DraftSetups(plan, L"net.v2\\.setup").setups[0].path, L"net.v2\\.setup-64qam");
}

}  // namespace
}  // namespace tvn2x
