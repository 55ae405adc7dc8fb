#include "host/run/ChannelSelection.h"

#include "host/run/ParameterNames.h"
#include "support/TestFiles.h"

namespace tvn2x {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

TEST(ChannelSelection, ReadsChannelsAndRangesAscendingAndOnceAndRefusesAnythingElse)
{
    EXPECT_THAT(SelectChannels(L"", 3), ElementsAre(1, 2, 3));
    EXPECT_THAT(SelectChannels(L"12,4-5,3,5", 36), ElementsAre(3, 4, 5, 12));
    EXPECT_THAT(SelectChannels(L"35-", 36), ElementsAre(35, 36));
    EXPECT_THAT(SelectChannels(L"1-1", 1), ElementsAre(1));
    for (const wchar_t* text : {L",", L"3,", L"x", L"3-x", L"-3", L"3--4", L"3 4", L"3-4-5", L"99999999999"}) {
        EXPECT_THAT(Refusal([&] { SelectChannels(text, 36); }), HasSubstr(L"is no channel and no range")) << text;
    }
    for (const wchar_t* text : {L"1,37", L"0", L"3-37"}) {
        EXPECT_THAT(Refusal([&] { SelectChannels(text, 36); }),
                    HasSubstr(L"\" is outside the setup's channels 1 to 36"));
    }
    EXPECT_THAT(Refusal([] { SelectChannels(L"7-3", 36); }), HasSubstr(L"ends before it begins"));
}

TEST(ParameterNames, AreReadInAnyCaseAndOnceAndListedWhereOneIsUnknown)
{
    EXPECT_THAT(SelectParameters(L"MER, rflev,mer,de"), ElementsAre(27, 15, 30));
    EXPECT_THAT(Refusal([] { SelectParameters(L"mer,evm"); }),
                AllOf(HasSubstr(L"\"evm\" is no parameter"), HasSubstr(L"userfield, frequency")));
    EXPECT_THAT(Refusal([] { SelectParameters(L"mer,"); }), HasSubstr(L"\"\" is no parameter"));
}

}  // namespace
}  // namespace tvn2x
