#include "simulator/model/ReceiverPhysics.h"

#include <utility>

namespace tvn2x {
namespace {

constexpr double referenceSettling = 0.3;  // seconds

}  // namespace

ReceiverPhysics::ReceiverPhysics(SimulatedTime& time) : time_(time)
{
    countedUntil_ = referenceSince_ = time_.Seconds();
    Tune();
}

void ReceiverPhysics::Network(NetworkModel model)
{
    const bool otherHardware = model.Network().installedOptions != model_.Network().installedOptions;
    CountErrors();
    model_ = std::move(model);
    if (otherHardware) {
        settings_ = BasicState();
    }
    Tune();
}

void ReceiverPhysics::Tune()
{
    CountErrors();
    const double now = time_.Seconds();
    const SeededNoise noise(static_cast<uint64_t>(model_.Network().seed), static_cast<uint64_t>(settings_.frequency));
    Reception reception = Receive(model_, settings_);
    Acquisition acquisition(reception, noise);
    tuning_ = {now, noise, std::move(reception), std::move(acquisition), {}};
    ber_.reset();
}

void ReceiverPhysics::CountErrors()
{
    const double now = time_.Seconds();
    counter_.Add(tuning_.reception, tuning_.acquisition, countedUntil_ - tuning_.since, now - tuning_.since);
    countedUntil_ = now;
}

bool ReceiverPhysics::Locked(Stage stage)
{
    return View().acquisition.Locked(stage, ViewTime() - View().since);
}

bool ReceiverPhysics::TsError()
{
    const Reception& reception = View().reception;
    const double failedPackets = reception.packets.failed * reception.PacketRate();  // per second
    return !Locked(Stage::reedSolomon) || failedPackets >= 1;
}

bool ReceiverPhysics::SymbolClockUnlocked()
{
    return !Locked(Stage::timing);
}

bool ReceiverPhysics::CarrierUnlocked()
{
    return !Locked(Stage::carrier);
}

bool ReceiverPhysics::ReferenceLocked()
{
    const double now = ViewTime();
    return settings_.externalReference && model_.Network().referenceFed && now - referenceSince_ >= referenceSettling &&
           !View().acquisition.ReferenceLost(now - View().since);
}

bool ReceiverPhysics::RfSignalPresent()
{
    return Locked(Stage::gainControl);
}

dvbc::ErroredTime ReceiverPhysics::ErrorCounters()
{
    CountErrors();
    return counter_.Time();
}

void ReceiverPhysics::ResetErrorCounters()
{
    CountErrors();
    counter_.Reset();
}

void ReceiverPhysics::Online(bool online)
{
    online_ = online && model_.Network().connected;
}

}  // namespace tvn2x
