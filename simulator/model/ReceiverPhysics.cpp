#include "simulator/model/ReceiverPhysics.h"

#include <cmath>
#include <numbers>
#include <utility>

#include "dvbc/Qam.h"

namespace tvn2x {
namespace {

constexpr double referenceSettling = 0.3;  // seconds
constexpr ControlRanges ranges{30e6, 1200e6, 0.1e6, 8e6, 12, 35, dvbc::ordersOfQam};

}  // namespace

ReceiverPhysics::ReceiverPhysics(SimulatedTime& time) : ReceiverControls(ranges), time_(time)
{
    countedUntil_ = referenceSince_ = time_.Seconds();
    Tune();
}

void ReceiverPhysics::Network(NetworkModel model)
{
    const bool otherHardware = model.Network().installedOptions != model_.Network().installedOptions;
    CountErrors();
    model_ = std::move(model);
    tunings_.clear();
    if (otherHardware) {
        settings_ = BasicState();
    }
    Tune();
}

void ReceiverPhysics::Tune()
{
    CountErrors();
    const double now = time_.Seconds();
    const auto frequency = static_cast<uint64_t>(settings_.frequency);
    const SeededNoise noise(static_cast<uint64_t>(model_.Network().seed), frequency, tunings_[frequency]);
    Reception reception = ReceiveNow();
    Acquisition acquisition(reception, noise);
    const double scale = TakesToLock(acquisition);
    tuning_ = {now, scale, noise, std::move(reception), std::move(acquisition), {}};
    ber_.reset();
}

Reception ReceiverPhysics::ReceiveNow()
{
    const NetworkSettings& network = model_.Network();
    const double periods = time_.SecondsOfCalendar() / (network.driftPeriod * 3600);
    return Receive(model_, settings_, network.tiltDrift * std::sin(2 * std::numbers::pi * periods));
}

double ReceiverPhysics::TakesToLock(const Acquisition& acquisition) const
{
    constexpr double pause = 0.1;  // seconds between tuning and the client's wait
    const bool isGivenUp = settlingTime_ > 0 && acquisition.Duration() > settlingTime_ + pause;
    return isGivenUp ? 1 : time_.Scale();
}

double ReceiverPhysics::Elapsed(const Tuning& tuning, double at)
{
    const double real = at - tuning.since;
    const double locking = tuning.acquisition.Duration();
    return real < locking * tuning.scale ? real / tuning.scale : real + locking * (1 - tuning.scale);
}

void ReceiverPhysics::CountErrors()
{
    const double now = time_.Seconds();
    counter_.Add(tuning_.reception, tuning_.acquisition, tuning_.noise, Elapsed(tuning_, countedUntil_),
                 Elapsed(tuning_, now));
    countedUntil_ = now;
}

bool ReceiverPhysics::Locked(Stage stage)
{
    return View().acquisition.Locked(stage, Elapsed(View(), ViewTime()));
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
    return settings_.externalReference && model_.Network().referenceFed &&
           now - referenceSince_ >= referenceSettling * time_.Scale() &&
           !View().acquisition.ReferenceLost(Elapsed(View(), now));
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
