#include "editor/ValidateChannel.h"

#include <gtest/gtest.h>

#include <limits>

#include "support/FixedLocale.h"
#include "support/RecordingMessageBoxes.h"

namespace tvn2x {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

class ValidateChannelTest : public testing::Test
{
protected:
    int16_t Validate(double frequency, double symbolRate)
    {
        messages.messages.clear();
        frequency_ = frequency;
        symbolRate_ = symbolRate;
        return ValidateChannel(&frequency_, &symbolRate_, messages, locale);
    }
    std::wstring Message() const { return messages.messages.size() == 1 ? messages.messages[0].text : L"not one"; }

    RecordingMessageBoxes messages;
    FixedLocale locale;
    double frequency_ = 0;
    double symbolRate_ = 0;
};

TEST_F(ValidateChannelTest, AcceptsTheLimitsAndNothingBeyond)
{
    EXPECT_EQ(1, Validate(3, 0.1));
    EXPECT_EQ(1, Validate(1000, 7));
    EXPECT_TRUE(messages.messages.empty());
    for (const double frequency : {2.9999999, 1000.000001, nan, -std::numeric_limits<double>::infinity()}) {
        EXPECT_EQ(2, Validate(frequency, 6.9)) << frequency;
    }
    for (const double symbolRate : {0.0999, 7.001, nan, std::numeric_limits<double>::infinity()}) {
        EXPECT_EQ(3, Validate(500, symbolRate)) << symbolRate;
    }
    EXPECT_EQ(2, Validate(nan, nan));

    double value = 1;  // what is not given is left out
    EXPECT_EQ(1, ValidateChannel(nullptr, &value, messages, locale));
    EXPECT_EQ(2, ValidateChannel(&value, nullptr, messages, locale));
}

TEST_F(ValidateChannelTest, TellsBothFaultsInOneBoxWithTheUsersSeparatorAndChangesNothing)
{
    locale = CommaLocale();
    EXPECT_EQ(2, Validate(2.5, 7.0004));
    EXPECT_EQ(
        L"Frequency too low.\n\nPlease enter a value expressed in MHz between 3 and 1000,0000009, to a resolution of "
        L"0,1 Hz.\n\nSymbol Rate too high.\n\nPlease enter a value expressed in MSymb/s, between 0,1 and 7, to a "
        L"resolution of 1000 SPS.",
        Message());
    EXPECT_EQ(L"Setup", messages.messages[0].title);
    EXPECT_EQ(MessageIcon::warning, messages.messages[0].icon);
    EXPECT_EQ(2.5, frequency_);
    EXPECT_EQ(7.0004, symbolRate_);
    EXPECT_EQ(3, Validate(100, 0));
    EXPECT_EQ(0u, Message().find(L"Symbol Rate too low."));
    Validate(3.3, 6.9);
    EXPECT_EQ(L"Frequency rounded to 3,2999999 MHz.", Message());
}

TEST_F(ValidateChannelTest, CutsFrequenciesDownToTheirRaster)
{
    for (const double onRaster : {213.0, 474.25, 858.0, 3.1, 999.9999999}) {
        EXPECT_EQ(1, Validate(onRaster, 6.9)) << onRaster;
    }
    const std::pair<double, double> steps[] = {{3.3, 3.2999999}, {3.4, 3.3999999}, {3.8, 3.7999999},
                                               {4.1, 4.0999999}, {4.3, 4.2999999}, {500.00000019, 500.0000001},
                                               {3.00000009, 3.0}};
    for (const auto& [typed, kept] : steps) {
        EXPECT_EQ(1, Validate(typed, 6.9));
        EXPECT_NEAR(kept, frequency_, 1e-12) << typed;
        EXPECT_EQ(MessageIcon::information, messages.messages.at(0).icon);
    }
}

TEST_F(ValidateChannelTest, RoundsSymbolRatesToTheNearestStepHalvesToEven)
{
    const std::pair<double, double> steps[] = {{6.9005, 6.9}, {6.9015, 6.902}, {6.9501, 6.95}, {0.1004, 0.1}};
    for (const auto& [typed, kept] : steps) {
        EXPECT_EQ(1, Validate(500, typed));
        EXPECT_NEAR(kept, symbolRate_, 1e-12) << typed;
        EXPECT_EQ(0u, Message().find(L"Symbol Rate rounded to ")) << typed;
    }
    Validate(500, 6.9005);
    EXPECT_EQ(L"Symbol Rate rounded to 6.900 MSymb/s.", Message());
}

}  // namespace
}  // namespace tvn2x
