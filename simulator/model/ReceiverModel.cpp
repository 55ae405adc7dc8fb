#include "simulator/model/ReceiverModel.h"

#include <algorithm>
#include <limits>

namespace tvn2x {
namespace {

constexpr int32_t noAnswer = static_cast<int32_t>(0x80040000u + 2001);

}  // namespace

ReceiverPhysics& ReceiverModel::Begin(std::wstring_view operation, Access access)
{
    ++operations_;
    if (latency_ > 0) {
        // A count takes the time that its bits take, at any scale: asking for it more often than in life is of no use.
        time_.Wait(operation == L"ReadBer" ? latency_ : latency_ * time_.Scale());
    }
    faults_.Check(operation, access);
    if (!physics_.Network().Network().connected && operation != L"Online") {
        throw RaisedError(noAnswer, L"clsReceiver." + std::wstring(operation),
                          L"The receiver does not answer; check that it is connected and switched on");
    }
    return physics_;
}

int32_t ReceiverModel::Operations() const
{
    constexpr uint64_t largest = std::numeric_limits<int32_t>::max();
    return static_cast<int32_t>(std::min(operations_, largest));
}

}  // namespace tvn2x
