#include "simulator/model/ReceiverModel.h"

#include <algorithm>
#include <limits>

namespace tvn2x {

namespace {

constexpr int32_t noAnswer = static_cast<int32_t>(0x80040000u + 2001);
constexpr double referenceSettling = 0.3;  // seconds

}  // namespace

ReceiverModel::ReceiverModel(SimulatedTime& time) : time_(time)
{
    countedUntil_ = referenceSince_ = time_.Seconds();
    Tune();
}

void ReceiverModel::Begin(std::wstring_view operation, Access access)
{
    ++operations_;
    if (latency_ > 0)
        time_.Wait(latency_);
    faults_.Check(operation, access);
    if (!model_.Network().connected && operation != L"Online")
        throw RaisedError(noAnswer, L"clsReceiver." + std::wstring(operation),
                          L"The receiver does not answer; check that it is connected and switched on");
}

int32_t ReceiverModel::Operations() const
{
    constexpr uint64_t largest = std::numeric_limits<int32_t>::max();
    return static_cast<int32_t>(std::min(operations_, largest));
}

void ReceiverModel::Network(NetworkModel model)
{
    const bool otherHardware = model.Network().installedOptions != model_.Network().installedOptions;
    CountErrors();
    model_ = std::move(model);
    if (otherHardware)
        settings_ = BasicState();
    Tune();
}

void ReceiverModel::Tune()
{
    CountErrors();
    const double now = time_.Seconds();
    const SeededNoise noise(static_cast<uint64_t>(model_.Network().seed), static_cast<uint64_t>(settings_.frequency));
    Reception reception = Receive(model_, settings_);
    Acquisition acquisition(reception, noise);
    tuning_ = {now, noise, std::move(reception), std::move(acquisition), {}};
    ber_.reset();
}

void ReceiverModel::CountErrors()
{
    const double now = time_.Seconds();
    counter_.Add(tuning_.reception, tuning_.acquisition, countedUntil_ - tuning_.since, now - tuning_.since);
    countedUntil_ = now;
}

bool ReceiverModel::Locked(Stage stage)
{
    return View().acquisition.Locked(stage, ViewTime() - View().since);
}

bool ReceiverModel::TsError()
{
    Begin(L"TsError", Access::get);
    const Reception& reception = View().reception;
    const double failedPackets = reception.packets.failed * reception.PacketRate();  // per second
    return !Locked(Stage::reedSolomon) || failedPackets >= 1;
}

bool ReceiverModel::SymbolClockUnlocked()
{
    Begin(L"SymbolClockUnlocked", Access::get);
    return !Locked(Stage::timing);
}

bool ReceiverModel::CarrierUnlocked()
{
    Begin(L"CarrierUnlocked", Access::get);
    return !Locked(Stage::carrier);
}

bool ReceiverModel::ReferenceLocked()
{
    Begin(L"ReferenceLocked", Access::get);
    const double now = ViewTime();
    return settings_.externalReference && model_.Network().referenceFed && now - referenceSince_ >= referenceSettling &&
           !View().acquisition.ReferenceLost(now - View().since);
}

bool ReceiverModel::RfSignalPresent()
{
    Begin(L"RfSignalPresent", Access::get);
    return Locked(Stage::gainControl);
}

ErroredTime ReceiverModel::ErrorCounters()
{
    Begin(L"ErrorCounters", Access::get);
    CountErrors();
    return counter_.Time();
}

void ReceiverModel::ResetErrorCounters()
{
    Begin(L"ResetErrorCounters", Access::call);
    CountErrors();
    counter_.Reset();
}

std::wstring ReceiverModel::SerialNumber()
{
    Begin(L"SerialNumber", Access::get);
    return model_.Network().serialNumber;
}

std::wstring ReceiverModel::FirmwareVersion()
{
    Begin(L"FirmwareVersion", Access::get);
    return model_.Network().firmwareVersion;
}

std::wstring ReceiverModel::InstalledOptions()
{
    Begin(L"InstalledOptions", Access::get);
    return model_.Network().installedOptions;
}

std::wstring ReceiverModel::InstrumentName()
{
    Begin(L"InstrumentName", Access::get);
    return model_.Network().instrumentName;
}

std::wstring ReceiverModel::BusAddress()
{
    Begin(L"BusAddress", Access::get);
    return model_.Network().busAddress;
}

std::wstring ReceiverModel::Model()
{
    Begin(L"Model", Access::get);
    return model_.Network().model;
}

std::wstring ReceiverModel::Manufacturer()
{
    Begin(L"Manufacturer", Access::get);
    return model_.Network().manufacturer;
}

std::wstring ReceiverModel::Hardware()
{
    Begin(L"Hardware", Access::get);
    return model_.Network().hardware;
}

bool ReceiverModel::Online()
{
    Begin(L"Online", Access::get);
    return online_ && model_.Network().connected;
}

void ReceiverModel::Online(bool online)
{
    Begin(L"Online", Access::let);
    online_ = online && model_.Network().connected;
}

}  // namespace tvn2x
