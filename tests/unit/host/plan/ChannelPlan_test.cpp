#include "host/plan/ChannelPlan.h"

#include <algorithm>

#include "host/plan/ChannelRaster.h"
#include "host/plan/NetworkWriter.h"
#include "support/TestFiles.h"
#include "support/TestSession.h"
#include "util/modFormat.h"

namespace tvn2x {
namespace {

using testing::HasSubstr;

/// Plans that are read.
class Session : public TestSession
{
public:
    const Deeds deeds{
        {"order-of-qam", [this] { defaults.orderOfQam = Number(0); }},
        {"symbol-rate", [this] { defaults.symbolRate = Value(0); }},
        {"file", [this] { Read(Bytes()); }},
        {"blocks", [this] { Read(Blocks()); }},
        {"raster", [this] { Make([this] { return RasterPlan(Value(0), Value(1), Value(2), defaults); }); }},
        {"sized", [this] { Read(std::string(static_cast<size_t>(Number(0)), 'x')); }},
    };
    const Sights sights{
        {"refusal", [this] { return refusal; }},
        {"title", [this] { return plan.title; }},
        {"count", [this] { return Told(plan.channels.size()); }},
        {"channel", [this] { return Channel(plan.channels.at(static_cast<size_t>(Number(0)))); }},
        {"left-out", [this] { return LeftOut(); }},
        {"label-of", [this] { return ChannelLabel(Value(0)); }},
    };

private:
    /// Channels of a DVBv5 file, ";" between them, by system, frequency, symbol rate and modulation; "-" is none.
    std::string Blocks() const
    {
        std::istringstream all(rest);
        std::string blocks;
        for (std::string channel; std::getline(all, channel, ';');) {
            std::istringstream each(channel);
            blocks += "[CHANNEL]\n";
            for (const char* const key : {"DELIVERY_SYSTEM", "FREQUENCY", "SYMBOL_RATE", "MODULATION"}) {
                std::string value;
                each >> value;
                blocks += std::string("\t") + key + " = " + (value == "-" ? "" : value) + "\n";
            }
        }
        return blocks;
    }
    void Read(const std::string& content)
    {
        Make([&] { return ReadChannelPlan(content, L"net", defaults); });
    }
    template <class Plan>
    void Make(const Plan& make)
    {
        plan = {};
        refusal = Refusal([&] { plan = make(); });
    }

    /// Line, label, frequency, symbol rate and order of QAM.
    static std::wstring Channel(const PlanChannel& channel)
    {
        return std::to_wstring(channel.line) + L": " + channel.Label() + L" " +
               FormatNumber(channel.frequency, false, SystemLocale()) + L" " +
               FormatNumber(channel.symbolRate, false, SystemLocale()) + L" " + std::to_wstring(channel.orderOfQam);
    }
    std::wstring LeftOut() const
    {
        std::wstring all;
        for (const auto& notice : plan.leftOut) {
            all += (all.empty() ? L"" : L" | ") + std::to_wstring(notice.line) + L": " + notice.text;
        }
        return all;
    }

    PlanDefaults defaults;
    ChannelPlan plan;
    std::wstring refusal;
};

TEST(ChannelPlan, IsReadAsEachSessionExpects)
{
    PlaySessions("plan-sessions.txt", [](const std::string&) { return std::make_unique<Session>(); });
}

ChannelPlan RealPlan()
{
    return ReadChannelPlan(TestFile("plans/at-Kabelsignal"), L"at-Kabelsignal");
}

NetworkDraft Draft(uint64_t seed, bool hasFaults = true)
{
    return DraftNetwork(RealPlan(), seed, hasFaults);
}

TEST(NetworkDraft, TheSameSeedGivesTheSameNetworkOnEverySystemInEveryRelease)
{
    const std::string seven = TestFile("network-seed-7.txt");
    EXPECT_EQ(WriteNetworkModel(Draft(7), L"at-Kabelsignal"), seven);
    EXPECT_LT(std::ranges::count(seven, ','), 99) << "a model takes 100 outages";
    EXPECT_NE(Draft(8).channels[0].level, Draft(7).channels[0].level);
    const NetworkDraft large = Draft(5000000000);
    EXPECT_THAT(WriteNetworkModel(large, L"Käse"),
                testing::StartsWith("; A network that the plan K\xC3\xA4se could belong to, seed 5000000000\r\n"));
    EXPECT_THAT(WriteNetworkModel(large, L""), HasSubstr("\r\nSeed=705032704\r\n"));
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
    ChannelPlan mixed;
    mixed.channels = {{474, 6.9, 64, 1}, {482, 6.9, 128, 7}};
    const auto levels = DraftNetwork(mixed, 1, false).channels;
    EXPECT_NEAR(levels[1].level - levels[0].level, 6, 3);
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
    for (const double beside : {171., 220., 386., 404., 754., 787., 825., 828., 866.}) {
        plan.channels = {{beside, 6.9, 64, 1}, {474, 6.9, 64, 1}, {482, 6.9, 64, 1}};
        network = DraftNetwork(plan, 1, true);
        EXPECT_THAT(network.channels[2].fault, HasSubstr(L"microphone")) << beside;
    }
    // The last two are outside what a model can hold.
    plan.channels = {{586, 6.9, 64, 1}, {586, 6.9, 256, 7}, {25, 6.9, 64, 13}, {114, 0.4, 64, 19}};
    network = DraftNetwork(plan, 1, true);
    ASSERT_EQ(network.channels.size(), 1u);
    EXPECT_EQ(network.channels[0].orderOfQam, 64);
    ASSERT_EQ(network.leftOut.size(), 2u);
    EXPECT_EQ(network.leftOut[0].line, 13);
}

}  // namespace
}  // namespace tvn2x
