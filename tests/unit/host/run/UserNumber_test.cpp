#include "host/run/UserNumber.h"

#include <gtest/gtest.h>

#include "host/run/FinishedRun.h"
#include "support/FixedLocale.h"

namespace tvn2x {
namespace {

TEST(WithUserMark, ChangesNumbersAlone)
{
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {{L"61.1", L"61,1"},
                                                               {L"-0,25", L"-0,25"},
                                                               {L"<1.7E-8", L"<1,7E-8"},
                                                               {L">2.0e+3", L">2,0e+3"},
                                                               {L"105940", L"105940"},
                                                               {L"1E-5", L"1E-5"},
                                                               {L"---", L"---"},
                                                               {L"OVER", L"OVER"},
                                                               {L"1.2.3", L"1.2.3"},
                                                               {L"5.", L"5."},
                                                               {L".5", L".5"},
                                                               {L"1.5 dB", L"1.5 dB"},
                                                               {L"", L""},
                                                               {L"1.5E", L"1.5E"},
                                                               {L"1.5E-", L"1.5E-"}};
    for (const auto& [number, expected] : cases) {
        EXPECT_EQ(WithUserMark(number, CommaLocale()), expected) << number;
    }
}

TEST(NumberText, HasThreeDigits)
{
    EXPECT_EQ(NumberText(105940), L"105940");
    EXPECT_EQ(NumberText(0.7273), L"0.727");
    EXPECT_EQ(NumberText(2e-4), L"2E-4");
    EXPECT_EQ(NumberText(0), L"0");
}

TEST(LocalText, LeavesWhatIsNoPointInTime)
{
    EXPECT_EQ(LocalText(L""), L"");
    EXPECT_EQ(LocalText(L"yesterday"), L"yesterday");
}

}  // namespace
}  // namespace tvn2x
