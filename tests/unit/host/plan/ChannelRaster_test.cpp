#include "host/plan/ChannelRaster.h"

#include <gtest/gtest.h>

namespace tvn2x {
namespace {

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

}  // namespace
}  // namespace tvn2x
