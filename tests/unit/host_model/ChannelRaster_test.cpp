#include "host_model/ChannelRaster.h"

#include <gtest/gtest.h>

namespace tvn2x {
namespace {

TEST(ChannelRaster, NamesTheChannelsOfTheEuropeanRaster)
{
    const struct
    {
        double megahertz;
        const wchar_t* name;
    } cases[] = {
        {50.5, L"K2"},   {64.5, L"K4"},   {113, L"S2"},  {121, L"S3"},  {107.5, L"S1"}, {177.5, L"K5"}, {226.5, L"K12"},
        {233.5, L"S11"}, {296.5, L"S20"}, {306, L"S21"}, {466, L"S41"}, {474, L"K21"},  {594, L"K36"},  {858, L"K69"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(ChannelLabel(c.megahertz), c.name) << c.megahertz;
    }
}

TEST(ChannelRaster, AllowsAnOffsetOf250Kilohertz)
{
    EXPECT_EQ(ChannelLabel(473.75), L"K21");
    EXPECT_EQ(ChannelLabel(474.25), L"K21");
    EXPECT_EQ(ChannelLabel(474.26), L"474.26 MHz");
}

TEST(ChannelRaster, GivesTheFrequencyOutsideTheRaster)
{
    EXPECT_EQ(ChannelLabel(114), L"114 MHz");
    EXPECT_EQ(ChannelLabel(377.7), L"377.7 MHz");
    EXPECT_EQ(ChannelLabel(866), L"866 MHz");
    EXPECT_EQ(ChannelLabel(470), L"470 MHz");
}

}  // namespace
}  // namespace tvn2x
