#include "host/plan/NetworkWriter.h"

#include <algorithm>

#include "fmt/format.h"
#include "support/TestFiles.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

using testing::HasSubstr;

ChannelPlan RealPlan()
{
    return ReadChannelPlan(TestFile("plans/at-Kabelsignal"), L"at-Kabelsignal");
}

NetworkDraft Draft(uint64_t seed, bool hasFaults = true)
{
    return DraftNetwork(RealPlan(), seed, hasFaults);
}

/// A line for each channel, with everything that was drawn for it.
std::string Drawn(const NetworkDraft& network)
{
    std::string text;
    for (const NetworkChannel& c : network.channels) {
        text += fmt::format(
            "{:g} {:.2f} {} {:.2f} {:.2f} {:.2f} {:.3f} {:.3f} {:.3f} {:.2f} {:.1f} {:.0f} {:.2f} {}{} {}\n",
            c.frequency, c.symbolRate, c.orderOfQam, c.level, c.carrierToInterference, c.carrierSuppression,
            c.phaseJitter, c.iqImbalance, c.quadratureError, c.echoRatio, c.echoLength, c.frequencyOffset,
            c.symbolRateOffset, c.dropsOut ? "drops" : "holds", c.isMissing ? ", missing" : "",
            ToUtf8(c.label + L": " + c.fault));
    }
    return text;
}

TEST(NetworkDraft, TheSameSeedGivesTheSameNetworkOnEverySystemInEveryRelease)
{
    EXPECT_EQ(Drawn(Draft(7)), TestFile("network-seed-7.txt"));
    EXPECT_NE(Drawn(Draft(8)), TestFile("network-seed-7.txt"));
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
    // The last two are outside what a model can hold.
    plan.channels = {{586, 6.9, 64, 1}, {586, 6.9, 256, 7}, {25, 6.9, 64, 13}, {114, 0.4, 64, 19}};
    network = DraftNetwork(plan, 1, true);
    ASSERT_EQ(network.channels.size(), 1u);
    EXPECT_EQ(network.channels[0].orderOfQam, 64);
    ASSERT_EQ(network.leftOut.size(), 2u);
    EXPECT_EQ(network.leftOut[0].line, 13);
}

TEST(NetworkWriter, WritesSectionsWithACommentAbove)
{
    NetworkDraft network;
    network.seed = 5000000000;
    network.channels.push_back({.frequency = 594,
                                .symbolRate = 6.9,
                                .orderOfQam = 256,
                                .level = 41.25,
                                .carrierToInterference = 52,
                                .carrierSuppression = 48,
                                .phaseJitter = 0.25,
                                .iqImbalance = 0.3,
                                .quadratureError = -0.1,
                                .frequencyOffset = -1234.5,
                                .symbolRateOffset = 2,
                                .label = L"K36",
                                .fault = L"low level"});
    network.channels.push_back(
        {.frequency = 602, .isMissing = true, .label = L"K37", .fault = L"the carrier is missing"});
    EXPECT_EQ(WriteNetworkModel(network, L"Käse"),
              "; A network that the plan K\xC3\xA4se could belong to, seed 5000000000\r\n"
              "[Network]\r\nNoise Figure (dB)=8.0\r\nTilt (dB)=8.0\r\nHead-end MER (dB)=43.0\r\nSeed=705032704\r\n"
              "\r\n; K36: low level\r\n[Channel 1]\r\nFrequency (MHz)=594\r\nSymbol Rate (MSymb/s)=6.9\r\n"
              "Order of QAM=256\r\nLevel (dBuV)=41.3\r\nC/I (dB)=52.0\r\nCarrier Suppression (dB)=48.0\r\n"
              "Phase Jitter (deg)=0.25\r\nI/Q Imbalance (%)=0.30\r\nQuadrature Error (deg)=-0.10\r\n"
              "Frequency Offset (Hz)=-1235\r\nSymbol Rate Offset (ppm)=2.0\r\n"
              "\r\n; K37: the carrier is missing\r\n; [Channel 2] would be 602 MHz\r\n");
    // Echoes and outages only where there are some.
    network.channels.assign(1, {.frequency = 594, .echoRatio = 30, .echoLength = 400, .dropsOut = true});
    const std::string text = WriteNetworkModel(network, L"plan");
    EXPECT_THAT(text, HasSubstr("Echo (dB)=30.0\r\nEcho Length (m)=400\r\n"));
    EXPECT_THAT(text, HasSubstr("Outages=TS 0.6 0.2, TS 1.0 0.2, "));
    EXPECT_LT(std::ranges::count(text, ','), 99);  // a model takes 100 outages
}

}  // namespace
}  // namespace tvn2x
