#include "host/run/ChannelSelection.h"

#include "host/run/ParameterNames.h"
#include "support/TestFiles.h"
#include "support/TestTable.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

std::vector<Setup::Channel> Network()
{
    return {{L"K45", 666, 6.9}, {L"K46", 674, 6.9},       {L"K47", 682.25, 6.9}, {L"Sport, live", 690, 6.9},
            {L"A-1", 698, 6.9}, {L"twice", 706, 6.9},     {L"twice", 714, 6.9},  {L"12", 722, 6.9},
            {L"", 730, 6.9},    {L"730.5 MHz", 738, 6.9}, {L"K45-A", 746, 6.9},  {L"A", 754, 6.9}};
}

TEST(ChannelSelection, NamesChannelsByLabelThenNumberThenFrequencyAndRefusesWhatMeansNoneOrTwo)
{
    for (const std::vector<std::string>& row : TestTable("channel-selections.tsv", 2)) {
        std::string numbers;
        const std::wstring refusal = Refusal([&] {
            for (const int32_t number : SelectChannels(FromUtf8(CellText(row[0])), Network())) {
                numbers += (numbers.empty() ? "" : " ") + std::to_string(number);
            }
        });
        if (refusal.empty()) {
            EXPECT_EQ(numbers, row[1]) << row[0];
        } else {
            EXPECT_THAT(refusal, HasSubstr(FromUtf8(CellText(row[1])))) << row[0];
        }
    }
    EXPECT_THAT(AllChannels({Network()[0], Network()[1]}), ElementsAre(1, 2));
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
