#include "host_model/NetworkWriter.h"

#include <algorithm>
#include <set>

#include "host_model/TestFiles.h"

namespace tvn2x {
namespace {

using testing::HasSubstr;
using testing::Not;

ChannelPlan RealPlan()
{
    return ReadChannelPlan(TestFile("plans/at-Kabelsignal"), L"at-Kabelsignal");
}

NetworkDraft Draft(uint64_t seed, bool hasFaults = true)
{
    return DraftNetwork(RealPlan(), seed, hasFaults);
}

const NetworkChannel* FindFault(const NetworkDraft& network, const wchar_t* words)
{
    const auto found = std::ranges::find_if(
        network.channels, [&](const auto& channel) { return channel.fault.find(words) != std::wstring::npos; });
    return found == network.channels.end() ? nullptr : &*found;
}

TEST(NetworkDraft, TheSameSeedGivesTheSameNetworkOnEverySystem)
{
    EXPECT_EQ(WriteNetworkModel(Draft(7), L"plan"), WriteNetworkModel(Draft(7), L"plan"));
    EXPECT_NE(WriteNetworkModel(Draft(7), L"plan"), WriteNetworkModel(Draft(8), L"plan"));
}

TEST(NetworkDraft, ACleanNetworkHasPlausibleLevels)
{
    const NetworkDraft network = Draft(1, false);
    ASSERT_EQ(network.channels.size(), 36u);
    for (const NetworkChannel& channel : network.channels) {
        EXPECT_TRUE(channel.fault.empty());
        EXPECT_GT(channel.level - network.tilt, 54);  // what a 256-QAM channel needs at an outlet
        EXPECT_LT(channel.level, 74);
        EXPECT_GT(channel.carrierToInterference, 40);
    }
}

TEST(NetworkDraft, AChannelKeepsItsValuesWhateverElseIsInThePlan)
{
    ChannelPlan part = RealPlan();
    part.channels.erase(part.channels.begin(), part.channels.begin() + 20);
    const NetworkDraft whole = Draft(1, false);
    const NetworkDraft network = DraftNetwork(part, 1, false);
    EXPECT_EQ(network.channels.front().level, whole.channels[20].level);
    EXPECT_EQ(network.channels.front().frequencyOffset, whole.channels[20].frequencyOffset);
}

TEST(NetworkDraft, EveryKindOfFaultOccursOnceAndIsWorthItsName)
{
    for (const uint64_t seed : {1u, 2u, 3u}) {
        const NetworkDraft network = Draft(seed);
        const auto good = Draft(seed, false);
        EXPECT_EQ(std::ranges::count_if(network.channels, [](const auto& c) { return !c.fault.empty(); }), 9);
        ASSERT_TRUE(FindFault(network, L"missing"));
        EXPECT_TRUE(FindFault(network, L"missing")->isMissing);
        ASSERT_TRUE(FindFault(network, L"low level"));
        EXPECT_LT(FindFault(network, L"low level")->level, 54);
        ASSERT_TRUE(FindFault(network, L"phase noise"));
        EXPECT_GT(FindFault(network, L"phase noise")->phaseJitter, 1);
        ASSERT_TRUE(FindFault(network, L"I/Q imbalance"));
        EXPECT_GT(FindFault(network, L"I/Q imbalance")->iqImbalance, 2);
        ASSERT_TRUE(FindFault(network, L"echo"));
        EXPECT_GT(FindFault(network, L"echo")->echoLength, 300);
        ASSERT_TRUE(FindFault(network, L"drops in and out"));
        EXPECT_TRUE(FindFault(network, L"drops in and out")->dropsOut);
        ASSERT_TRUE(FindFault(network, L"drifted"));
        EXPECT_LT(FindFault(network, L"drifted")->frequencyOffset, 170e3);  // receivers still catch it
        ASSERT_TRUE(FindFault(network, L"the plan says 256-QAM"));
        EXPECT_EQ(FindFault(network, L"the plan says 256-QAM")->orderOfQam, 64);
    }
}

TEST(NetworkDraft, IngressStrikesWhereItsSourceTransmits)
{
    ChannelPlan plan;
    for (const double frequency : {474.0, 482.0, 802.0}) {
        plan.channels.push_back({frequency, 6.9, 64, 1});
    }
    const NetworkDraft network = DraftNetwork(plan, 1, true);
    EXPECT_THAT(network.channels[2].fault, HasSubstr(L"LTE"));
    EXPECT_LT(network.channels[2].carrierToInterference, 30);
    EXPECT_TRUE(network.channels[0].fault.empty());  // one channel in three
    EXPECT_TRUE(network.channels[1].fault.empty());
}

TEST(NetworkDraft, HoldsEachFrequencyOnceAndOnlyWhatAModelCanHold)
{
    ChannelPlan plan;
    plan.channels = {{586, 6.9, 64, 1}, {586, 6.9, 256, 7}, {25, 6.9, 64, 13}, {114, 0.4, 64, 19}};
    const NetworkDraft network = DraftNetwork(plan, 1, true);
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
                                .fault = L"low level"});
    network.channels.push_back({.frequency = 602, .isMissing = true, .fault = L"the carrier is missing"});
    EXPECT_EQ(WriteNetworkModel(network, L"Käse"),
              "; A network that the plan K\xC3\xA4se could belong to, seed 5000000000\r\n"
              "[Network]\r\nNoise Figure (dB)=8.0\r\nTilt (dB)=8.0\r\nHead-end MER (dB)=43.0\r\nSeed=705032704\r\n"
              "\r\n; K36: low level\r\n[Channel 1]\r\nFrequency (MHz)=594\r\nSymbol Rate (MSymb/s)=6.9\r\n"
              "Order of QAM=256\r\nLevel (dBuV)=41.3\r\nC/I (dB)=52.0\r\nCarrier Suppression (dB)=48.0\r\n"
              "Phase Jitter (deg)=0.25\r\nI/Q Imbalance (%)=0.30\r\nQuadrature Error (deg)=-0.10\r\n"
              "Frequency Offset (Hz)=-1235\r\nSymbol Rate Offset (ppm)=2.0\r\n"
              "\r\n; K37: the carrier is missing\r\n; [Channel 2] would be 602 MHz\r\n");
}

TEST(NetworkWriter, EchoesAndOutagesAreWrittenWhereThereAreSome)
{
    NetworkDraft network;
    network.channels.push_back({.frequency = 594, .echoRatio = 30, .echoLength = 400, .dropsOut = true, .fault{}});
    const std::string text = WriteNetworkModel(network, L"plan");
    EXPECT_THAT(text, HasSubstr("Echo (dB)=30.0\r\nEcho Length (m)=400\r\n"));
    EXPECT_THAT(text, HasSubstr("Outages=TS 1.5 0.5, TS 2.7 0.5, "));
    EXPECT_LT(std::ranges::count(text, ','), 99);  // a model takes 100 outages
    EXPECT_THAT(WriteNetworkModel(Draft(1, false), L"plan"), Not(HasSubstr("Echo")));
}

}  // namespace
}  // namespace tvn2x
