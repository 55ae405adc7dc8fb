// What the receiver does with settings that its options do not cover.

#include <gtest/gtest.h>

#include "FakeTime.h"
#include "receiver_model/ReceiverModel.h"

namespace tvn2x {
namespace {

class ReceiverFitting : public testing::Test
{
protected:
    void Set(const wchar_t* key, const wchar_t* value)
    {
        NetworkModel model = receiver.Network();
        model.Set(L"Network", key, value);
        receiver.Network(model);
    }

    FakeTime time;
    ReceiverModel receiver{time};
};

TEST_F(ReceiverFitting, TakesTheNearestFilterAndKeepsItsModeWithoutAWordWhereTheModelSaysSo)
{
    Set(L"Installed Options", L"KTR-H6,KTR-H8");
    Set(L"Swaps SAW Filters", L"Yes");
    Set(L"Ignores Missing Modes", L"Yes");
    for (const auto& [wanted, taken] : {std::pair{8, 6}, {7, 6}, {2, 2}, {3, 2}, {0, 0}}) {
        receiver.SawBandwidth(wanted);
        EXPECT_EQ(receiver.SawBandwidth(), taken) << wanted;
    }
    const int32_t mode = receiver.Mode();
    receiver.Mode(4);
    EXPECT_EQ(receiver.Mode(), mode);
    EXPECT_NE(mode, 4);
    Set(L"Installed Options", L"");
    receiver.SawBandwidth(8);
    EXPECT_EQ(receiver.SawBandwidth(), 0) << "no filter at all";
}

TEST_F(ReceiverFitting, ExampleReceiversAreFullyFittedAndBare)
{
    const auto receiverOf = [](const char* name) {
        const std::string path = TVN_TEST_DATA "/../../examples/receivers/" + std::string(name);
        return NetworkModel::Load(SystemFiles(), std::wstring(path.begin(), path.end()));
    };
    receiver.Network(receiverOf("full.ini"));
    for (const int32_t mode : {6, 7, 8, 13, 14, 4})
        EXPECT_NO_THROW(receiver.Mode(mode)) << mode;
    for (const int32_t filter : {0, 2, 6, 7, 8})
        EXPECT_NO_THROW(receiver.SawBandwidth(filter)) << filter;
    for (const int32_t route : {2, 4, 50, 75, 128})
        EXPECT_NO_THROW(receiver.InputRoute(route)) << route;
    receiver.ReferenceSource(1);
    time.now += 1;
    EXPECT_TRUE(receiver.ReferenceLocked());

    receiver.Network(receiverOf("bare.ini"));
    EXPECT_EQ(receiver.Mode(), 4);
    EXPECT_EQ(receiver.SawBandwidth(), 0);
    for (const int32_t filter : {2, 6, 7, 8})
        EXPECT_THROW(receiver.SawBandwidth(filter), RaisedError) << filter;
    for (const int32_t route : {2, 4})
        EXPECT_THROW(receiver.InputRoute(route), RaisedError) << route;
    EXPECT_THROW(receiver.Mode(6), RaisedError);
    EXPECT_THROW(receiver.ReferenceSource(1), RaisedError);
}

}  // namespace
}  // namespace tvn2x
